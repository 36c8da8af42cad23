// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "html/document.h"

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace luma::test {

/// One case of html5lib's tree construction files.
struct TreeCase
{
    std::string place; // file and number, for messages
    std::string data;
    std::string fragmentContext; // "td", "svg path"; empty for a whole page
    bool scripting = false;      // meant for parsers with scripting on
    std::string tree;
};

/// The folder of html5lib's cases: HTML5LIB_TESTS, or shared/html5lib-tests in a folder above the source tree.
/// Empty if there is none.
std::filesystem::path html5libFolder();

/// The tree construction cases of all files, in order of file names.
std::vector<TreeCase> allTreeCases();

/// The tree below `top` in html5lib's notation.
std::string dump(const html::ParentNode& top);

} // namespace luma::test
