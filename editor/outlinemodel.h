// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "editor/outlinerow.h"
#include "html/node.h"
#include "page/tagrules.h"

#include <QAbstractItemModel>
#include <QColor>

#include <optional>
#include <unordered_map>
#include <vector>

namespace luma {

class PageTree;

/// The page as the outline shows it: its elements, with `html` at the top, or all nodes but texts that are blank. It
/// follows the tree's changes row by row. A drag of a row carries a record (a property list under nodeDragType), and a drop is
/// accepted where the rules allow it; the listener to elementDropped() performs it. Main thread.
class OutlineModel final : public QAbstractItemModel
{
    Q_OBJECT

public:
    /// The type of the record that a drag carries.
    static constexpr const char* nodeDragType = "com.palisanlabs.LUMA.nodeDragType";

    OutlineModel(PageTree& tree, const TagRules& rules, QObject* parent = nullptr);

    /// The node of an index, null for an invalid one; as an element, null for any other node; and the index of a node,
    /// invalid for one that has no row.
    [[nodiscard]] static html::Node* nodeAt(const QModelIndex& index);
    [[nodiscard]] static html::Element* elementAt(const QModelIndex& index);
    [[nodiscard]] QModelIndex indexOf(const html::Node* node) const;

    /// Whether texts, comments, the doctype and server code outside elements have rows of their own. The rows of elements,
    /// and what refers to them, stay when this changes; the parent's row takes the place of one that goes, unless something refers to that
    /// already.
    [[nodiscard]] bool showsAllNodes() const { return m_showsAllNodes; }
    void setShowsAllNodes(bool showsAll);
    [[nodiscard]] bool hasRow(const html::Node& node) const;
    /// What a node's row shows, also with its parts.
    [[nodiscard]] QString rowText(const html::Node& node) const;
    [[nodiscard]] std::vector<OutlinePart> partsOf(const html::Node& node) const;
    /// The nodes of the rows below `index`.
    [[nodiscard]] std::vector<html::Node*> nodesBelow(const QModelIndex& index) const;

    /// The row at `path`, the positions among element children starting from the root element; invalid if
    /// there is none.
    [[nodiscard]] QModelIndex indexAtPath(const std::vector<int>& path) const;

    /// The number of levels below the root row.
    [[nodiscard]] int deepestLevel() const;

    /// The element whose row is drawn as the active one, and its colour.
    [[nodiscard]] QModelIndex activeElement() const { return m_activeElement; }
    void setActiveElement(const QModelIndex& index);
    /// The row that is marked for looking, none for an invalid index.
    void setMarked(const QModelIndex& index);
    void setActiveColour(const QColor& colour) { m_activeColour = colour; }

    /// The rows of elements that are hidden in the rendering, which the model only marks. Only elements in `body` can be
    /// hidden; for any other nothing is done, and the answer is false.
    [[nodiscard]] const QList<QPersistentModelIndex>& hidden() const { return m_hidden; }
    bool toggleHidden(const QModelIndex& index);

    [[nodiscard]] QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
    [[nodiscard]] QModelIndex parent(const QModelIndex& child) const override;
    using QObject::parent;
    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] bool hasChildren(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] Qt::ItemFlags flags(const QModelIndex& index) const override;

    [[nodiscard]] QStringList mimeTypes() const override;
    [[nodiscard]] QMimeData* mimeData(const QModelIndexList& indexes) const override;
    [[nodiscard]] Qt::DropActions supportedDropActions() const override;
    [[nodiscard]] bool canDropMimeData(const QMimeData* data, Qt::DropAction action, int row, int column,
                                       const QModelIndex& parent) const override;
    bool dropMimeData(const QMimeData* data, Qt::DropAction action, int row, int column,
                      const QModelIndex& parent) override;

signals:
    /// An allowed drop: at `childIndex` among the rows below the target, or -1 for onto the target.
    void nodeDropped(const QPersistentModelIndex& dragged, const QPersistentModelIndex& target,
                     int childIndex, Qt::DropAction action);

private:
    /// What an index points to; of the document, too. The rows below are those that were asked for.
    struct Row
    {
        html::Node* node = nullptr;
        Row* above = nullptr;
        int number = 0;
        std::optional<std::vector<Row*>> below = {};
    };

    void followTree();
    void noteInsertion(html::ParentNode& parent, html::Node* next, const html::NodeList& nodes);
    void noteRemoval(html::ParentNode& parent, html::Node* first, const html::Node* end);
    void noteMove(html::Node& node, const html::Position& to);
    static Row* rowAt(const QModelIndex& index) { return static_cast<Row*>(index.internalPointer()); }
    /// Null for a node that has none.
    [[nodiscard]] Row* rowOf(const html::Node* node) const;
    /// The page's own for an invalid index, null as long as there is no page.
    [[nodiscard]] Row* rowOrPage(const QModelIndex& index) const;
    [[nodiscard]] const std::vector<Row*>& rowsBelow(Row& row) const;
    [[nodiscard]] QModelIndex indexOf(Row* row) const;
    /// The number of the row below `parent` that this child, or the next one that has a row, stands in.
    [[nodiscard]] int numberFrom(Row& parent, const html::Node* child) const;
    [[nodiscard]] QString descriptionOf(const QModelIndex& index) const;
    void forgetRows();
    void forgetChange();
    /// Row numbers of the fully expanded outline, from 0.
    [[nodiscard]] int outlineRow(const html::Node& node) const;
    [[nodiscard]] html::Node* nodeAtRow(qlonglong row) const;
    [[nodiscard]] html::Node* draggedNode(const QMimeData* data) const;

    PageTree& m_tree;
    const TagRules& m_rules;
    QPersistentModelIndex m_activeElement;
    QPersistentModelIndex m_marked;
    QColor m_activeColour;
    QList<QPersistentModelIndex> m_hidden;
    bool m_showsAllNodes = false;
    std::vector<Row*> m_changing; // those whose rows below come, go or move
    std::vector<html::Node*> m_leaving;
    // Kept until they change, because the tree's child lists are linked lists.
    mutable std::unordered_map<const html::Node*, Row> m_rows;
    mutable std::optional<int> m_deepestLevel;
};

} // namespace luma
