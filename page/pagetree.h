// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "html/document.h"
#include "html/element.h"

#include <QObject>

#include <memory>
#include <vector>

namespace luma {

/// The parsed page, the master copy, with the few primitives through which it is changed. Each tells its
/// listeners before and after, with the rows that it touches among the element children, so that an item
/// model follows exactly. Every primitive can be undone by another; undo commands are made of them. Main
/// thread.
class PageTree final : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;
    ~PageTree() override;

    /// The page; null until the first one is there.
    [[nodiscard]] html::Document* document() const { return m_document.get(); }
    void setDocument(std::unique_ptr<html::Document> document);

    html::Node& insert(html::NodePtr node, const html::Position& position);
    [[nodiscard]] html::NodePtr take(html::Node& node);
    void swapAttributes(html::Element& element, std::vector<html::Attribute>& attributes);
    /// Exchanges what stands between two children of `parent` (null: from the beginning, to the end) for
    /// `nodes`, which then hold what stood there. Done twice it restores what was.
    void exchange(html::ParentNode& parent, html::Node* previous, html::Node* next, html::NodeList& nodes);

signals:
    void aboutToReset();
    void reset();
    void aboutToInsert(html::ParentNode* parent, int first, int last);
    void inserted();
    void aboutToRemove(html::ParentNode* parent, int first, int last);
    void removed();
    /// The element's own attributes or text changed.
    void elementChanged(html::Element* element);

private:
    void removeBetween(html::ParentNode& parent, html::Node* previous, html::Node* next,
                       html::NodeList& removedNodes);
    void insertAll(html::ParentNode& parent, html::Node* next, html::NodeList& nodes);
    void tellChanged(html::ParentNode& parent);

    std::unique_ptr<html::Document> m_document;
};

} // namespace luma
