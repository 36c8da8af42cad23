// SPDX-License-Identifier: GPL-3.0-or-later
#include "links/addressparts.h"

#include "base/ascii.h"
#include "base/utf8.h"

#include <algorithm>

namespace luma {

namespace {

std::size_t skip(std::string_view text, std::size_t at, std::string_view characters)
{
    return std::min(text.find_first_not_of(characters, at), text.size());
}

std::size_t findEnd(std::string_view text, std::size_t at, std::string_view characters)
{
    return std::min(text.find_first_of(characters, at), text.size());
}

std::vector<TextRange> wordRanges(std::string_view value)
{
    std::vector<TextRange> found;
    for (std::size_t at = skip(value, 0, whiteSpace); at < value.size();) {
        const std::size_t end = findEnd(value, at, whiteSpace);
        found.push_back({at, end});
        at = skip(value, end, whiteSpace);
    }
    return found;
}

// HTML standard, "parse a srcset attribute". Descriptors may hold commas in brackets.
std::vector<TextRange> imageCandidates(std::string_view value)
{
    std::vector<TextRange> found;
    for (std::size_t at = skip(value, 0, " \t\n\f\r,"); at < value.size();
         at = skip(value, at, " \t\n\f\r,")) {
        const std::size_t wordEnd = findEnd(value, at, whiteSpace);
        std::size_t end = wordEnd;
        while (end > at && value[end - 1] == ',')
            --end;
        found.push_back({at, end});
        at = wordEnd;
        if (end < wordEnd)
            continue;
        for (std::size_t depth = 0; at < value.size() && (depth > 0 || value[at] != ','); ++at) {
            if (value[at] == '(')
                ++depth;
            else if (value[at] == ')' && depth > 0)
                --depth;
        }
    }
    return found;
}

std::vector<TextRange> refreshAddress(std::string_view value)
{
    std::size_t at = skip(value, 0, whiteSpace);
    const std::size_t digits = skip(value, at, "0123456789");
    if (digits == at && (at == value.size() || value[at] != '.'))
        return {};
    at = skip(value, digits, "0123456789.");
    if (at < value.size() && std::string_view(" \t\n\f\r;,").find(value[at]) == std::string_view::npos)
        return {};
    at = skip(value, at, whiteSpace);
    if (at < value.size() && (value[at] == ';' || value[at] == ','))
        at = skip(value, at + 1, whiteSpace);
    if (equalIgnoringAsciiCase(value.substr(at, 3), "url")) {
        const std::size_t equals = skip(value, at + 3, whiteSpace);
        if (equals < value.size() && value[equals] == '=')
            at = skip(value, equals + 1, whiteSpace);
    }
    if (at == value.size())
        return {};
    if (value[at] == '"' || value[at] == '\'')
        return {{at + 1, std::min(value.find(value[at], at + 1), value.size())}};
    return {{at, value.find_last_not_of(whiteSpace) + 1}};
}

} // namespace

std::vector<TextRange> addressesIn(std::string_view value, LinkSyntax syntax)
{
    switch (syntax) {
    case LinkSyntax::AddressList:
        return wordRanges(value);
    case LinkSyntax::ImageCandidates:
        return imageCandidates(value);
    case LinkSyntax::Refresh:
        return refreshAddress(value);
    default:
        return {{0, value.size()}};
    }
}

} // namespace luma
