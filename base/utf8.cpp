// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/utf8.h"

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

// Most pages are ASCII nearly throughout: four words at a time until a byte has its high bit set.
const char* skipAscii(const char* p, const char* end)
{
    while (end - p >= 32 && ((load(p) | load(p + 8) | load(p + 16) | load(p + 24)) & highBits) == 0)
        p += 32;
    while (p < end && static_cast<unsigned char>(*p) < 0x80)
        ++p;
    return p;
}

bool isContinuation(char c)
{
    return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U;
}

// The length of the sequence at `p`, which is not ASCII; 0 when it is none. RFC 3629, section 4.
int sequenceLength(const char* p, const char* end)
{
    const auto lead = static_cast<unsigned char>(*p);
    const int length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    if (lead < 0xC2 || lead > 0xF4 || end - p < length)
        return 0;
    if (!std::all_of(p + 1, p + length, isContinuation))
        return 0;
    const auto second = static_cast<unsigned char>(p[1]);
    const bool overlong = (lead == 0xE0 && second < 0xA0) || (lead == 0xF0 && second < 0x90);
    const bool outside = (lead == 0xED && second > 0x9F) || (lead == 0xF4 && second > 0x8F);
    return overlong || outside ? 0 : length;
}

char32_t decode(const char* p, int length)
{
    const auto lead = static_cast<unsigned char>(*p);
    char32_t codePoint = length == 1 ? lead : lead & (0x7FU >> static_cast<unsigned>(length));
    for (int i = 1; i < length; ++i)
        codePoint = (codePoint << 6U) | (static_cast<unsigned char>(p[i]) & 0x3FU);
    return codePoint;
}

} // namespace

bool isValidUtf8(std::string_view bytes)
{
    const char* p = bytes.data();
    const char* const end = p + bytes.size();
    while ((p = skipAscii(p, end)) < end) {
        const int length = sequenceLength(p, end);
        if (length == 0)
            return false;
        p += length;
    }
    return true;
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
    std::u32string folded;
    folded.reserve(text.size());
    const char* p = text.data();
    const char* const end = p + text.size();
    while (p < end) {
        const int length = static_cast<unsigned char>(*p) < 0x80 ? 1 : sequenceLength(p, end);
        if (length == 0)
            return folded;
        folded += static_cast<char32_t>(QChar::toCaseFolded(decode(p, length)));
        p += length;
    }
    return folded;
}

std::string caseFolded(std::string_view text)
{
    std::string folded(text);
    const char* p = text.data();
    const char* const end = p + text.size();
    if (skipAscii(p, end) == end) {
        std::transform(folded.begin(), folded.end(), folded.begin(), asciiLower);
        return folded;
    }
    folded.clear();
    while (p < end) {
        const int length = static_cast<unsigned char>(*p) < 0x80 ? 1 : sequenceLength(p, end);
        if (length == 0)
            folded += *p++;
        else
            appendUtf8(folded, static_cast<char32_t>(QChar::toCaseFolded(decode(p, length))));
        p += length;
    }
    return folded;
}

bool equalIgnoringAsciiCase(std::string_view a, std::string_view b)
{
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](char x, char y) { return asciiLower(x) == asciiLower(y); });
}

} // namespace luma
