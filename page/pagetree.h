// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "html/document.h"
#include "html/element.h"

#include <QObject>

#include <cstdint>
#include <memory>
#include <vector>

namespace luma {

/// The parsed page, which is the master copy, and the few primitives that change it. Each announces the nodes that come
/// and go, before and after, so that an item model can follow exactly. Every primitive can be undone by another one; undo
/// commands consist of them. Main thread.
class PageTree final : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;
    ~PageTree() override;

    /// The page; null until the first one is set.
    [[nodiscard]] html::Document* document() const { return m_document.get(); }
    void setDocument(std::unique_ptr<html::Document> document);

    /// Another number after each change.
    [[nodiscard]] std::uint64_t version() const { return m_version; }

    html::Node& insert(html::NodePtr node, const html::Position& position);
    [[nodiscard]] html::NodePtr take(html::Node& node);
    /// Both in one, so that what refers to the node may stay.
    void move(html::Node& node, const html::Position& to);
    void swapAttributes(html::Element& element, std::vector<html::Attribute>& attributes);
    /// Swaps the nodes between two children of `parent` (null: from the beginning, to the end) with `nodes`. A second
    /// call with the same arguments undoes the first.
    void exchange(html::ParentNode& parent, html::Node* previous, html::Node* next, html::NodeList& nodes);

signals:
    void aboutToReset();
    void reset();
    /// The nodes become children of `parent` in front of `next` (null: at the end).
    void aboutToInsert(html::ParentNode* parent, html::Node* next, const html::NodeList* nodes);
    void inserted();
    /// The children from `first` up to `end` (null: to the last) leave `parent`.
    void aboutToRemove(html::ParentNode* parent, html::Node* first, html::Node* end);
    void removed();
    /// The node goes from its place to the one in front of the child `next` of `parent` (null: at the end).
    void aboutToMove(html::Node* node, html::ParentNode* parent, html::Node* next);
    void moved();
    /// The element's own attributes or text changed.
    void elementChanged(html::Element* element);
    /// One of the primitives is done: the element's attributes are others, or what is between two children of
    /// `parent` (null: the ends).
    void attributesSwapped(html::Element* element);
    void exchanged(html::ParentNode* parent, html::Node* previous, html::Node* next);

private:
    void removeBetween(html::ParentNode& parent, html::Node* previous, html::Node* next,
                       html::NodeList& removedNodes);
    void insertAll(html::ParentNode& parent, html::Node* next, html::NodeList& nodes);
    void tellChanged(html::ParentNode& parent);

    std::unique_ptr<html::Document> m_document;
    std::uint64_t m_version = 0;
};

} // namespace luma
