// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

namespace luma::test {

struct Page
{
    std::string name;
    std::string source;
};

/// Small pages of our own that hold everything a page can: always there.
std::vector<Page> ownPages();

/// The pages of the site that comes with the program; empty where LUMA_SOURCE_DIR names no source tree.
std::vector<Page> sampleSitePages();

/// At most `count` real pages of this system's documentation, spread evenly over what is installed, none
/// larger than `maximumSize` bytes. Empty where none is installed.
std::vector<Page> documentationPages(std::size_t count, std::size_t maximumSize);

} // namespace luma::test
