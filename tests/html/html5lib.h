#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace luma::html {
class Node;
class ParentNode;
} // namespace luma::html

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

/// Where html5lib's cases are: the folder named by LUMA_HTML5LIB_TESTS, or shared/html5lib-tests beside one
/// of the folders above the source tree. Empty when there are none.
std::filesystem::path html5libFolder();

std::vector<TreeCase> treeCases(const std::filesystem::path& file);
/// Of all files, in the order of their names.
std::vector<TreeCase> allTreeCases();

/// The tree below `top` in html5lib's notation.
std::string dump(const html::ParentNode& top);

} // namespace luma::test
