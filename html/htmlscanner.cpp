// SPDX-License-Identifier: GPL-3.0-or-later
#include "html/htmlscanner.h"

#include "base/ascii.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace luma {

namespace {

constexpr std::size_t npos = std::string_view::npos;

enum CharacterClass : std::uint8_t {
    Letter = 1,
    Space = 2,      // tab, line feed, form feed, carriage return, blank
    NameEnd = 4,    // ends a tag's name: space, '/', '>'
    UnquotedEnd = 8 // ends an unquoted value: space, '>'
};

constexpr std::array<std::uint8_t, 256> makeClasses()
{
    std::array<std::uint8_t, 256> classes = {};
    for (unsigned c = 'a'; c <= 'z'; ++c)
        classes[c] = classes[c - 0x20] = Letter;
    for (const char c : {'\t', '\n', '\f', '\r', ' '})
        classes[static_cast<unsigned char>(c)] = Space | NameEnd | UnquotedEnd;
    classes['/'] = NameEnd;
    classes['>'] = NameEnd | UnquotedEnd;
    return classes;
}

constexpr std::array<std::uint8_t, 256> classes = makeClasses();

bool is(char c, CharacterClass wanted)
{
    return (classes[static_cast<unsigned char>(c)] & wanted) != 0;
}

std::size_t find(std::string_view text, char c, std::size_t from)
{
    if (from >= text.size())
        return npos;
    const void* const found = std::memchr(text.data() + from, c, text.size() - from);
    return found ? static_cast<std::size_t>(static_cast<const char*>(found) - text.data()) : npos;
}

// How the content of an HTML element is read (13.2.6.4 says which start tags switch the tokenizer).
TextKind contentKind(std::string_view name)
{
    struct Entry
    {
        std::string_view name;
        TextKind kind;
    };
    static constexpr auto entries = std::to_array<Entry>({{"script", TextKind::ScriptData},
                                                          {"style", TextKind::Rawtext},
                                                          {"title", TextKind::Rcdata},
                                                          {"textarea", TextKind::Rcdata},
                                                          {"iframe", TextKind::Rawtext},
                                                          {"noembed", TextKind::Rawtext},
                                                          {"noframes", TextKind::Rawtext},
                                                          {"xmp", TextKind::Rawtext},
                                                          {"plaintext", TextKind::Plaintext}});
    if (name.size() < 3 || name.size() > 9)
        return TextKind::Data;
    for (const Entry& entry : entries) {
        if (equalIgnoringAsciiCase(entry.name, name))
            return entry.kind;
    }
    return TextKind::Data;
}

// A fast test: only names with these initials change how the page is read.
bool mayMatter(std::string_view name)
{
    switch (asciiLower(name.front())) {
    case 's':
    case 't':
    case 'i':
    case 'n':
    case 'x':
    case 'p':
    case 'm':
        return name.size() > 2;
    default:
        return false;
    }
}

} // namespace

void HtmlScanner::startInText(TextKind kind, std::string_view element)
{
    m_textKind = kind;
    m_textElement = element;
}

bool HtmlScanner::startsWith(std::size_t position, std::string_view text) const
{
    return m_source.substr(position, text.size()) == text;
}

bool HtmlScanner::isTagAt(std::size_t position, std::string_view opening, std::string_view name) const
{
    const std::size_t nameEnd = position + opening.size() + name.size();
    return !name.empty() && nameEnd < m_source.size() && startsWith(position, opening) &&
           is(m_source[nameEnd], NameEnd) &&
           equalIgnoringAsciiCase(m_source.substr(position + opening.size(), name.size()), name);
}

bool HtmlScanner::next(HtmlToken& token)
{
    token.textBefore = m_textKind;
    token.attributes.clear();
    token.selfClosing = false;
    return m_textKind == TextKind::Data ? nextInData(token) : nextInText(token);
}

bool HtmlScanner::finish(HtmlToken& token, std::size_t textEnd)
{
    token.kind = HtmlTokenKind::End;
    token.begin = textEnd;
    token.end = m_source.size();
    token.attributes.clear();
    m_position = m_source.size();
    return false;
}

bool HtmlScanner::nextInData(HtmlToken& token)
{
    for (std::size_t open = find(m_source, '<', m_position); open != npos;
         open = find(m_source, '<', open + 1)) {
        if (open + 1 == m_source.size())
            break;
        const char c = m_source[open + 1];
        if (is(c, Letter))
            return readTag(token, open, HtmlTokenKind::StartTag);
        if (c == '/' && open + 2 < m_source.size() && is(m_source[open + 2], Letter))
            return readTag(token, open, HtmlTokenKind::EndTag);
        if ((c == '/' && open + 2 < m_source.size()) || c == '!' || c == '?')
            return readMarkup(token, open);
    }
    return finish(token, m_source.size());
}

bool HtmlScanner::readMarkup(HtmlToken& token, std::size_t open)
{
    switch (m_source[open + 1]) {
    case '!':
        readDeclaration(token, open);
        break;
    case '?':
        readUpTo(token, HtmlTokenKind::Comment, open, open + 1, m_markup == Markup::Xml ? "?>" : ">");
        break;
    default:
        readUpTo(token, m_source[open + 2] == '>' ? HtmlTokenKind::EmptyEndTag : HtmlTokenKind::Comment, open,
                 open + 2, ">");
    }
    return true;
}

void HtmlScanner::readUpTo(HtmlToken& token, HtmlTokenKind kind, std::size_t open, std::size_t content,
                           std::string_view closing)
{
    const std::size_t close = m_source.find(closing, content);
    token.kind = kind;
    token.begin = open;
    token.end = close == npos ? m_source.size() : close + closing.size();
    token.content = m_source.substr(content, close == npos ? npos : close - content);
    m_position = token.end;
}

void HtmlScanner::readDeclaration(HtmlToken& token, std::size_t open)
{
    if (startsWith(open + 2, "--"))
        readComment(token, open);
    else if (equalIgnoringAsciiCase(m_source.substr(open + 2, 7), "doctype"))
        readDoctype(token, open);
    else if ((m_foreign.isForeign() || m_markup == Markup::Xml) && startsWith(open + 2, "[CDATA["))
        readUpTo(token, HtmlTokenKind::Cdata, open, open + 9, "]]>");
    else
        readUpTo(token, HtmlTokenKind::Comment, open, open + 2, ">");
}

void HtmlScanner::readDoctype(HtmlToken& token, std::size_t open)
{
    // XML may declare entities in it, between brackets.
    const std::size_t bracket = m_markup == Markup::Xml ? m_source.find_first_of("[>", open) : npos;
    const bool hasSubset = bracket != npos && m_source[bracket] == '[';
    const std::size_t subsetEnd = hasSubset ? m_source.find(']', bracket) : npos;
    readUpTo(token, HtmlTokenKind::Doctype, open, open + 9, ">");
    if (subsetEnd != npos)
        m_position = token.end = std::min(m_source.find('>', subsetEnd), m_source.size() - 1) + 1;
}

void HtmlScanner::readComment(HtmlToken& token, std::size_t open)
{
    const std::size_t content = open + 4;
    token.kind = HtmlTokenKind::Comment;
    token.begin = open;
    for (std::size_t close = find(m_source, '>', content); close != npos;
         close = find(m_source, '>', close + 1)) {
        const std::string_view before = m_source.substr(content, close - content);
        std::size_t dashes = npos;
        if (before.empty() || before == "-")
            dashes = before.size();
        else if (before.ends_with("--"))
            dashes = 2;
        else if (before.ends_with("--!"))
            dashes = 3;
        if (dashes == npos)
            continue;
        token.content = before.substr(0, before.size() - dashes);
        token.end = m_position = close + 1;
        return;
    }
    token.content = m_source.substr(content);
    for (const std::string_view ending : {"--!", "--", "-"}) {
        if (token.content.ends_with(ending)) {
            token.content.remove_suffix(ending.size());
            break;
        }
    }
    token.end = m_position = m_source.size();
}

// Reads the attribute at `position`, which is not at the end of its tag; npos if the page ends in it.
std::size_t HtmlScanner::readAttribute(HtmlToken& token, std::size_t position)
{
    const char* const source = m_source.data();
    const std::size_t size = m_source.size();
    const std::size_t nameBegin = position;
    // A name may start with '='.
    do
        ++position;
    while (position < size && !is(source[position], NameEnd) && source[position] != '=');
    const std::size_t nameEnd = position;
    HtmlAttribute& attribute = token.attributes.emplace_back();
    attribute.name = m_source.substr(nameBegin, nameEnd - nameBegin);
    attribute.value = m_source.substr(nameEnd, 0);
    while (position < size && is(source[position], Space))
        ++position;
    if (position >= size || source[position] != '=')
        return position;
    do
        ++position;
    while (position < size && is(source[position], Space));
    if (position >= size)
        return npos;
    if (source[position] == '>') {
        attribute.value = m_source.substr(position, 0);
        attribute.quotes = Quotes::None;
        return position;
    }
    const char quote = source[position];
    if (quote == '"' || quote == '\'') {
        const std::size_t close = find(m_source, quote, position + 1);
        if (close == npos)
            return npos;
        attribute.value = m_source.substr(position + 1, close - position - 1);
        attribute.quotes = quote == '"' ? Quotes::Double : Quotes::Single;
        return close + 1;
    }
    const std::size_t valueBegin = position;
    while (position < size && !is(source[position], UnquotedEnd))
        ++position;
    attribute.value = m_source.substr(valueBegin, position - valueBegin);
    attribute.quotes = Quotes::None;
    return position;
}

bool HtmlScanner::readTag(HtmlToken& token, std::size_t open, HtmlTokenKind kind)
{
    const char* const source = m_source.data();
    const std::size_t size = m_source.size();
    const std::size_t nameBegin = open + (kind == HtmlTokenKind::StartTag ? 1 : 2);
    std::size_t position = nameBegin;
    while (position < size && !is(source[position], NameEnd))
        ++position;
    token.name = m_source.substr(nameBegin, position - nameBegin);
    for (;;) {
        while (position < size && is(source[position], Space))
            ++position;
        if (position >= size)
            return finish(token, open);
        if (source[position] == '>')
            break;
        if (source[position] == '/') {
            ++position;
            token.selfClosing = position < size && source[position] == '>';
            continue;
        }
        position = readAttribute(token, position);
        if (position == npos)
            return finish(token, open);
    }
    token.kind = kind;
    token.begin = open;
    token.end = m_position = position + 1;
    if (kind == HtmlTokenKind::StartTag)
        enterContentOf(token);
    else if (m_foreign.isActive())
        m_foreign.endTag(token.name);
    return true;
}

void HtmlScanner::enterContentOf(const HtmlToken& startTag)
{
    if (m_markup == Markup::Xml)
        return;
    if (!m_foreign.isActive() && !mayMatter(startTag.name))
        return;
    if (!m_foreign.startTag(startTag))
        return;
    m_textKind = contentKind(startTag.name);
    m_textElement = startTag.name;
}

std::size_t HtmlScanner::findEndOfText() const
{
    for (std::size_t open = find(m_source, '<', m_position); open != npos;
         open = find(m_source, '<', open + 1)) {
        if (isTagAt(open, "</", m_textElement))
            return open;
    }
    return npos;
}

// After "<!--" a script may contain "<script", and until that one's end tag its own does not count (13.2.5.15
// and following).
std::size_t HtmlScanner::findEndOfScript() const
{
    enum class State { Plain, Escaped, DoublyEscaped } state = State::Plain;
    for (std::size_t i = m_position; i < m_source.size(); ++i) {
        if (state == State::Plain) {
            i = find(m_source, '<', i);
            if (i == npos)
                return npos;
        }
        if (m_source[i] == '-' && state != State::Plain && startsWith(i, "-->")) {
            state = State::Plain;
        } else if (m_source[i] != '<') {
            continue;
        } else if (isTagAt(i, "</", m_textElement)) {
            if (state != State::DoublyEscaped)
                return i;
            state = State::Escaped;
        } else if (state == State::Plain && startsWith(i, "<!--")) {
            state = State::Escaped;
            ++i; // both dashes may already belong to "-->"
        } else if (state == State::Escaped && isTagAt(i, "<", "script")) {
            state = State::DoublyEscaped;
        }
    }
    return npos;
}

bool HtmlScanner::nextInText(HtmlToken& token)
{
    std::size_t close = npos;
    if (m_textKind == TextKind::ScriptData)
        close = findEndOfScript();
    else if (m_textKind != TextKind::Plaintext)
        close = findEndOfText();
    if (close == npos)
        return finish(token, m_source.size());
    m_textKind = TextKind::Data;
    return readTag(token, close, HtmlTokenKind::EndTag);
}

} // namespace luma
