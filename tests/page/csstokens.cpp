// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/page/csstokens.h"

namespace luma::test {

namespace {

class Tokenizer final
{
public:
    explicit Tokenizer(std::string_view css) : m_css(css) {}

    std::vector<std::string> all()
    {
        std::vector<std::string> tokens;
        while (m_at < m_css.size()) {
            const std::size_t start = m_at;
            const char* kind = consume();
            if (*kind != 's')
                tokens.push_back(std::string(kind) + ' ' + std::string(m_css.substr(start, m_at - start)));
        }
        return tokens;
    }

private:
    int at(std::size_t ahead = 0) const
    {
        return m_at + ahead < m_css.size() ? static_cast<unsigned char>(m_css[m_at + ahead]) : -1;
    }
    static bool isNewline(int c) { return c == '\n' || c == '\r' || c == '\f'; }
    static bool isSpace(int c) { return isNewline(c) || c == ' ' || c == '\t'; }
    static bool isDigit(int c) { return c >= '0' && c <= '9'; }
    static bool isHex(int c) { return isDigit(c) || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F'); }
    static bool isNameStart(int c)
    {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' || c >= 0x80;
    }
    static bool isName(int c) { return isNameStart(c) || isDigit(c) || c == '-'; }
    bool isEscape(std::size_t ahead) const
    {
        return at(ahead) == '\\' && !isNewline(at(ahead + 1)) && at(ahead + 1) >= 0;
    }
    bool startsIdent(std::size_t ahead = 0) const
    {
        if (at(ahead) == '-')
            return isNameStart(at(ahead + 1)) || at(ahead + 1) == '-' || isEscape(ahead + 1);
        return isNameStart(at(ahead)) || isEscape(ahead);
    }
    bool startsNumber() const
    {
        const std::size_t sign = at() == '+' || at() == '-' ? 1 : 0;
        return isDigit(at(sign)) || (at(sign) == '.' && isDigit(at(sign + 1)));
    }

    const char* consume()
    {
        if (at() == '/' && at(1) == '*')
            return comment();
        if (isSpace(at()))
            return spaces();
        if (at() == '"' || at() == '\'')
            return string();
        if (startsNumber())
            return number();
        if (m_css.substr(m_at).starts_with("<!--") || m_css.substr(m_at).starts_with("-->"))
            return m_at += at() == '<' ? 4 : 3, "cd";
        if ((at() == '#' && (isName(at(1)) || isEscape(1))) || (at() == '@' && startsIdent(1)))
            return ++m_at, name(), "hash-or-at";
        if (startsIdent())
            return identLike();
        return ++m_at, "delim";
    }

    const char* comment()
    {
        const std::size_t end = m_css.find("*/", m_at + 2);
        m_at = end == std::string_view::npos ? m_css.size() : end + 2;
        return "comment";
    }
    const char* spaces()
    {
        while (isSpace(at()))
            ++m_at;
        return "s";
    }
    const char* string()
    {
        const int quote = at();
        for (++m_at; at() >= 0; ++m_at) {
            if (at() == quote)
                return ++m_at, "string";
            if (isNewline(at()))
                return "bad-string";
            if (at() == '\\')
                m_at += at(1) == '\r' && at(2) == '\n' ? 2 : at(1) >= 0 ? 1 : 0;
        }
        return "open-string";
    }
    void digits()
    {
        while (isDigit(at()))
            ++m_at;
    }
    const char* number()
    {
        m_at += at() == '+' || at() == '-' ? 1 : 0;
        digits();
        if (at() == '.' && isDigit(at(1)))
            ++m_at, digits();
        const std::size_t sign = at(1) == '+' || at(1) == '-' ? 1 : 0;
        if ((at() == 'e' || at() == 'E') && isDigit(at(1 + sign)))
            m_at += 1 + sign, digits();
        if (startsIdent())
            return name(), "dimension";
        if (at() == '%')
            return ++m_at, "percentage";
        return "number";
    }
    void name()
    {
        for (;;) {
            if (isName(at()))
                ++m_at;
            else if (isEscape(0))
                escape();
            else
                return;
        }
    }
    void escape()
    {
        ++m_at;
        if (!isHex(at())) {
            ++m_at;
            return;
        }
        for (int i = 0; i < 6 && isHex(at()); ++i)
            ++m_at;
        if (isSpace(at()))
            m_at += at() == '\r' && at(1) == '\n' ? 2 : 1;
    }
    const char* identLike()
    {
        const std::size_t start = m_at;
        name();
        const std::string_view word = m_css.substr(start, m_at - start);
        if (at() != '(')
            return "ident";
        ++m_at;
        const bool isUrl =
            word.size() == 3 && (word[0] | 32) == 'u' && (word[1] | 32) == 'r' && (word[2] | 32) == 'l';
        std::size_t ahead = 0;
        while (isSpace(at(ahead)))
            ++ahead;
        return isUrl && at(ahead) != '"' && at(ahead) != '\'' ? url() : "function";
    }
    const char* url()
    {
        while (at() >= 0 && at() != ')')
            m_at += isEscape(0) ? 2 : 1;
        m_at += at() == ')' ? 1 : 0;
        return "url";
    }

    std::string_view m_css;
    std::size_t m_at = 0;
};

} // namespace

std::vector<std::string> cssTokens(std::string_view css)
{
    return Tokenizer(css).all();
}

} // namespace luma::test
