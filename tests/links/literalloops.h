// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace luma::test {

/// The subpaths of the files of a site to which no file of it refers, in byte order, found the plain way:
/// every file is asked about every other, with regular expressions and a prefix test on each link of a tree
/// that libgumbo has built. Nothing of it is shared with the index.
std::vector<std::string> unlinkedByLiteralLoops(const std::filesystem::path& site);

/// The values of a page's links in libgumbo's tree: attribute by attribute, in document order, a line each.
std::vector<std::string> linksByGumbo(const std::string& source);

} // namespace luma::test
