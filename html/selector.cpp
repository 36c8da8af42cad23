// SPDX-License-Identifier: GPL-3.0-or-later
#include "html/selector.h"

#include "base/ascii.h"
#include "html/element.h"

#include <algorithm>

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

std::string_view unquoted(std::string_view value)
{
    if (value.size() >= 2 && (value.front() == '"' || value.front() == '\'') && value.back() == value.front())
        return value.substr(1, value.size() - 2);
    return value;
}

} // namespace

Selector::Selector(std::string_view text)
{
    skipWhiteSpace(text);
    while (!text.empty()) {
        Compound compound;
        if (!parseCompound(text, compound)) {
            m_compounds.clear();
            return;
        }
        m_compounds.push_back(std::move(compound));
        skipWhiteSpace(text);
    }
}

bool Selector::parseCompound(std::string_view& rest, Compound& compound)
{
    constexpr std::string_view stops = " \t\n\f\r#[]>+~,:.\"'";
    const std::string_view tagName = takeUntil(rest, stops);
    if (tagName != "*")
        compound.tagName = asciiLower(tagName);
    bool hasPart = !tagName.empty();
    while (!rest.empty() && !isWhiteSpace(rest.front())) {
        hasPart = true;
        if (rest.front() == '#') {
            rest.remove_prefix(1);
            compound.id = takeUntil(rest, stops);
            if (compound.id.empty())
                return false;
        } else if (!parseAttribute(rest, compound)) {
            return false;
        }
    }
    return hasPart;
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

bool Selector::matches(const Element& element) const
{
    if (m_compounds.empty() || !matches(element, m_compounds.back()))
        return false;
    // All steps are separated by blanks, so taking the nearest matching ancestor is always right.
    auto wanted = m_compounds.rbegin() + 1;
    for (const Node* above = element.parent(); above && wanted != m_compounds.rend();
         above = above->parent()) {
        if (const Element* ancestor = above->asElement(); ancestor && matches(*ancestor, *wanted))
            ++wanted;
    }
    return wanted == m_compounds.rend();
}

} // namespace luma::html
