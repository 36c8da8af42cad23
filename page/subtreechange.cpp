// SPDX-License-Identifier: GPL-3.0-or-later
#include "page/subtreechange.h"

#include "html/characterdata.h"
#include "html/parse.h"
#include "html/serializer.h"

#include <QString>
#include <QStringList>

#include <algorithm>
#include <limits>

namespace luma {

namespace {

int countOfElements(const html::ParentNode& parent)
{
    int count = 0;
    for (const html::Element* child = parent.firstElement(); child; child = child->nextElement())
        ++count;
    return count;
}

// In a template there is another tree.
int countBelow(const html::Node& top)
{
    int count = 0;
    const html::Node* node = &top;
    while (node) {
        const html::Element* const element = node->asElement();
        count += element && node != &top ? 1 : 0;
        const html::Node* next = element && element->is("template") ? nullptr : node->following(top);
        if (element && element->is("template")) {
            for (const html::Node* each = node; each != &top && !next; each = each->parent())
                next = each->next();
        }
        node = next;
    }
    return count;
}

/// The bounds of the run between so many elements before and after it: the elements themselves, null at the ends.
struct Bounds
{
    html::Node* previous = nullptr;
    html::Node* next = nullptr;
};

std::optional<Bounds> boundsIn(const html::ParentNode& parent, int before, int after)
{
    const int count = countOfElements(parent);
    if (before < 0 || after < 0 || before > count || after > count - before)
        return {};
    Bounds bounds;
    html::Element* child = parent.firstElement();
    for (int i = 0; child; ++i, child = child->nextElement()) {
        if (i == before - 1)
            bounds.previous = child;
        if (i == count - after) {
            bounds.next = child;
            break;
        }
    }
    return bounds;
}

/// FNV-1a over UTF-16 code units.
class Hash final
{
public:
    void add(char16_t unit) { m_value = (m_value ^ unit) * 16777619U; }
    void add(std::string_view text)
    {
        if (std::all_of(text.begin(), text.end(),
                        [](char c) { return static_cast<unsigned char>(c) < 0x80; })) {
            for (const char c : text)
                add(static_cast<char16_t>(c));
            return;
        }
        const QString wide = QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
        for (const QChar c : wide)
            add(static_cast<char16_t>(c.unicode()));
    }
    [[nodiscard]] std::uint32_t value() const { return m_value; }

private:
    std::uint32_t m_value = 2166136261U;
};

// What separates the parts is no character of a page's text.
constexpr char16_t elementBegins = 1;
constexpr char16_t attributeBegins = 2;
constexpr char16_t valueBegins = 3;
constexpr char16_t commentBegins = 4;
constexpr char16_t commentEnds = 5;
constexpr char16_t elementEnds = 6;

void enter(const html::Node& node, Hash& hash)
{
    if (const html::Element* const element = node.asElement()) {
        hash.add(elementBegins);
        hash.add(element->tagName());
        for (const html::Attribute& attribute : element->attributes()) {
            hash.add(attributeBegins);
            hash.add(attribute.name);
            hash.add(valueBegins);
            hash.add(attribute.value);
        }
    } else if (const std::string* const text = html::textOf(node)) {
        hash.add(*text);
    } else if (node.kind() == html::Node::Kind::Comment) {
        hash.add(commentBegins);
        hash.add(static_cast<const html::CharacterData&>(node).data());
        hash.add(commentEnds);
    }
}

} // namespace

html::Element* elementAtPath(const html::Document& document, const std::vector<int>& path)
{
    html::Element* element = document.documentElement();
    for (const int step : path) {
        if (!element || element->is("template"))
            return nullptr;
        element = element->firstElement();
        for (int i = 0; element && i < step; ++i)
            element = element->nextElement();
    }
    return element;
}

std::optional<std::vector<int>> pathOf(const html::Element& element)
{
    std::vector<int> path;
    const html::Node* node = &element;
    for (; node->parent() && node->parent()->asElement(); node = node->parent()) {
        if (node->parent()->asElement()->is("template"))
            return {};
        int position = 0;
        for (const html::Node* each = node->previous(); each; each = each->previous())
            position += each->asElement() ? 1 : 0;
        path.push_back(position);
    }
    if (!node->parent())
        return {};
    std::reverse(path.begin(), path.end());
    return path;
}

std::optional<QString> pathForScript(const html::Element& element)
{
    const auto path = pathOf(element);
    if (!path)
        return {};
    QStringList steps;
    for (const int step : *path)
        steps.append(QString::number(step));
    return u'[' + steps.join(u',') + u']';
}

std::optional<MarkupDifference> differenceOf(const html::Document& document, const SubtreeChange& change)
{
    html::Element* const parent = elementAtPath(document, change.path);
    if (!parent || parent->tagName() != change.name || parent->is("template") || parent->is("html"))
        return {};
    const auto bounds = boundsIn(*parent, change.before, change.after);
    if (!bounds)
        return {};
    auto parsed = html::parseFragment(change.markup, *parent);
    if (!parsed)
        return {};
    html::Element other(parent->tagName(), parent->nameSpace());
    for (html::NodePtr& node : *parsed)
        other.append(std::move(node));
    if (countBelow(other) != change.elements)
        return {};
    html::Node* const first = bounds->previous ? bounds->previous->next() : parent->firstChild();
    return differenceInRun(*parent, first, bounds->next, other);
}

std::optional<SubtreeChange> changeBetween(const html::ParentNode& parent, const html::Node* previous,
                                           const html::Node* next)
{
    const html::Element* const element = parent.asElement();
    auto path = element && !element->is("template") && !element->is("html") ? pathOf(*element) : std::nullopt;
    if (!path)
        return {};
    SubtreeChange change;
    change.path = *std::move(path);
    change.name = element->tagName();
    while (previous && !previous->asElement())
        previous = previous->previous();
    while (next && !next->asElement())
        next = next->next();
    for (const html::Node* node = previous; node; node = node->previous())
        change.before += node->asElement() ? 1 : 0;
    for (const html::Node* node = next; node; node = node->next())
        change.after += node->asElement() ? 1 : 0;
    for (const html::Node* node = previous ? previous->next() : parent.firstChild(); node != next;
         node = node->next()) {
        html::serialize(*node, change.markup);
        change.elements += node->asElement() ? 1 + countBelow(*node) : 0;
    }
    return change;
}

std::uint32_t fingerprint(const html::Document& document)
{
    Hash hash;
    const html::Node* node = document.documentElement();
    const html::Node* const root = node;
    while (node) {
        enter(*node, hash);
        const html::ParentNode* const parent = node->asParent();
        if (parent && parent->firstChild()) {
            node = parent->firstChild();
            continue;
        }
        while (node) {
            if (node->asElement())
                hash.add(elementEnds);
            if (node == root)
                return hash.value();
            if (node->next()) {
                node = node->next();
                break;
            }
            node = node->parent();
        }
    }
    return hash.value();
}

} // namespace luma
