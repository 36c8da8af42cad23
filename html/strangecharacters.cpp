// SPDX-License-Identifier: GPL-3.0-or-later
#include "html/strangecharacters.h"

#include "base/utf8.h"

#include <algorithm>

namespace luma::html {

namespace {

constexpr char32_t replacementCharacter = 0xFFFD;
constexpr char32_t strangeCount = 126;

struct Range
{
    char32_t first;
    char32_t last;
};
constexpr Range ranges[] = {{0x01, 0x08}, {0x0B, 0x0B}, {0x0E, 0x1F}, {0x7F, 0x9F}, {0xFDD0, 0xFDEF}};

/// The number of a strange character, or `strangeCount` for any other. The ranges come first, then the last
/// two code points of each plane.
char32_t indexOf(char32_t code)
{
    char32_t index = 0;
    for (const Range& range : ranges) {
        if (code >= range.first && code <= range.last)
            return index + code - range.first;
        index += range.last - range.first + 1;
    }
    return (code & 0xFFFEU) == 0xFFFEU ? index + (code >> 16U) * 2 + (code & 1U) : strangeCount;
}

char32_t strangeAt(char32_t index)
{
    for (const Range& range : ranges) {
        const char32_t count = range.last - range.first + 1;
        if (index < count)
            return range.first + index;
        index -= count;
    }
    return (index / 2) << 16U | 0xFFFEU | (index & 1U);
}

/// Whether a strange character can start with this byte.
bool isSuspect(unsigned char byte)
{
    const bool isControl =
        byte < 0x20 && byte != 0 && byte != '\t' && byte != '\n' && byte != '\f' && byte != '\r';
    return isControl || byte == 0x7F || byte == 0xC2 || byte == 0xEF || byte >= 0xF0;
}

bool hasStrange(std::string_view source)
{
    for (std::size_t at = 0; at < source.size(); ++at) {
        if (!isSuspect(static_cast<unsigned char>(source[at])))
            continue;
        const std::string_view rest = source.substr(at);
        if (indexOf(codePoint(rest.substr(0, characterLength(rest)))) != strangeCount)
            return true;
    }
    return false;
}

/// The first of 128 consecutive private-use characters that the source does not contain; 0 if there are none.
char32_t freeGuise(std::string_view source)
{
    for (char32_t first = 0xF0000; first < 0x10FF80; first += 0x80) {
        // Each half of the 128 characters shares all bytes but the last.
        std::string half;
        std::string otherHalf;
        appendUtf8(half, first);
        appendUtf8(otherHalf, first + 0x40);
        half.pop_back();
        otherHalf.pop_back();
        if (source.find(half) == std::string_view::npos && source.find(otherHalf) == std::string_view::npos)
            return first;
    }
    return 0;
}

/// The text with `exchange` applied to each character; invalid bytes become U+FFFD.
template <class Exchange>
std::string exchanged(std::string_view text, Exchange exchange)
{
    std::string result;
    result.reserve(text.size());
    while (!text.empty()) {
        const std::size_t length = characterLength(text);
        const char32_t code = length > 0 ? codePoint(text.substr(0, length)) : replacementCharacter;
        appendUtf8(result, exchange(code));
        text.remove_prefix(length > 0 ? length : 1);
    }
    return result;
}

} // namespace

StrangeCharacters::StrangeCharacters(std::string_view source) : m_source(source)
{
    if (!hasStrange(source))
        return;
    m_guise = freeGuise(source);
    if (m_guise == 0)
        return;
    m_isDisguised = true;
    m_disguised = exchanged(source, [this](char32_t code) {
        const char32_t index = indexOf(code);
        return index == strangeCount ? code : m_guise + index;
    });
    std::size_t disguised = 0;
    for (std::size_t at = 0; at < source.size();) {
        const std::size_t length = characterLength(source.substr(at));
        const bool strange = indexOf(codePoint(source.substr(at, length))) != strangeCount;
        at += length;
        disguised += strange ? characterLength(std::string_view(m_disguised).substr(disguised)) : length;
        if (strange)
            m_places.push_back({disguised, at});
    }
}

std::size_t StrangeCharacters::sourcePlace(std::size_t disguisedPlace) const
{
    const auto behind =
        std::upper_bound(m_places.begin(), m_places.end(), disguisedPlace,
                         [](std::size_t wanted, const Place& place) { return wanted < place.disguised; });
    if (behind == m_places.begin())
        return disguisedPlace;
    const Place& place = *std::prev(behind);
    return place.source + (disguisedPlace - place.disguised);
}

std::string StrangeCharacters::restored(std::string_view text) const
{
    if (!m_isDisguised && isValidUtf8(text))
        return std::string(text);
    return exchanged(text, [this](char32_t code) {
        const bool isGuise = m_isDisguised && code >= m_guise && code < m_guise + strangeCount;
        return isGuise ? strangeAt(code - m_guise) : code;
    });
}

} // namespace luma::html
