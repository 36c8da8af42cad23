// SPDX-License-Identifier: GPL-3.0-or-later
#include "html/cssreferences.h"

#include "base/ascii.h"
#include "base/utf8.h"

#include <algorithm>
#include <optional>

namespace luma {

namespace {

bool isLineEnd(char c)
{
    return c == '\n' || c == '\r' || c == '\f';
}

// The escape at `raw[i]`, a backslash: appends its text and gives the place behind it.
std::size_t appendEscape(std::string_view raw, std::size_t i, std::string& text)
{
    ++i;
    if (i == raw.size())
        return i;
    if (isLineEnd(raw[i]))
        return i + (raw.substr(i).starts_with("\r\n") ? 2 : 1);
    char32_t code = 0;
    std::size_t digits = 0;
    while (digits < 6 && i + digits < raw.size() && hexValue(raw[i + digits]) >= 0) {
        code = code * 16 + static_cast<char32_t>(hexValue(raw[i + digits++]));
    }
    if (digits == 0) {
        text += raw[i];
        return i + 1;
    }
    const bool isScalar = code != 0 && code <= 0x10FFFF && (code < 0xD800 || code > 0xDFFF);
    appendUtf8(text, isScalar ? code : 0xFFFD);
    i += digits;
    return i < raw.size() && isWhiteSpace(raw[i]) ? i + (raw.substr(i).starts_with("\r\n") ? 2 : 1) : i;
}

/// Walks over the tokens of a sheet as far as they matter to addresses.
class Scanner final
{
public:
    explicit Scanner(std::string_view source) : m_source(source) {}

    std::vector<CssReference> read()
    {
        while (m_at < m_source.size())
            readToken();
        return std::move(m_found);
    }

private:
    enum class Rule : std::uint8_t { Other, Import, Namespace };

    [[nodiscard]] bool startsWith(std::string_view text) const
    {
        return m_source.substr(m_at).starts_with(text);
    }
    [[nodiscard]] bool ended() const { return m_at >= m_source.size(); }

    void readToken()
    {
        const char c = m_source[m_at];
        if (startsWith("/*")) {
            const std::size_t end = m_source.find("*/", m_at + 2);
            m_at = end == std::string_view::npos ? m_source.size() : end + 2;
        } else if (c == '"' || c == '\'') {
            readString();
        } else if (c == '@') {
            ++m_at;
            const std::string_view name = readName();
            m_rule = equalIgnoringAsciiCase(name, "import")      ? Rule::Import
                     : equalIgnoringAsciiCase(name, "namespace") ? Rule::Namespace
                                                                 : Rule::Other;
        } else if (isCssNameByte(c)) {
            readNameOrFunction();
        } else {
            if (c == ';' || c == '{' || c == '}')
                endStatement();
            else if (c == '(')
                ++m_depth;
            else if (c == ')')
                closeBracket();
            m_at += c == '\\' && m_at + 1 < m_source.size() ? 2 : 1;
        }
    }

    void endStatement()
    {
        m_rule = Rule::Other;
        m_depth = 0;
        m_imageSetDepth = 0;
    }

    void closeBracket()
    {
        if (m_depth > 0)
            --m_depth;
        if (m_depth < m_imageSetDepth)
            m_imageSetDepth = 0;
    }

    std::string_view readName()
    {
        const std::size_t begin = m_at;
        while (!ended() &&
               (isCssNameByte(m_source[m_at]) || (m_source[m_at] == '\\' && m_at + 1 < m_source.size())))
            m_at += m_source[m_at] == '\\' ? 2 : 1;
        return m_source.substr(begin, m_at - begin);
    }

    void readNameOrFunction()
    {
        const std::string_view name = readName();
        if (ended() || m_source[m_at] != '(')
            return;
        ++m_at;
        if (equalIgnoringAsciiCase(name, "url") || equalIgnoringAsciiCase(name, "src")) {
            readUrl();
            return;
        }
        ++m_depth;
        if (equalIgnoringAsciiCase(name, "image-set") || equalIgnoringAsciiCase(name, "-webkit-image-set"))
            m_imageSetDepth = m_depth;
    }

    // Behind "url(".
    void readUrl()
    {
        while (!ended() && isWhiteSpace(m_source[m_at]))
            ++m_at;
        if (!ended() && (m_source[m_at] == '"' || m_source[m_at] == '\'')) {
            const std::optional<CssReference> reference = stringReference();
            if (reference && m_rule != Rule::Namespace)
                m_found.push_back(*reference);
            ++m_depth;
            return;
        }
        const std::size_t begin = m_at;
        while (!ended() && m_source[m_at] != ')')
            m_at += m_source[m_at] == '\\' && m_at + 1 < m_source.size() ? 2 : 1;
        std::size_t end = std::min(m_at, m_source.size());
        while (end > begin && isWhiteSpace(m_source[end - 1]))
            --end;
        m_at = std::min(m_at + 1, m_source.size());
        if (m_rule != Rule::Namespace && isBareUrl(m_source.substr(begin, end - begin)))
            m_found.push_back({begin, end, CssQuotes::None, m_rule == Rule::Import});
        endOfUrl();
    }

    // What holds these is no address but a damaged token (CSS Syntax 3, 4.3.6).
    static bool isBareUrl(std::string_view text)
    {
        std::string ignored;
        for (std::size_t i = 0; i < text.size();) {
            if (text[i] == '"' || text[i] == '\'' || text[i] == '(' || isWhiteSpace(text[i]))
                return false;
            i = text[i] == '\\' ? appendEscape(text, i, ignored) : i + 1;
        }
        return true;
    }

    void readString()
    {
        const std::optional<CssReference> reference = stringReference();
        const bool inImageSet = m_imageSetDepth > 0 && m_depth == m_imageSetDepth;
        if (reference && (m_rule == Rule::Import || inImageSet))
            m_found.push_back(*reference);
        endOfUrl();
    }

    // A further string of an @import belongs to supports() or a layer.
    void endOfUrl()
    {
        if (m_rule == Rule::Import)
            m_rule = Rule::Other;
    }

    // At the opening quote; goes behind the closing one. Nothing for a string damaged by a line end, which closes it
    // (CSS Syntax 3, 4.3.5).
    std::optional<CssReference> stringReference()
    {
        const char quote = m_source[m_at++];
        CssReference reference{m_at, m_at, quote == '"' ? CssQuotes::Double : CssQuotes::Single,
                               m_rule == Rule::Import};
        const auto atLineEnd = [this] { return !ended() && isLineEnd(m_source[m_at]); };
        while (!ended() && m_source[m_at] != quote && !atLineEnd())
            m_at += m_source[m_at] == '\\' && m_at + 1 < m_source.size() ? 2 : 1;
        const bool isDamaged = atLineEnd();
        reference.end = std::min(m_at, m_source.size());
        m_at = std::min(m_at + 1, m_source.size());
        return isDamaged ? std::nullopt : std::optional(reference);
    }

    std::string_view m_source;
    std::size_t m_at = 0;
    std::size_t m_depth = 0;         // of open brackets in this statement
    std::size_t m_imageSetDepth = 0; // the one of an open image-set()
    Rule m_rule = Rule::Other;
    std::vector<CssReference> m_found;
};

} // namespace

std::vector<CssReference> cssReferences(std::string_view source)
{
    return Scanner(source).read();
}

std::string decodedCss(std::string_view raw)
{
    std::string text;
    text.reserve(raw.size());
    for (std::size_t i = 0; i < raw.size();) {
        if (raw[i] == '\\')
            i = appendEscape(raw, i, text);
        else
            text += raw[i++];
    }
    return text;
}

std::string encodedCss(std::string_view text, CssQuotes quotes)
{
    std::string raw;
    raw.reserve(text.size());
    for (const char c : text) {
        const bool special = quotes == CssQuotes::None
                                 ? c == '"' || c == '\'' || c == '(' || c == ')' || c == ' '
                             : quotes == CssQuotes::Single ? c == '\''
                                                           : c == '"';
        if (special || c == '\\')
            raw.append(1, '\\').append(1, c);
        else if (c == '\n' || c == '\r' || c == '\f' || c == '\t')
            raw.append(c == '\n' ? "\\a " : c == '\r' ? "\\d " : c == '\f' ? "\\c " : "\\9 ");
        else
            raw += c;
    }
    return raw;
}

std::string cssIdentifier(std::string_view text)
{
    constexpr std::string_view hexDigits = "0123456789abcdef";
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        const auto code = static_cast<unsigned char>(c);
        const bool isFirst = i == 0 || (i == 1 && text[0] == '-');
        if (code < 0x20 || code == 0x7F || (isAsciiDigit(c) && isFirst)) {
            result += '\\';
            if (code >= 0x10)
                result += hexDigits[code >> 4U];
            result += hexDigits[code & 0xFU];
            result += ' ';
            continue;
        }
        const bool isPlain = code >= 0x80 || isAsciiAlphanumeric(c) || c == '_' || c == '-';
        if (!isPlain || (c == '-' && text.size() == 1))
            result += '\\';
        result += c;
    }
    return result;
}

} // namespace luma
