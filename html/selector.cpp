// SPDX-License-Identifier: GPL-3.0-or-later
#include "html/selector.h"

#include "base/ascii.h"
#include "base/utf8.h"
#include "html/element.h"

#include <algorithm>
#include <charconv>

namespace luma::html {

namespace {

std::string_view takeUntil(std::string_view& rest, std::string_view stops)
{
    const std::size_t end = std::min(rest.find_first_of(stops), rest.size());
    const std::string_view taken = rest.substr(0, end);
    rest.remove_prefix(end);
    return taken;
}

void skipWhiteSpace(std::string_view& rest)
{
    rest.remove_prefix(std::min(rest.find_first_not_of(whiteSpace), rest.size()));
}

/// A name, its escapes resolved (CSS Syntax 3, 4.3.7).
std::string takeName(std::string_view& rest)
{
    constexpr std::string_view stops = " \t\n\f\r#[]()>+~,:.\"'";
    std::string name;
    while (!rest.empty() && stops.find(rest.front()) == std::string_view::npos) {
        const bool isEscape = rest.front() == '\\' && rest.size() > 1;
        if (!isEscape) {
            name += rest.front();
            rest.remove_prefix(1);
            continue;
        }
        rest.remove_prefix(1);
        char32_t code = 0;
        int digits = 0;
        for (; digits < 6 && !rest.empty() && hexValue(rest.front()) >= 0; ++digits) {
            code = code * 16 + static_cast<char32_t>(hexValue(rest.front()));
            rest.remove_prefix(1);
        }
        const bool isScalar = code > 0 && code <= 0x10FFFF && (code < 0xD800 || code > 0xDFFF);
        if (digits == 0) {
            name += rest.front();
            rest.remove_prefix(1);
            continue;
        }
        appendUtf8(name, isScalar ? code : 0xFFFD);
        rest.remove_prefix(!rest.empty() && isWhiteSpace(rest.front()) ? 1 : 0);
    }
    return name;
}

/// The element's place among its siblings, or among those of its name; from 1.
std::size_t positionOf(const Element& element, bool ofType)
{
    std::size_t position = 1;
    for (const Node* node = element.previous(); node; node = node->previous()) {
        const Element* const sibling = node->asElement();
        position += sibling && (!ofType || sibling->tagName() == element.tagName()) ? 1 : 0;
    }
    return position;
}

std::string_view unquoted(std::string_view value)
{
    if (value.size() >= 2 && (value.front() == '"' || value.front() == '\'') && value.back() == value.front())
        return value.substr(1, value.size() - 2);
    return value;
}

} // namespace

Selector::Selector(std::string_view text)
{
    for (;;) {
        Chains chains;
        if (!parseChains(text, chains)) {
            m_alternatives.clear();
            return;
        }
        m_alternatives.push_back(std::move(chains));
        if (text.empty())
            return;
        text.remove_prefix(1); // the comma
    }
}

// Up to a comma or the end.
bool Selector::parseChains(std::string_view& rest, Chains& chains)
{
    bool isChild = false;
    skipWhiteSpace(rest);
    while (!rest.empty() && rest.front() != ',') {
        Compound compound;
        if (!parseCompound(rest, compound))
            return false;
        if (!isChild)
            chains.emplace_back();
        chains.back().push_back(std::move(compound));
        skipWhiteSpace(rest);
        isChild = rest.starts_with('>');
        rest.remove_prefix(isChild ? 1 : 0);
        skipWhiteSpace(rest);
    }
    return !isChild && !chains.empty();
}

bool Selector::parseCompound(std::string_view& rest, Compound& compound)
{
    bool hasPart = true;
    if (rest.starts_with('*'))
        rest.remove_prefix(1);
    else
        hasPart = !(compound.tagName = asciiLower(takeName(rest))).empty();
    for (; !rest.empty() && !isWhiteSpace(rest.front()) && rest.front() != '>' && rest.front() != ',';
         hasPart = true) {
        if (!parsePart(rest, compound))
            return false;
    }
    return hasPart;
}

bool Selector::parsePart(std::string_view& rest, Compound& compound)
{
    const char kind = rest.front();
    if (kind == '[')
        return parseAttribute(rest, compound);
    rest.remove_prefix(1);
    switch (kind) {
    case '#':
        return !(compound.id = takeName(rest)).empty();
    case '.':
        compound.classes.push_back(takeName(rest));
        return !compound.classes.back().empty();
    case ':':
        return parsePseudoClass(rest, compound);
    default:
        return false;
    }
}

bool Selector::parsePseudoClass(std::string_view& rest, Compound& compound)
{
    const std::string name = asciiLower(takeName(rest));
    if (name == "root")
        return compound.isRoot = true;
    if ((name != "nth-child" && name != "nth-of-type") || !rest.starts_with('('))
        return false;
    const std::string_view number = trimmed(rest.substr(1, rest.find(')') - 1));
    if (rest.find(')') == std::string_view::npos)
        return false;
    rest.remove_prefix(rest.find(')') + 1);
    std::size_t& position = name == "nth-child" ? compound.position : compound.positionOfType;
    const auto [end, error] = std::from_chars(number.data(), number.data() + number.size(), position);
    return error == std::errc() && end == number.data() + number.size() && position > 0;
}

bool Selector::parseAttribute(std::string_view& rest, Compound& compound)
{
    if (rest.front() != '[')
        return false;
    // Find the closing bracket; one in a quoted value does not count.
    char quote = 0;
    std::size_t end = 1;
    for (; end < rest.size() && (quote || rest[end] != ']'); ++end) {
        if (quote ? rest[end] == quote : rest[end] == '"' || rest[end] == '\'')
            quote = quote ? '\0' : rest[end];
    }
    if (end == rest.size())
        return false;
    std::string_view inside = rest.substr(1, end - 1);
    rest.remove_prefix(end + 1);
    AttributeTest test;
    test.name = asciiLower(simplified(takeUntil(inside, "^=")));
    if (inside.starts_with("^=")) {
        test.kind = AttributeTest::Kind::Prefix;
        inside.remove_prefix(2);
    } else if (inside.starts_with('=')) {
        test.kind = AttributeTest::Kind::Equal;
        inside.remove_prefix(1);
    } else if (!inside.empty()) {
        return false;
    }
    test.value = unquoted(trimmed(inside));
    compound.attributes.push_back(test);
    return !test.name.empty();
}

bool Selector::matches(const Element& element, const Compound& compound)
{
    if (!compound.tagName.empty() && !equalIgnoringAsciiCase(element.tagName(), compound.tagName))
        return false;
    if (!compound.id.empty() && element.attr("id") != compound.id)
        return false;
    const std::vector<std::string_view> classes =
        compound.classes.empty() ? std::vector<std::string_view>() : words(element.attr("class"));
    for (const std::string& name : compound.classes) {
        if (std::find(classes.begin(), classes.end(), name) == classes.end())
            return false;
    }
    if ((compound.isRoot && (!element.parent() || element.parent()->asElement())) ||
        (compound.position > 0 && positionOf(element, false) != compound.position) ||
        (compound.positionOfType > 0 && positionOf(element, true) != compound.positionOfType))
        return false;
    return std::all_of(
        compound.attributes.begin(), compound.attributes.end(), [&](const AttributeTest& test) {
            return std::any_of(element.attributes().begin(), element.attributes().end(),
                               [&test](const Attribute& attribute) {
                                   if (!equalIgnoringAsciiCase(attribute.name, test.name))
                                       return false;
                                   switch (test.kind) {
                                   case AttributeTest::Kind::Equal:
                                       return equalIgnoringAsciiCase(attribute.value, test.value);
                                   case AttributeTest::Kind::Prefix:
                                       return !test.value.empty() &&
                                              startsWithIgnoringAsciiCase(attribute.value, test.value);
                                   case AttributeTest::Kind::Present:
                                       break;
                                   }
                                   return true;
                               });
        });
}

// The topmost element of the chain that ends at `element`; null if none does.
const Element* Selector::topOf(const Element& element, const Chain& chain)
{
    const Element* at = &element;
    for (std::size_t i = chain.size(); i-- > 0;) {
        if (!at || !matches(*at, chain[i]))
            return nullptr;
        if (i > 0)
            at = at->parent() ? at->parent()->asElement() : nullptr;
    }
    return at;
}

// Taking the nearest chain above is always right: it leaves the most for those above it.
bool Selector::matches(const Element& element, const Chains& chains)
{
    const Element* top = topOf(element, chains.back());
    for (std::size_t i = chains.size() - 1; top && i-- > 0;) {
        const Element* found = nullptr;
        for (const Node* above = top->parent(); above && !found; above = above->parent())
            found = above->asElement() ? topOf(*above->asElement(), chains[i]) : nullptr;
        top = found;
    }
    return top != nullptr;
}

bool Selector::matches(const Element& element) const
{
    return std::any_of(m_alternatives.begin(), m_alternatives.end(),
                       [&element](const Chains& chains) { return matches(element, chains); });
}

} // namespace luma::html
