// SPDX-License-Identifier: GPL-3.0-or-later
#include "page/pagetree.h"

#include <utility>

namespace luma {

PageTree::~PageTree() = default;

void PageTree::setDocument(std::unique_ptr<html::Document> document)
{
    emit aboutToReset();
    ++m_version;
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

void PageTree::move(html::Node& node, const html::Position& to)
{
    html::ParentNode& from = *node.parent();
    html::Node* const previous = node.previous();
    html::Node* const next = node.next();
    emit aboutToMove(&node, to.parent, to.next);
    html::NodePtr detached = node.detach();
    emit exchanged(&from, previous, next);
    to.parent->insert(std::move(detached), to.next);
    emit moved();
    tellChanged(from);
    if (to.parent != &from)
        tellChanged(*to.parent);
    emit exchanged(to.parent, node.previous(), node.next());
}

void PageTree::swapAttributes(html::Element& element, std::vector<html::Attribute>& attributes)
{
    element.swapAttributes(attributes);
    ++m_version;
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
    if (first == next)
        return;
    emit aboutToRemove(&parent, first, next);
    while (first != next) {
        html::Node* const following = first->next();
        removedNodes.push_back(first->detach());
        first = following;
    }
    emit removed();
}

void PageTree::insertAll(html::ParentNode& parent, html::Node* next, html::NodeList& nodes)
{
    if (nodes.empty())
        return;
    emit aboutToInsert(&parent, next, &nodes);
    for (html::NodePtr& node : nodes)
        parent.insert(std::move(node), next);
    nodes.clear();
    emit inserted();
}

void PageTree::tellChanged(html::ParentNode& parent)
{
    ++m_version;
    if (html::Element* element = parent.asElement())
        emit elementChanged(element);
}

} // namespace luma
