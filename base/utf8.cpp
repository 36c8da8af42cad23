// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/utf8.h"

#include "base/ascii.h"

#include <QChar>

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace luma {

namespace {

constexpr std::uint64_t highBits = 0x8080808080808080U;

std::uint64_t load(const char* p)
{
    std::uint64_t word = 0;
    std::memcpy(&word, p, sizeof word);
    return word;
}

bool isAscii(char c)
{
    return static_cast<unsigned char>(c) < 0x80;
}

// Pages are nearly all ASCII, so four words at a time until a byte has its high bit set.
const char* skipAscii(const char* p, const char* end)
{
    while (end - p >= 32 && ((load(p) | load(p + 8) | load(p + 16) | load(p + 24)) & highBits) == 0)
        p += 32;
    while (p < end && isAscii(*p))
        ++p;
    return p;
}

// The length of the character at `p`, which is not ASCII; 0 if it is not valid (RFC 3629, section 4).
std::size_t sequenceLength(const char* p, const char* end)
{
    const auto lead = static_cast<unsigned char>(*p);
    const int length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    if (lead < 0xC2 || lead > 0xF4 || end - p < length)
        return 0;
    if (!std::all_of(p + 1, p + length, isUtf8Continuation))
        return 0;
    const auto second = static_cast<unsigned char>(p[1]);
    const bool overlong = (lead == 0xE0 && second < 0xA0) || (lead == 0xF0 && second < 0x90);
    const bool outside = (lead == 0xED && second > 0x9F) || (lead == 0xF4 && second > 0x8F);
    return overlong || outside ? 0 : static_cast<std::size_t>(length);
}

char32_t folded(std::string_view character)
{
    return static_cast<char32_t>(QChar::toCaseFolded(codePoint(character)));
}

bool isInsideCharacter(std::string_view text, std::size_t place)
{
    return place < text.size() && isUtf8Continuation(text[place]);
}

} // namespace

bool isValidUtf8(std::string_view bytes)
{
    const char* p = bytes.data();
    const char* const end = p + bytes.size();
    while ((p = skipAscii(p, end)) < end) {
        const std::size_t length = sequenceLength(p, end);
        if (length == 0)
            return false;
        p += length;
    }
    return true;
}

std::size_t characterLength(std::string_view bytes)
{
    if (bytes.empty())
        return 0;
    return isAscii(bytes.front()) ? 1 : sequenceLength(bytes.data(), bytes.data() + bytes.size());
}

char32_t codePoint(std::string_view character)
{
    const auto lead = static_cast<unsigned char>(character.front());
    const auto length = static_cast<unsigned>(character.size());
    char32_t result = length == 1 ? lead : lead & (0x7FU >> length);
    for (const char c : character.substr(1))
        result = (result << 6U) | (static_cast<unsigned char>(c) & 0x3FU);
    return result;
}

std::size_t sharedPrefix(std::string_view a, std::string_view b)
{
    auto shared =
        static_cast<std::size_t>(std::mismatch(a.begin(), a.end(), b.begin(), b.end()).first - a.begin());
    while (shared > 0 && (isInsideCharacter(a, shared) || isInsideCharacter(b, shared)))
        --shared;
    return shared;
}

std::size_t sharedSuffix(std::string_view a, std::string_view b)
{
    auto shared = static_cast<std::size_t>(std::mismatch(a.rbegin(), a.rend(), b.rbegin(), b.rend()).first -
                                           a.rbegin());
    while (shared > 0 && isUtf8Continuation(a[a.size() - shared]))
        --shared;
    return shared;
}

void appendUtf8(std::string& text, char32_t codePoint)
{
    const auto put = [&text](char32_t byte) { text += static_cast<char>(static_cast<unsigned char>(byte)); };
    if (codePoint < 0x80) {
        put(codePoint);
        return;
    }
    const unsigned tails = codePoint < 0x800 ? 1 : codePoint < 0x10000 ? 2 : 3;
    const unsigned lead = tails == 1 ? 0xC0 : tails == 2 ? 0xE0 : 0xF0;
    put(lead | (codePoint >> (6 * tails)));
    for (unsigned i = tails; i-- > 0;)
        put(0x80U | ((codePoint >> (6 * i)) & 0x3FU));
}

std::u32string caseFoldedCodePoints(std::string_view text)
{
    std::u32string result;
    result.reserve(text.size());
    while (const std::size_t length = characterLength(text)) {
        result += folded(text.substr(0, length));
        text.remove_prefix(length);
    }
    return result;
}

std::string caseFolded(std::string_view text)
{
    if (skipAscii(text.data(), text.data() + text.size()) == text.data() + text.size())
        return asciiLower(text);
    std::string result;
    while (!text.empty()) {
        const std::size_t length = characterLength(text);
        if (length == 0)
            result += text.front();
        else
            appendUtf8(result, folded(text.substr(0, length)));
        text.remove_prefix(std::max<std::size_t>(length, 1));
    }
    return result;
}

} // namespace luma
