// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

/// Letter case and white space of ASCII alone, whatever the locale: the rules of HTML, CSS and URLs. White
/// space is what the HTML standard calls so: blank, tab, line feed, form feed and carriage return. Bytes above
/// 0x7F are never changed and never white space, so UTF-8 passes through.
namespace luma {

inline constexpr std::string_view whiteSpace = " \t\n\f\r";

constexpr bool isWhiteSpace(char c)
{
    return c == ' ' || c == '\t' || c == '\n' || c == '\f' || c == '\r';
}

constexpr char asciiLower(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c | 0x20) : c;
}

constexpr bool isAsciiDigit(char c)
{
    return c >= '0' && c <= '9';
}

constexpr bool isAsciiLetter(char c)
{
    return asciiLower(c) >= 'a' && asciiLower(c) <= 'z';
}

constexpr bool isAsciiAlphanumeric(char c)
{
    return isAsciiLetter(c) || isAsciiDigit(c);
}

/// The value of a hexadecimal digit of either case, -1 for any other character.
constexpr int hexValue(char c)
{
    const char lower = asciiLower(c);
    return isAsciiDigit(c) ? c - '0' : lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

std::string asciiLower(std::string_view text);

// Here, because the scanners compare most names with one of another length or first letter.
constexpr bool startsWithIgnoringAsciiCase(std::string_view text, std::string_view prefix)
{
    return text.size() >= prefix.size() &&
           std::equal(prefix.begin(), prefix.end(), text.begin(),
                      [](char a, char b) { return asciiLower(a) == asciiLower(b); });
}

constexpr bool equalIgnoringAsciiCase(std::string_view a, std::string_view b)
{
    return a.size() == b.size() && startsWithIgnoringAsciiCase(a, b);
}

/// Whether `list` has `text`, ignoring ASCII case.
template <class List>
bool isOneOf(std::string_view text, const List& list)
{
    return std::any_of(list.begin(), list.end(),
                       [text](std::string_view entry) { return equalIgnoringAsciiCase(text, entry); });
}

/// Whether the text is empty or nothing but white space.
bool isBlank(std::string_view text);

/// The text without white space at its ends.
std::string_view trimmed(std::string_view text);

/// The pieces between white space; none is empty.
std::vector<std::string_view> words(std::string_view text);

/// The text trimmed, with each run of white space inside replaced by one blank.
std::string simplified(std::string_view text);

} // namespace luma
