// SPDX-License-Identifier: GPL-3.0-or-later
#include "page/pagecommands.h"

#include "base/ascii.h"
#include "html/characterdata.h"
#include "html/codemarks.h"
#include "page/elementcopy.h"
#include "page/kepthistory.h"
#include "page/originmatching.h"
#include "page/pagetree.h"
#include "page/typedtext.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QUndoCommand>
#include <QUndoStack>

#include <functional>
#include <utility>

namespace luma {

namespace {

constexpr qint64 pause = 2000; // milliseconds that end a run of typing

using AttributesChange = std::function<void(std::vector<html::Attribute>&)>;

void changeAttributes(html::Node& top, const AttributesChange& change)
{
    for (html::Node* node = &top; node; node = node->following(top)) {
        html::Element* const element = node->asElement();
        if (!element)
            continue;
        std::vector<html::Attribute> attributes = element->attributes();
        change(attributes);
        if (attributes != element->attributes())
            element->swapAttributes(attributes);
    }
}

class PageCommand : public QUndoCommand
{
public:
    using QUndoCommand::QUndoCommand;
    /// Changes what the command keeps for the way there or back.
    virtual void changeKept(const AttributesChange& change) = 0;
};

class InsertCommand final : public PageCommand
{
public:
    InsertCommand(PageTree& tree, html::NodePtr node, const html::Position& position, const QString& name)
        : PageCommand(name), m_tree(tree), m_detached(std::move(node)), m_position(position)
    {}
    void redo() override { m_node = &m_tree.insert(std::move(m_detached), m_position); }
    void undo() override { m_detached = m_tree.take(*m_node); }
    void changeKept(const AttributesChange& change) override
    {
        if (m_detached)
            changeAttributes(*m_detached, change);
    }

private:
    PageTree& m_tree;
    html::NodePtr m_detached;
    html::Node* m_node = nullptr;
    html::Position m_position;
};

class RemoveCommand final : public PageCommand
{
public:
    RemoveCommand(PageTree& tree, html::Node& node, const QString& name)
        : PageCommand(name), m_tree(tree), m_node(node), m_position(node.position())
    {}
    void redo() override { m_detached = m_tree.take(m_node); }
    void undo() override { m_tree.insert(std::move(m_detached), m_position); }
    void changeKept(const AttributesChange& change) override
    {
        if (m_detached)
            changeAttributes(*m_detached, change);
    }

private:
    PageTree& m_tree;
    html::Node& m_node;
    html::Position m_position;
    html::NodePtr m_detached;
};

class MoveCommand final : public PageCommand
{
public:
    MoveCommand(PageTree& tree, html::Node& node, const html::Position& to, const QString& name)
        : PageCommand(name), m_tree(tree), m_node(node), m_from(node.position()), m_to(to)
    {}
    void redo() override { m_tree.move(m_node, m_to); }
    void undo() override { m_tree.move(m_node, m_from); }
    void changeKept(const AttributesChange&) override {}

private:
    PageTree& m_tree;
    html::Node& m_node;
    html::Position m_from;
    html::Position m_to;
};

/// Attributes and a run of nodes that change places with others, there and back. Commands that were merged
/// are the steps of one.
class ExchangeCommand final : public PageCommand
{
public:
    ExchangeCommand(PageTree& tree, MarkupDifference difference, const QString& name,
                    PageCommands::Merging merging)
        : PageCommand(name),
          m_tree(tree),
          m_merging(merging),
          m_typed(typedText(difference)),
          m_made(QDateTime::currentMSecsSinceEpoch())
    {
        m_steps.push_back(std::move(difference));
    }

    void redo() override
    {
        for (MarkupDifference& step : m_steps)
            exchange(step);
    }
    void undo() override
    {
        for (auto step = m_steps.rbegin(); step != m_steps.rend(); ++step)
            exchange(*step);
    }
    void changeKept(const AttributesChange& change) override
    {
        for (MarkupDifference& step : m_steps) {
            for (auto& [element, attributes] : step.attributes)
                change(attributes);
            for (const html::NodePtr& node : step.nodes)
                changeAttributes(*node, change);
        }
    }
    int id() const override { return m_merging == PageCommands::Merging::WithTheLast ? 1 : -1; }
    bool mergeWith(const QUndoCommand* command) override
    {
        // Commands of this id are of this class; the stack deletes the merged one.
        auto* next = const_cast<ExchangeCommand*>(static_cast<const ExchangeCommand*>(command));
        if (next->text() != text() || next->m_made - m_made > pause || !isContinuedBy(*next))
            return false;
        m_made = next->m_made;
        m_typed = next->m_typed;
        for (MarkupDifference& step : next->m_steps)
            m_steps.push_back(std::move(step));
        return true;
    }

private:
    /// Letter after letter of one word, or one removal after the other, at one place.
    [[nodiscard]] bool isContinuedBy(const ExchangeCommand& next) const
    {
        if (next.m_steps.front().parent != m_steps.back().parent)
            return false;
        if (next.m_typed == TypedText::Removes)
            return m_typed == TypedText::Removes;
        return next.m_typed == TypedText::AddsToWord &&
               (m_typed == TypedText::AddsToWord || m_typed == TypedText::BeginsWord);
    }

    void exchange(MarkupDifference& step)
    {
        for (auto& [element, attributes] : step.attributes)
            m_tree.swapAttributes(*element, attributes);
        if (step.parent)
            m_tree.exchange(*step.parent, step.previous, step.next, step.nodes);
    }

    PageTree& m_tree;
    std::vector<MarkupDifference> m_steps;
    PageCommands::Merging m_merging;
    TypedText m_typed;
    qint64 m_made;
};

/// All that is in the document, and where it came from, changes places with another page's.
class ReplaceCommand final : public PageCommand
{
public:
    ReplaceCommand(PageTree& tree, std::unique_ptr<html::Document> page, const QString& name)
        : PageCommand(name), m_tree(tree), m_other(std::move(page))
    {
        m_other->swapChildren(m_nodes);
    }
    void redo() override { exchange(); }
    void undo() override { exchange(); }
    void changeKept(const AttributesChange& change) override
    {
        for (const html::NodePtr& node : m_nodes)
            changeAttributes(*node, change);
    }

private:
    void exchange()
    {
        html::Document& document = *m_tree.document();
        document.swapOrigin(*m_other);
        m_tree.exchange(document, nullptr, nullptr, m_nodes);
    }

    PageTree& m_tree;
    std::unique_ptr<html::Document> m_other; // without its nodes
    html::NodeList m_nodes;
};

bool isBlank(const html::Node& node)
{
    const std::string* const text = html::textOf(node);
    return text && trimmed(*text).empty();
}

bool areNeighbours(const html::Node& first, const html::Node& second)
{
    const html::Node* between = first.next();
    while (between != &second && isBlank(*between))
        between = between->next();
    return between == &second;
}

/// The nearest sibling in a direction that counts.
html::Node* neighbour(const html::Node& node, html::Node* (html::Node::*direction)() const,
                      PageCommands::Among among)
{
    html::Node* near = std::invoke(direction, node);
    while (near && (among == PageCommands::Among::Elements ? !near->asElement() : isBlank(*near)))
        near = std::invoke(direction, *near);
    return near;
}

void changeKeptIn(const QUndoCommand& command, const AttributesChange& change)
{
    for (int i = 0; i < command.childCount(); ++i)
        changeKeptIn(*command.child(i), change);
    // The stack gives its own commands away as constants; a macro is none of ours.
    if (auto* const own = dynamic_cast<PageCommand*>(const_cast<QUndoCommand*>(&command)))
        own->changeKept(change);
}

struct CommandTexts
{
    Q_DECLARE_TR_FUNCTIONS(luma::PageCommands)
};

/// As the name of a step has it.
QString kindOf(const html::Node& node)
{
    if (html::isServerCode(node))
        return CommandTexts::tr("Server Code");
    if (const html::Element* const element = node.asElement())
        return u'<' + QString::fromStdString(element->tagName()) + u'>';
    return html::textOf(node) ? CommandTexts::tr("Text") : CommandTexts::tr("Comment");
}

} // namespace

void changeAttributesEverywhere(PageTree& tree, QUndoStack& stack, const AttributesChange& change)
{
    for (html::Element* element : tree.document()->select("*")) {
        std::vector<html::Attribute> attributes = element->attributes();
        change(attributes);
        if (attributes != element->attributes())
            tree.swapAttributes(*element, attributes);
    }
    for (int i = 0; i < stack.count(); ++i)
        changeKeptIn(*stack.command(i), change);
}

namespace {

// White space at the end of the body may stand behind </body> in the page. A new end of the body stands in front of it.
html::Position atEndOfBody(const html::Position& position, const html::Node& node)
{
    html::Node* const last = position.parent->lastChild();
    const html::Element* const parent = position.parent->asElement();
    const bool isAtEnd = !position.next && last && parent && parent->is("body");
    return isAtEnd && isBlank(*last) && !textOf(node) ? html::Position{position.parent, last} : position;
}

} // namespace

void PageCommands::insert(html::NodePtr node, const html::Position& wanted, const QString& name)
{
    const html::Position position = atEndOfBody(wanted, *node);
    m_stack.push(new InsertCommand(m_tree, std::move(node), position, name));
}

void PageCommands::remove(html::Node& node)
{
    m_stack.push(new RemoveCommand(m_tree, node, CommandTexts::tr("Delete %1").arg(kindOf(node))));
}

void PageCommands::move(html::Node& node, const html::Position& wanted)
{
    const html::Position position = atEndOfBody(wanted, node);
    if (position.parent == node.parent() && position.next == node.next())
        return;
    m_stack.push(new MoveCommand(m_tree, node, position, CommandTexts::tr("Move %1").arg(kindOf(node))));
}

void PageCommands::moveUp(html::Node& node, Among among)
{
    const QString name = CommandTexts::tr("Move Up");
    html::Node* const above = neighbour(node, &html::Node::previous, among);
    if (above && areNeighbours(*above, node))
        swapNeighbours(*above, node, name);
    else if (above)
        m_stack.push(new MoveCommand(m_tree, node, {node.parent(), above}, name));
}

void PageCommands::moveDown(html::Node& node, Among among)
{
    const QString name = CommandTexts::tr("Move Down");
    html::Node* const below = neighbour(node, &html::Node::next, among);
    if (below && areNeighbours(node, *below))
        swapNeighbours(node, *below, name);
    else if (below)
        m_stack.push(new MoveCommand(m_tree, node, {node.parent(), below->next()}, name));
}

void PageCommands::swapNeighbours(html::Node& first, html::Node& second, const QString& name)
{
    html::Node* const end = second.next();
    m_stack.beginMacro(name);
    m_stack.push(new MoveCommand(m_tree, second, {first.parent(), &first}, name));
    if (first.next() != end)
        m_stack.push(new MoveCommand(m_tree, first, {first.parent(), end}, name));
    m_stack.endMacro();
}

const html::Node* PageCommands::duplicate(html::Node& node)
{
    MarkupDifference difference;
    difference.parent = node.parent();
    difference.previous = &node;
    difference.next = node.next();
    if (const html::Node* const above = node.previous(); above && isBlank(*above))
        difference.nodes.push_back(above->copy());
    difference.nodes.push_back(node.asElement() ? copyWithOwnIds(*node.asElement()) : node.copy());
    const html::Node* const added = difference.nodes.back().get();
    apply(std::move(difference), CommandTexts::tr("Duplicate"), Merging::Separate);
    return added;
}

const html::Node* PageCommands::copy(const html::Node& node, const html::Position& position)
{
    html::NodePtr copied = node.copy();
    const html::Node* const added = copied.get();
    insert(std::move(copied), position, CommandTexts::tr("Copy %1").arg(kindOf(node)));
    return added;
}

void PageCommands::setAttributes(html::Element& element, Attributes attributes, const QString& name)
{
    std::vector<std::pair<html::Element*, Attributes>> changes;
    if (attributes != element.attributes())
        changes.emplace_back(&element, std::move(attributes));
    setAttributes(std::move(changes), name);
}

void PageCommands::setAttributes(std::vector<std::pair<html::Element*, Attributes>> changes,
                                 const QString& name)
{
    MarkupDifference difference;
    difference.attributes = std::move(changes);
    apply(std::move(difference), name, Merging::Separate);
}

void PageCommands::setTitle(const QString& title)
{
    html::Document& document = *m_tree.document();
    html::NodePtr text = html::CharacterData::text(title.toStdString());
    const auto titles = document.select("head title");
    if (!titles.empty()) {
        MarkupDifference difference;
        difference.parent = titles.front();
        if (!title.isEmpty())
            difference.nodes.push_back(std::move(text));
        apply(std::move(difference), CommandTexts::tr("Change Title"), Merging::Separate);
    } else if (html::Element* head = document.head()) {
        auto element = std::make_unique<html::Element>("title");
        element->append(std::move(text));
        insert(std::move(element), {head, nullptr}, CommandTexts::tr("Change Title"));
    }
}

void PageCommands::setTexts(const std::vector<std::pair<html::Node*, std::string>>& texts,
                            const QString& name)
{
    m_stack.beginMacro(name);
    for (const auto& [node, text] : texts) {
        MarkupDifference difference;
        difference.parent = node->parent();
        difference.previous = node->previous();
        difference.next = node->next();
        if (!text.empty())
            difference.nodes.push_back(html::CharacterData::text(text));
        apply(std::move(difference), name, Merging::Separate);
    }
    m_stack.endMacro();
}

bool PageCommands::setInnerMarkup(html::Element& element, const QString& markup, const QString& name)
{
    html::Element other(element.tagName(), element.nameSpace(), element.attributes());
    if (!other.setHtml(markup.toStdString()))
        return false;
    apply(differenceTo(element, other), name, Merging::Separate);
    return true;
}

void PageCommands::replacePage(std::unique_ptr<html::Document> page, const QString& name)
{
    m_stack.push(new ReplaceCommand(m_tree, std::move(page), name));
}

void PageCommands::apply(MarkupDifference difference, const QString& name, Merging merging)
{
    if (difference.isEmpty())
        return;
    adoptOrigins(difference);
    m_stack.push(new ExchangeCommand(m_tree, std::move(difference), name, merging));
}

} // namespace luma
