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

/// Small pages with everything that a page can contain; the pages of the sample site; and at most `count`
/// pages of the system's documentation, spread evenly over what is installed, none larger than `maximumSize`
/// bytes.
std::vector<Page> allPages(std::size_t count, std::size_t maximumSize);

/// The pages in writtenpages.txt: small ones, each odd in its own way, with server code and in several encodings. Bytes.
std::vector<Page> writtenPages();

} // namespace luma::test
