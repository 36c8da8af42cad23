// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "html/document.h"
#include "html/element.h"
#include "page/markupdifference.h"

#include <QString>

class QUndoStack;

namespace luma {

class PageTree;

/// The edits of a page. Each is made at once and left on the undo stack as one named command, which is undone
/// and made again over any number of saves. An edit that would change nothing leaves no command. Main thread.
class PageCommands final
{
public:
    PageCommands(PageTree& tree, QUndoStack& stack) : m_tree(tree), m_stack(stack) {}

    /// At the end of the body, insert(), move() and copy() put what is no text in front of white space.
    void insert(html::NodePtr node, const html::Position& wanted, const QString& name);
    void remove(html::Node& node);
    void move(html::Node& node, const html::Position& wanted);
    /// Gives the copy.
    const html::Node* copy(const html::Node& node, const html::Position& position);
    /// Puts a copy, an element's with ids of its own (copyWithOwnIds), behind the node, on a line of its own if the node has
    /// one. Gives the copy.
    const html::Node* duplicate(html::Node& node);
    /// Moves a node past its neighbour in front of it or behind it, if there is one: the next element, or the next node
    /// that is not blank. White space between the two stays between them.
    enum class Among { Elements, AllNodes };
    void moveUp(html::Node& node, Among among = Among::Elements);
    void moveDown(html::Node& node, Among among = Among::Elements);
    using Attributes = std::vector<html::Attribute>;
    void setAttributes(html::Element& element, Attributes attributes, const QString& name);
    /// Several elements' attributes in one step.
    void setAttributes(std::vector<std::pair<html::Element*, Attributes>> changes, const QString& name);
    void setTitle(const QString& title);
    /// Gives text nodes other texts, in one step; a node whose text is empty goes.
    void setTexts(const std::vector<std::pair<html::Node*, std::string>>& texts, const QString& name);
    /// Exchanges the element's contents; in a style sheet or script the markup is the text as it stands.
    /// False when the markup can't be parsed.
    bool setInnerMarkup(html::Element& element, const QString& markup, const QString& name);
    /// Exchanges the whole page, with its source.
    void replacePage(std::unique_ptr<html::Document> page, const QString& name);
    /// Makes the page what a parsed other one is. Steps of typing of one name that follow each other within a
    /// moment become one, a word at a time, as typing comes in pieces.
    enum class Merging { Separate, WithTheLast };
    void apply(MarkupDifference difference, const QString& name, Merging merging);

private:
    void swapNeighbours(html::Node& first, html::Node& second, const QString& name);

    PageTree& m_tree;
    QUndoStack& m_stack;
};

} // namespace luma
