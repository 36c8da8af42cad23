// SPDX-License-Identifier: GPL-3.0-or-later
#include "site/shownname.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace luma {

namespace {

constexpr std::size_t escapeLength = 5;

bool isContinuation(char c)
{
    return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U;
}

// The length of the UTF-8 character at the start of `text`. 0 for invalid UTF-8, which includes overlong
// forms, surrogates and code points above U+10FFFF (RFC 3629).
std::size_t characterLength(std::string_view text)
{
    const auto first = static_cast<unsigned char>(text.front());
    if (first < 0x80U)
        return 1;
    const std::size_t length = first >= 0xF0U ? 4 : first >= 0xE0U ? 3 : 2;
    if (first < 0xC2U || first > 0xF4U || text.size() < length)
        return 0;
    if (!std::all_of(text.begin() + 1, text.begin() + static_cast<std::ptrdiff_t>(length), isContinuation))
        return 0;
    const auto second = static_cast<unsigned char>(text[1]);
    const bool isForbidden = (first == 0xE0U && second < 0xA0U) || (first == 0xEDU && second > 0x9FU) ||
                             (first == 0xF0U && second < 0x90U) || (first == 0xF4U && second > 0x8FU);
    return isForbidden ? 0 : length;
}

bool looksEscaped(std::string_view text, char lastDigit, char lastLeadingDigit)
{
    if (text.size() < escapeLength || text[0] != '\\' || text[1] != '#')
        return false;
    return text[2] >= '0' && text[2] <= lastLeadingDigit && text[3] >= '0' && text[3] <= lastDigit &&
           text[4] >= '0' && text[4] <= lastDigit;
}

void appendEscaped(std::string& shown, char c)
{
    const auto byte = static_cast<unsigned char>(c);
    const std::array<char, escapeLength> escape = {'\\', '#', static_cast<char>('0' + (byte >> 6U)),
                                                   static_cast<char>('0' + ((byte >> 3U) & 7U)),
                                                   static_cast<char>('0' + (byte & 7U))};
    shown.append(escape.data(), escape.size());
}

} // namespace

std::string shownName(std::string_view bytes)
{
    std::string shown;
    shown.reserve(bytes.size());
    while (!bytes.empty()) {
        const std::size_t length = characterLength(bytes);
        const char first = bytes.front();
        const bool isControl = static_cast<unsigned char>(first) < 0x20U && first != '\t';
        if (length == 0 || isControl || looksEscaped(bytes, '9', '9'))
            appendEscaped(shown, first);
        else
            shown.append(bytes.substr(0, length));
        bytes.remove_prefix(std::max<std::size_t>(length, 1));
    }
    return shown;
}

std::string bytesOfShownName(std::string_view shown)
{
    std::string bytes;
    bytes.reserve(shown.size());
    while (!shown.empty()) {
        if (looksEscaped(shown, '7', '3')) {
            bytes.push_back(static_cast<char>((shown[2] - '0') * 64 + (shown[3] - '0') * 8 + shown[4] - '0'));
            shown.remove_prefix(escapeLength);
        } else {
            bytes.push_back(shown.front());
            shown.remove_prefix(1);
        }
    }
    return bytes;
}

} // namespace luma
