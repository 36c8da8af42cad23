// SPDX-License-Identifier: GPL-3.0-or-later
#include "html/utf8.h"

#include <cstdint>
#include <cstring>

namespace luma::html {

std::size_t characterLength(std::string_view bytes)
{
    // The ranges are those of RFC 3629, 4.
    const auto at = [&bytes](std::size_t i) {
        return i < bytes.size() ? static_cast<unsigned char>(bytes[i]) : 0U;
    };
    const auto continues = [&at](std::size_t i) { return at(i) >= 0x80 && at(i) <= 0xBF; };
    const unsigned lead = at(0);
    if (lead < 0x80)
        return 1;
    if (lead >= 0xC2 && lead <= 0xDF)
        return continues(1) ? 2 : 0;
    if (lead >= 0xE0 && lead <= 0xEF) {
        const unsigned low = lead == 0xE0 ? 0xA0 : 0x80;
        const unsigned high = lead == 0xED ? 0x9F : 0xBF;
        return at(1) >= low && at(1) <= high && continues(2) ? 3 : 0;
    }
    if (lead >= 0xF0 && lead <= 0xF4) {
        const unsigned low = lead == 0xF0 ? 0x90 : 0x80;
        const unsigned high = lead == 0xF4 ? 0x8F : 0xBF;
        return at(1) >= low && at(1) <= high && continues(2) && continues(3) ? 4 : 0;
    }
    return 0;
}

bool isUtf8(std::string_view bytes)
{
    while (!bytes.empty()) {
        // Most of a page is ASCII: eight bytes at a time.
        std::uint64_t eight = 0;
        if (bytes.size() >= sizeof(eight)) {
            std::memcpy(&eight, bytes.data(), sizeof(eight));
            if ((eight & 0x8080808080808080U) == 0) {
                bytes.remove_prefix(sizeof(eight));
                continue;
            }
        }
        const std::size_t length = characterLength(bytes);
        if (length == 0)
            return false;
        bytes.remove_prefix(length);
    }
    return true;
}

char32_t codePoint(std::string_view character)
{
    const auto at = [&character](std::size_t i) { return static_cast<unsigned char>(character[i]); };
    constexpr unsigned char leadBits[] = {0, 0x7F, 0x1F, 0x0F, 0x07};
    char32_t code = at(0) & leadBits[character.size()];
    for (std::size_t i = 1; i < character.size(); ++i)
        code = code << 6U | (at(i) & 0x3FU);
    return code;
}

void appendCharacter(char32_t codePoint, std::string& text)
{
    const auto put = [&text](char32_t byte) { text += static_cast<char>(static_cast<unsigned char>(byte)); };
    if (codePoint < 0x80) {
        put(codePoint);
        return;
    }
    const unsigned length = codePoint < 0x800 ? 2 : codePoint < 0x10000 ? 3 : 4;
    put((0xF00U >> length & 0xFFU) | codePoint >> (6 * (length - 1)));
    for (unsigned left = length - 1; left > 0; --left)
        put(0x80U | (codePoint >> (6 * (left - 1)) & 0x3FU));
}

} // namespace luma::html
