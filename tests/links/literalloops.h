// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace luma::test {

/// The subpaths of the files of a site that no file of it refers to, in byte order, found the plain way: every
/// file is compared with every other, by regular expressions and a prefix test on each link of a tree built by
/// libgumbo. It shares nothing with the index.
std::vector<std::string> unlinkedByLiteralLoops(const std::filesystem::path& site);

/// The links of a page in libgumbo's tree as "ATTRIBUTE : VALUE", in the order of ParsedPage::links.
std::vector<std::string> linksByGumbo(const std::string& source);

} // namespace luma::test
