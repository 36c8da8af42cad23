// SPDX-License-Identifier: GPL-3.0-or-later
#include "page/pagetree.h"

#include <algorithm>
#include <utility>

namespace luma {

namespace {

int elementsBefore(const html::ParentNode& parent, const html::Node* end)
{
    int count = 0;
    for (const html::Node* child = parent.firstChild(); child && child != end; child = child->next())
        count += child->asElement() ? 1 : 0;
    return count;
}

int elementsIn(const html::NodeList& nodes)
{
    return static_cast<int>(std::count_if(nodes.begin(), nodes.end(),
                                          [](const html::NodePtr& node) { return node->asElement(); }));
}

} // namespace

PageTree::~PageTree() = default;

void PageTree::setDocument(std::unique_ptr<html::Document> document)
{
    emit aboutToReset();
    m_document = std::move(document);
    emit reset();
}

html::Node& PageTree::insert(html::NodePtr node, const html::Position& position)
{
    html::Node& added = *node;
    html::NodeList nodes;
    nodes.push_back(std::move(node));
    insertAll(*position.parent, position.next, nodes);
    tellChanged(*position.parent);
    emit exchanged(position.parent, added.previous(), added.next());
    return added;
}

html::NodePtr PageTree::take(html::Node& node)
{
    html::ParentNode& parent = *node.parent();
    html::Node* const previous = node.previous();
    html::Node* const next = node.next();
    html::NodeList taken;
    removeBetween(parent, previous, next, taken);
    tellChanged(parent);
    emit exchanged(&parent, previous, next);
    return std::move(taken.front());
}

void PageTree::swapAttributes(html::Element& element, std::vector<html::Attribute>& attributes)
{
    element.swapAttributes(attributes);
    emit elementChanged(&element);
    emit attributesSwapped(&element);
}

void PageTree::exchange(html::ParentNode& parent, html::Node* previous, html::Node* next,
                        html::NodeList& nodes)
{
    html::NodeList before;
    removeBetween(parent, previous, next, before);
    insertAll(parent, next, nodes);
    nodes = std::move(before);
    tellChanged(parent);
    emit exchanged(&parent, previous, next);
}

void PageTree::removeBetween(html::ParentNode& parent, html::Node* previous, html::Node* next,
                             html::NodeList& removedNodes)
{
    html::Node* first = previous ? previous->next() : parent.firstChild();
    const int firstRow = elementsBefore(parent, first);
    const int endRow = elementsBefore(parent, next);
    if (endRow > firstRow)
        emit aboutToRemove(&parent, firstRow, endRow - 1);
    while (first != next) {
        html::Node* const following = first->next();
        removedNodes.push_back(first->detach());
        first = following;
    }
    if (endRow > firstRow)
        emit removed();
}

void PageTree::insertAll(html::ParentNode& parent, html::Node* next, html::NodeList& nodes)
{
    const int count = elementsIn(nodes);
    const int row = count > 0 ? elementsBefore(parent, next) : 0;
    if (count > 0)
        emit aboutToInsert(&parent, row, row + count - 1);
    for (html::NodePtr& node : nodes)
        parent.insert(std::move(node), next);
    nodes.clear();
    if (count > 0)
        emit inserted();
}

void PageTree::tellChanged(html::ParentNode& parent)
{
    if (html::Element* element = parent.asElement())
        emit elementChanged(element);
}

} // namespace luma
