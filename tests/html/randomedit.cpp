// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/html/randomedit.h"

#include "html/characterdata.h"
#include "html/codemarks.h"
#include "html/pagesource.h"
#include "html/tagtraits.h"

#include <memory>
#include <set>

namespace luma::test {

using namespace luma::html;

namespace {

const Node* common(const Node* a, const Node* b)
{
    while (!b->isInside(*a))
        a = a->parent();
    return a;
}

// Whether no other node's bytes lie among the node's.
bool standsAlone(const Node& node)
{
    if (!node.origin().source || !PageSource::isWhole(node))
        return false;
    const SourceRange& own = PageSource::recordOf(node).extent;
    const Node* const first = node.parent() ? node.parent()->firstChild() : nullptr;
    for (const Node* sibling = first; sibling; sibling = sibling->next()) {
        if (sibling == &node || !sibling->origin().source)
            continue;
        const SourceRange& other = PageSource::recordOf(*sibling).extent;
        if (other.begin < own.end && own.begin < other.end)
            return false;
    }
    return true;
}

// Whether an element that others cut in two (<b><i>one</b>two</i>) is anywhere in it: its other part may be far away.
bool holdsCutElement(const Node& top)
{
    static const std::set<std::string> formatting = {"a",    "b", "big",   "code",   "em",     "font", "i",
                                                     "nobr", "s", "small", "strike", "strong", "tt",   "u"};
    for (const Node* node = &top; node; node = node->following(top)) {
        const Element* const element = node->asElement();
        if (!element || !element->origin().source || !formatting.contains(element->tagName()))
            continue;
        const SourceRecord& record = PageSource::recordOf(*element);
        if (record.start.isEmpty() || record.end.isEmpty())
            return true;
    }
    return false;
}

std::string withoutMark(std::string_view source)
{
    return std::string(source.starts_with("\xEF\xBB\xBF") ? source.substr(3) : source);
}

} // namespace

std::optional<Edit> RandomEdits::make(Document& document, int kind)
{
    m_elements.clear();
    m_texts.clear();
    for (Node* node = document.body() ? document.body()->firstChild() : nullptr; node;
         node = node->following(*document.body())) {
        if (Element* const element = node->asElement())
            m_elements.push_back(element);
        else if (textOf(*node) && !hasRawText(*node->parent()->asElement()))
            m_texts.push_back(node);
    }
    using Maker = std::optional<Edit> (RandomEdits::*)();
    static constexpr Maker makers[kinds] = {
        &RandomEdits::typeLetter,    &RandomEdits::setAttribute,  &RandomEdits::removeAttribute,
        &RandomEdits::insertElement, &RandomEdits::removeElement, &RandomEdits::moveElement,
        &RandomEdits::wrapNode,      &RandomEdits::pasteElement,  &RandomEdits::makeList};
    if (m_elements.empty() || m_texts.empty())
        return {};
    return std::invoke(makers[kind % kinds], this);
}

std::optional<Edit> RandomEdits::typeLetter()
{
    auto& text = static_cast<CharacterData&>(*one(m_texts));
    const std::string old = text.data();
    std::size_t at = m_random() % (old.size() + 1);
    while (at < old.size() && (static_cast<unsigned char>(old[at]) & 0xC0U) == 0x80U)
        ++at;
    static const std::vector<std::string> letters = {"x", "<", "&", "amp;", "\xC3\xA9", " "};
    text.setData(std::string(old).insert(at, one(letters)));
    return Edit{"letter", [&text, old] { text.setData(old); }, &text};
}

std::optional<Edit> RandomEdits::setAttribute()
{
    return withAttributes("attribute", [this](Element& element) {
        const bool isNew = element.attributes().empty() || m_random() % 2 == 0;
        const std::string name = isNew ? "data-new" : one(element.attributes()).name;
        static const std::vector<std::string> values = {"", "a", "a b", "\"'", "a&amp;b", "x>y", "/"};
        element.setAttr(name, one(values));
        return true;
    });
}

std::optional<Edit> RandomEdits::removeAttribute()
{
    return withAttributes("removed attribute", [this](Element& element) {
        if (element.attributes().empty())
            return false;
        const std::string name = one(element.attributes()).name;
        element.removeAttr(name);
        return true;
    });
}

std::optional<Edit> RandomEdits::withAttributes(const char* name, const std::function<bool(Element&)>& change)
{
    Element& element = *one(m_elements);
    const std::vector<Attribute> old = element.attributes();
    // The attributes of a mark are the code itself, which nobody edits as such.
    if (isServerCode(element) || !change(element))
        return {};
    return Edit{name,
                [&element, old] {
                    std::vector<Attribute> attributes = old;
                    element.swapAttributes(attributes);
                },
                &element};
}

std::optional<Edit> RandomEdits::insertElement()
{
    auto made = std::make_unique<Element>("b");
    made->append(CharacterData::text("new & bold"));
    Node& added = one(m_texts)->after(std::move(made));
    return Edit{"insertion", [&added] { added.remove(); }, added.parent()};
}

std::optional<Edit> RandomEdits::removeElement()
{
    Element& element = *one(m_elements);
    const Position place = element.position();
    const auto holder = std::make_shared<NodePtr>(element.detach());
    return Edit{"deletion", [place, holder] { ParentNode::insertAt(place, std::move(*holder)); },
                place.parent};
}

std::optional<Edit> RandomEdits::moveElement()
{
    Element& element = *one(m_elements);
    Element& target = *one(m_elements);
    // To a place where one like it stands, so that a page can say it.
    if (&target == &element || target.isInside(element) || target.tagName() != element.tagName())
        return {};
    const Position from = element.position();
    target.before(element.detach());
    return Edit{"move", [from, &element] { ParentNode::insertAt(from, element.detach()); },
                common(from.parent, element.parent())};
}

std::optional<Edit> RandomEdits::wrapNode()
{
    Node& wrapped = *one(m_texts);
    const Position place = wrapped.position();
    auto span = std::make_unique<Element>("span");
    Node& wrapper = *span;
    span->append(wrapped.detach());
    ParentNode::insertAt(place, std::move(span));
    return Edit{"wrapping",
                [&wrapped, &wrapper] {
                    NodePtr inner = wrapped.detach();
                    wrapper.before(std::move(inner));
                    wrapper.remove();
                },
                place.parent};
}

std::optional<Edit> RandomEdits::pasteElement()
{
    Element& copied = *one(m_elements);
    Node& added = copied.after(copied.copy());
    return Edit{"paste", [&added] { added.remove(); }, added.parent()};
}

std::optional<Edit> RandomEdits::makeList()
{
    Element& first = *one(m_elements);
    if (!first.is("p") && !first.is("div"))
        return {};
    auto made = std::make_unique<Element>("ul");
    Element& list = *made;
    first.before(std::move(made));
    auto item = std::make_unique<Element>("li");
    NodeList children;
    first.swapChildren(children);
    item->swapChildren(children);
    list.append(std::move(item));
    const auto holder = std::make_shared<NodePtr>(first.detach());
    return Edit{"list",
                [&list, holder] {
                    NodeList nodes;
                    list.firstElement()->swapChildren(nodes);
                    (*holder)->asParent()->swapChildren(nodes);
                    list.before(std::move(*holder));
                    list.remove();
                },
                list.parent()};
}

std::string differenceOutside(const Edit& edit, const std::string& written, const std::string& source,
                              WritingWay way)
{
    const Node* around = edit.around;
    const Node* top = around;
    while (top->parent())
        top = top->parent();
    if (way > WritingWay::Patched && holdsCutElement(*top))
        return {};
    for (const Node* node = around; node; node = node->parent())
        around = standsAlone(*node) ? around : node->parent();
    if (!around)
        return {};
    const SourceRange& extent = PageSource::recordOf(*around).extent;
    const std::string text = withoutMark(written);
    const std::string old = withoutMark(source);
    const std::size_t rest = old.size() - extent.end;
    const bool isSame = text.size() >= extent.begin + rest && text.starts_with(old.substr(0, extent.begin)) &&
                        text.ends_with(old.substr(extent.end));
    return isSame ? std::string() : edit.name + " changed more than its element";
}

} // namespace luma::test
