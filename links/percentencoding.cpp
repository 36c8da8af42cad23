// SPDX-License-Identifier: GPL-3.0-or-later
#include "links/percentencoding.h"

#include "base/ascii.h"

namespace luma {

namespace {

constexpr std::string_view hexDigits = "0123456789ABCDEF";

constexpr bool contains(std::string_view set, char c)
{
    return set.find(c) != std::string_view::npos;
}

bool mustBeEncoded(char byte, AddressPart part)
{
    const auto code = static_cast<unsigned char>(byte);
    if (code < 0x20 || code > 0x7E)
        return true;
    switch (part) {
    case AddressPart::C0Control:
        return false;
    case AddressPart::Fragment:
        return contains(" \"<>`", byte);
    case AddressPart::Query:
        return contains(" \"#<>", byte);
    case AddressPart::SpecialQuery:
        return contains(" \"#<>'", byte);
    case AddressPart::Path:
        return contains(" \"#<>?^`{}", byte);
    case AddressPart::UserInfo:
        return contains(" \"#<>?^`{}/:;=@[\\]|", byte);
    case AddressPart::Component:
        return contains(" \"#<>?^`{}/:;=@[\\]|$%&+,", byte);
    }
    return false;
}

} // namespace

void appendEncoded(std::string& text, char byte, AddressPart part)
{
    if (!mustBeEncoded(byte, part)) {
        text += byte;
        return;
    }
    const auto code = static_cast<unsigned char>(byte);
    text += '%';
    text += hexDigits[code >> 4U];
    text += hexDigits[code & 15U];
}

std::string percentEncoded(std::string_view text, AddressPart part)
{
    std::string encoded;
    encoded.reserve(text.size());
    for (const char byte : text)
        appendEncoded(encoded, byte, part);
    return encoded;
}

std::string percentDecoded(std::string_view text)
{
    std::string decoded;
    decoded.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        const int high = text[i] == '%' && i + 2 < text.size() ? hexValue(text[i + 1]) : -1;
        const int low = high >= 0 ? hexValue(text[i + 2]) : -1;
        if (low < 0) {
            decoded += text[i];
            continue;
        }
        decoded += static_cast<char>(high * 16 + low);
        i += 2;
    }
    return decoded;
}

} // namespace luma
