// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>
#include <vector>

/// Text as the HTML standard looks at it: letter case and white space of ASCII alone, whatever the locale.
/// White space is blank, tab, line feed, form feed and carriage return.
namespace luma::html {

constexpr std::string_view whiteSpace = " \t\n\f\r";

constexpr bool isWhiteSpace(char c)
{
    return c == ' ' || c == '\t' || c == '\n' || c == '\f' || c == '\r';
}

constexpr char lowered(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

std::string lowered(std::string_view text);
bool equalIgnoringCase(std::string_view a, std::string_view b);
bool startsWithIgnoringCase(std::string_view text, std::string_view prefix);

/// True for text of nothing but white space, and for the empty text.
bool isBlank(std::string_view text);

/// The pieces between white space, none of them empty.
std::vector<std::string_view> words(std::string_view text);

/// White space trimmed from both ends, each run of it inside made one blank.
std::string simplified(std::string_view text);

} // namespace luma::html
