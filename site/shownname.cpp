// SPDX-License-Identifier: GPL-3.0-or-later
#include "site/shownname.h"

#include "base/utf8.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace luma {

namespace {

constexpr std::size_t escapeLength = 5;

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
