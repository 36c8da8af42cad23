// SPDX-License-Identifier: GPL-3.0-or-later
#include "html/characterreferences.h"

#include "base/ascii.h"
#include "base/utf8.h"

#include <algorithm>
#include <array>

namespace luma {

namespace {

struct NamedReference
{
    std::string_view name;
    std::string_view text;
};

constexpr auto namedReferences = std::to_array<NamedReference>({
#include "html/namedreferences.inc"
});

constexpr std::size_t longestName = 32;

// Numbers 0x80 to 0x9F mean windows-1252 (HTML standard, numeric character reference end state); 0: unchanged.
constexpr std::array<char32_t, 32> windows1252 = {
    0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0,      0x017D, 0,      0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178};

const NamedReference* findName(std::string_view name)
{
    const auto* const found =
        std::lower_bound(namedReferences.begin(), namedReferences.end(), name,
                         [](const NamedReference& entry, std::string_view key) { return entry.name < key; });
    return found != namedReferences.end() && found->name == name ? found : nullptr;
}

// Each reader appends the text of the reference at the start of `raw` and gives its length in bytes; 0 if
// there is none.
std::size_t readNamed(std::string_view raw, ReferenceContext context, std::string& text)
{
    std::size_t run = 1;
    while (run < raw.size() && run <= longestName && isAsciiAlphanumeric(raw[run]))
        ++run;
    if (run < raw.size() && raw[run] == ';')
        ++run;
    for (std::size_t end = run; end > 2; --end) {
        const NamedReference* const found = findName(raw.substr(1, end - 1));
        if (!found)
            continue;
        const char next = end < raw.size() ? raw[end] : '\0';
        if (context == ReferenceContext::AttributeValue && raw[end - 1] != ';' &&
            (next == '=' || isAsciiAlphanumeric(next)))
            return 0;
        text += found->text;
        return end;
    }
    return 0;
}

int digitValue(char c, bool hexadecimal)
{
    return hexadecimal || isAsciiDigit(c) ? hexValue(c) : -1;
}

char32_t replacedCodePoint(char32_t codePoint)
{
    if (codePoint == 0 || codePoint > 0x10FFFF || (codePoint >= 0xD800 && codePoint <= 0xDFFF))
        return 0xFFFD;
    if (codePoint >= 0x80 && codePoint <= 0x9F && windows1252.at(codePoint - 0x80) != 0)
        return windows1252.at(codePoint - 0x80);
    return codePoint;
}

std::size_t readNumeric(std::string_view raw, std::string& text)
{
    const bool hexadecimal = raw.size() > 2 && asciiLower(raw[2]) == 'x';
    const std::size_t digits = hexadecimal ? 3 : 2;
    std::size_t end = digits;
    char32_t codePoint = 0;
    for (; end < raw.size() && digitValue(raw[end], hexadecimal) >= 0; ++end) {
        codePoint =
            codePoint * (hexadecimal ? 16U : 10U) + static_cast<char32_t>(digitValue(raw[end], hexadecimal));
        codePoint = std::min<char32_t>(codePoint, 0x110000);
    }
    if (end == digits)
        return 0;
    appendUtf8(text, replacedCodePoint(codePoint));
    return end < raw.size() && raw[end] == ';' ? end + 1 : end;
}

// Reads one unit of source: a reference, a line end, or any other byte.
std::size_t readUnit(std::string_view raw, ReferenceContext context, std::string& text)
{
    std::size_t length = 0;
    if (raw[0] == '&' && raw.size() > 1 && context != ReferenceContext::RawText)
        length = raw[1] == '#' ? readNumeric(raw, text) : readNamed(raw, context, text);
    if (length > 0)
        return length;
    if (raw[0] == '\r') {
        text += '\n';
        return raw.size() > 1 && raw[1] == '\n' ? 2 : 1;
    }
    if (raw[0] == '\0' && context != ReferenceContext::Text)
        appendUtf8(text, 0xFFFD);
    else
        text += raw[0];
    return 1;
}

constexpr std::string_view specialCharacters("&\r\0", 3);

} // namespace

bool needsDecoding(std::string_view raw)
{
    // Faster than find_first_of(), which calls memchr for each byte of `raw`.
    return std::any_of(specialCharacters.begin(), specialCharacters.end(),
                       [raw](char c) { return raw.find(c) != std::string_view::npos; });
}

std::string decodeCharacters(std::string_view raw, ReferenceContext context)
{
    std::string text;
    text.reserve(raw.size());
    while (!raw.empty()) {
        const std::size_t plain = std::min(raw.find_first_of(specialCharacters), raw.size());
        text += raw.substr(0, plain);
        raw.remove_prefix(plain);
        if (!raw.empty())
            raw.remove_prefix(readUnit(raw, context, text));
    }
    return text;
}

std::vector<ValueBoundary> valueBoundaries(std::string_view raw, ReferenceContext context)
{
    std::vector<ValueBoundary> boundaries;
    std::string text;
    std::size_t position = 0;
    while (position < raw.size()) {
        boundaries.push_back({position, text.size()});
        position += readUnit(raw.substr(position), context, text);
    }
    boundaries.push_back({position, text.size()});
    return boundaries;
}

std::vector<std::string> namedReferencesFor(std::string_view characters)
{
    std::vector<std::string> names;
    for (const NamedReference& reference : namedReferences) {
        if (reference.text.find_first_of(characters) != std::string_view::npos)
            names.emplace_back(reference.name);
    }
    return names;
}

} // namespace luma
