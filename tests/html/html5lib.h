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

/// One case of html5lib's serializer files: tokens as a tree, and how its serializer may write them.
struct SerializerCase
{
    std::string place; // file and description
    std::string
        options; // the names of the options that it asks for, in one line, or "stray end tag"; empty for none
    std::unique_ptr<html::Document> tree;
    std::vector<std::string> expected;
};

/// Where html5lib's cases are: the folder named by HTML5LIB_TESTS, or shared/html5lib-tests beside one
/// of the folders above the source tree. Empty when there are none.
std::filesystem::path html5libFolder();

std::vector<TreeCase> treeCases(const std::filesystem::path& file);
/// Of all files, in the order of their names.
std::vector<TreeCase> allTreeCases();

/// Those of all files, in the order of the files' names.
std::vector<SerializerCase> allSerializerCases();

/// The tree below `top` in html5lib's notation.
std::string dump(const html::ParentNode& top);

} // namespace luma::test
