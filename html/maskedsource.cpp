// SPDX-License-Identifier: GPL-3.0-or-later
#include "html/maskedsource.h"

#include "base/ascii.h"
#include "html/codemarks.h"
#include "html/htmlscanner.h"

#include <algorithm>
#include <unordered_map>

namespace luma::html {

namespace {

// A letter and digits of base 26, the last ones where there is little room.
std::string letters(std::size_t number, std::size_t length)
{
    std::string text(length, 'a');
    for (std::size_t i = length; i-- > 1 && number > 0; number /= 26)
        text[i] = static_cast<char>('a' + number % 26);
    text[0] = 'q';
    return text;
}

} // namespace

MaskedSource::MaskedSource(std::string_view source) : m_source(source), m_codes(serverCodeIn(source))
{
    if (m_codes.empty())
        return;
    m_masked = source;
    std::unordered_map<std::string_view, std::size_t> numbers;
    for (const ServerCode& code : m_codes) {
        const std::size_t length = code.end - code.begin;
        const std::size_t number =
            numbers.try_emplace(source.substr(code.begin, length), numbers.size()).first->second;
        m_masked.replace(code.begin, length, letters(number, length));
    }
    markNodes();
}

// Code is a comment where it stands in ordinary text. A comment of two marks has room in the shortest code.
void MaskedSource::markNodes()
{
    const std::string scanned = m_masked;
    HtmlScanner scanner(scanned);
    HtmlToken token;
    std::size_t textBegin = 0;
    auto code = m_codes.begin();
    for (bool hasMore = true; hasMore; textBegin = token.end) {
        hasMore = scanner.next(token);
        while (code != m_codes.end() && code->begin < textBegin)
            ++code;
        for (; code != m_codes.end() && code->begin < token.begin; ++code) {
            if (token.textBefore != TextKind::Data)
                continue;
            m_masked[code->begin] = '<';
            m_masked[code->begin + 1] = '!';
            m_masked[code->end - 1] = '>';
        }
    }
}

std::vector<MaskedSource::Part> MaskedSource::partsOf(std::size_t begin, std::size_t end) const
{
    std::vector<Part> parts;
    auto code =
        std::lower_bound(m_codes.begin(), m_codes.end(), begin,
                         [](const ServerCode& each, std::size_t place) { return each.begin < place; });
    for (; code != m_codes.end() && code->end <= end; ++code) {
        if (begin < code->begin)
            parts.push_back({begin, code->begin, false});
        parts.push_back({code->begin, code->end, true});
        begin = code->end;
    }
    if (begin < end)
        parts.push_back({begin, end, false});
    return parts;
}

bool MaskedSource::holdsCode(std::size_t begin, std::size_t end) const
{
    const auto code =
        std::lower_bound(m_codes.begin(), m_codes.end(), begin,
                         [](const ServerCode& each, std::size_t place) { return each.begin < place; });
    return code != m_codes.end() && code->end <= end;
}

std::string MaskedSource::codeAt(std::size_t begin, std::size_t end) const
{
    const std::vector<Part> parts = partsOf(begin, end);
    if (parts.size() != 1 || !parts.front().isCode)
        return {};
    std::string code = decoded(begin, end, ReferenceContext::RawText);
    // Elsewhere than at the end of the page PHP needs its end.
    if (code.starts_with("<?") && !code.ends_with("?>"))
        code += "\n?>";
    return code;
}

std::string MaskedSource::decoded(std::size_t begin, std::size_t end, ReferenceContext context) const
{
    std::string text;
    for (const Part& part : partsOf(begin, end))
        text += decodeCharacters(m_source.substr(part.begin, part.end - part.begin),
                                 part.isCode ? ReferenceContext::RawText : context);
    return text;
}

std::string MaskedSource::name(std::size_t begin, std::size_t end) const
{
    std::string text;
    for (const Part& part : partsOf(begin, end)) {
        const std::string_view source = m_source.substr(part.begin, part.end - part.begin);
        text += part.isCode ? spelledCode(decodeCharacters(source, ReferenceContext::RawText))
                            : asciiLower(source);
    }
    return text;
}

std::string MaskedSource::rawText(std::size_t begin, std::size_t end) const
{
    std::string text;
    for (const Part& part : partsOf(begin, end)) {
        const std::string source =
            decodeCharacters(m_source.substr(part.begin, part.end - part.begin), ReferenceContext::RawText);
        const bool doesHarm =
            source.find("</") != std::string::npos || source.find("<!-") != std::string::npos ||
            source.find("-->") != std::string::npos || source.find("--!>") != std::string::npos;
        text += part.isCode && doesHarm ? spelledCode(source) : source;
    }
    return text;
}

} // namespace luma::html
