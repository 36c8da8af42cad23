// SPDX-License-Identifier: GPL-3.0-or-later
#include "html/readtext.h"

#include "html/htmlscanner.h"
#include "html/maskedsource.h"

namespace luma::html {

namespace {

ReferenceContext contextOf(TextPlace place)
{
    if (place == TextPlace::RawText)
        return ReferenceContext::RawText;
    return place == TextPlace::Text || place == TextPlace::EscapableText ? ReferenceContext::Text
                                                                         : ReferenceContext::AttributeValue;
}

void append(ReadText& read, const MaskedSource& masked, std::string_view raw, std::size_t begin,
            std::size_t end, TextPlace place)
{
    if (begin == end)
        read.boundaries.push_back({begin, read.text.size()});
    for (const MaskedSource::Part& part : masked.partsOf(begin, end)) {
        const std::string_view source = raw.substr(part.begin, part.end - part.begin);
        if (part.isCode) {
            read.boundaries.push_back({part.begin, read.text.size()});
            read.boundaries.push_back({part.end, 0});
            read.text += place == TextPlace::RawText ? masked.rawText(part.begin, part.end)
                                                     : decodeCharacters(source, ReferenceContext::RawText);
            read.boundaries.back().decoded = read.text.size();
            continue;
        }
        for (const ValueBoundary& boundary : valueBoundaries(source, contextOf(place)))
            read.boundaries.push_back({part.begin + boundary.raw, read.text.size() + boundary.decoded});
        read.text += decodeCharacters(source, contextOf(place));
    }
}

} // namespace

ReadText readText(std::string_view raw, TextPlace place)
{
    ReadText read;
    const MaskedSource masked(raw);
    std::size_t done = 0;
    if (place == TextPlace::Text && raw.find('<') != std::string_view::npos) {
        HtmlScanner scanner(masked.text());
        HtmlToken token;
        while (scanner.next(token)) {
            append(read, masked, raw, done, token.begin, place);
            done = token.end;
        }
    }
    append(read, masked, raw, done, raw.size(), place);
    return read;
}

std::string escapedText(std::string_view text, TextPlace place, std::string_view lineEnd)
{
    const bool isText = place == TextPlace::Text || place == TextPlace::EscapableText;
    const bool hasReferences = place != TextPlace::RawText;
    std::string raw;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (c == '\n')
            raw += lineEnd;
        else if (c == '&' && hasReferences)
            raw += "&amp;";
        else if (c == '\r' && hasReferences)
            raw += "&#13;";
        else if (c == '<' && isText)
            raw += "&lt;";
        else if (c == '>' && isText)
            raw += "&gt;";
        else if (c == '"' && place == TextPlace::DoubleQuoted)
            raw += "&quot;";
        else if (c == '\'' && place == TextPlace::SingleQuoted)
            raw += "&#39;";
        else if (hasReferences && text.substr(i, 2) == "\xC2\xA0") {
            raw += "&nbsp;";
            ++i;
        } else
            raw += c;
    }
    return raw;
}

} // namespace luma::html
