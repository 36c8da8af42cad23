// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/outlinemodel.h"

#include "base/ascii.h"
#include "base/propertylist.h"
#include "html/characterdata.h"
#include "html/codemarks.h"
#include "html/element.h"
#include "page/elementplaces.h"
#include "page/pagetree.h"
#include "page/subtreechange.h"

#include <QMimeData>
#include <QPalette>
#include <QSet>

#include <algorithm>
#include <utility>

namespace luma {

namespace {

// Of a long text a row shows no more than the beginning, but would lay out all of it each time it is painted.
constexpr qsizetype longestRow = 400;
constexpr qsizetype longestToolTip = 1000;

QString shortened(const QString& text, qsizetype length)
{
    if (text.size() <= length)
        return text;
    return text.left(text.at(length - 1).isHighSurrogate() ? length - 1 : length) + QChar(0x2026);
}

QColor markColour()
{
    QColor colour = QPalette().color(QPalette::Highlight);
    colour.setAlpha(70);
    return colour;
}

/// The depth of the deepest element.
int elementDepth(const html::Document& document)
{
    int depth = 0;
    int deepest = 0;
    for (const html::Node* node = document.firstChild(); node;) {
        const html::ParentNode* const parent = node->asParent();
        if (parent) {
            deepest = std::max(deepest, ++depth);
            if (parent->firstChild()) {
                node = parent->firstChild();
                continue;
            }
            --depth;
        }
        while (!node->next() && node->parent() != &document) {
            node = node->parent();
            --depth;
        }
        node = node->next();
    }
    return deepest;
}

} // namespace

OutlineModel::OutlineModel(PageTree& tree, const TagRules& rules, QObject* parent)
    : QAbstractItemModel(parent), m_tree(tree), m_rules(rules)
{
    followTree();
}

void OutlineModel::followTree()
{
    connect(&m_tree, &PageTree::aboutToReset, this, &OutlineModel::beginResetModel);
    connect(&m_tree, &PageTree::reset, this, [this] {
        forgetRows();
        endResetModel();
    });
    connect(&m_tree, &PageTree::aboutToInsert, this,
            [this](html::ParentNode* parent, html::Node* next, const html::NodeList* nodes) {
                noteInsertion(*parent, next, *nodes);
            });
    connect(&m_tree, &PageTree::inserted, this, [this] {
        if (!m_changing.empty()) {
            forgetChange();
            endInsertRows();
        }
    });
    connect(&m_tree, &PageTree::aboutToRemove, this,
            [this](html::ParentNode* parent, html::Node* first, html::Node* end) {
                noteRemoval(*parent, first, end);
            });
    connect(&m_tree, &PageTree::removed, this, [this] {
        if (!m_changing.empty()) {
            forgetChange();
            endRemoveRows();
        }
    });
    connect(&m_tree, &PageTree::aboutToMove, this,
            [this](html::Node* node, html::ParentNode* parent, html::Node* next) {
                noteMove(*node, {parent, next});
            });
    connect(&m_tree, &PageTree::moved, this, [this] {
        if (!m_changing.empty()) {
            forgetChange();
            endMoveRows();
        }
    });
    connect(&m_tree, &PageTree::elementChanged, this, [this](html::Element* element) {
        const QModelIndex index = indexOf(element);
        emit dataChanged(index, index);
    });
}

void OutlineModel::noteInsertion(html::ParentNode& parent, html::Node* next, const html::NodeList& nodes)
{
    const auto count = std::count_if(nodes.begin(), nodes.end(),
                                     [this](const html::NodePtr& node) { return hasRow(*node); });
    if (count == 0)
        return;
    Row& changing = *m_changing.emplace_back(rowOf(&parent));
    const int number = numberFrom(changing, next);
    beginInsertRows(indexOf(&changing), number, number + static_cast<int>(count) - 1);
}

void OutlineModel::noteRemoval(html::ParentNode& parent, html::Node* first, const html::Node* end)
{
    for (html::Node* node = first; node != end; node = node->next()) {
        if (hasRow(*node))
            m_leaving.push_back(node);
    }
    if (m_leaving.empty())
        return;
    Row& changing = *m_changing.emplace_back(rowOf(&parent));
    const int number = numberFrom(changing, m_leaving.front());
    beginRemoveRows(indexOf(&changing), number, number + static_cast<int>(m_leaving.size()) - 1);
}

void OutlineModel::noteMove(html::Node& node, const html::Position& to)
{
    const Row* const moving = rowOf(&node);
    if (!moving)
        return;
    Row& from = *moving->above;
    Row& target = *rowOf(to.parent);
    const int number = numberFrom(target, to.next);
    // It may pass nodes alone that have no rows.
    if (beginMoveRows(indexOf(&from), moving->number, moving->number, indexOf(&target), number))
        m_changing = {&from, &target};
}

bool OutlineModel::hasRow(const html::Node& node) const
{
    if (node.asElement() || !m_showsAllNodes)
        return node.asElement();
    const std::string* const text = html::textOf(node);
    return !text || !trimmed(*text).empty();
}

int OutlineModel::numberFrom(Row& parent, const html::Node* child) const
{
    const auto& rows = rowsBelow(parent);
    while (child && !hasRow(*child))
        child = child->next();
    return child ? m_rows.at(child).number : static_cast<int>(rows.size());
}

void OutlineModel::setShowsAllNodes(bool showsAll)
{
    if (showsAll == m_showsAllNodes)
        return;
    emit layoutAboutToBeChanged();
    const QModelIndexList before = persistentIndexList();
    std::vector<const html::Node*> nodes;
    for (const QModelIndex& index : before)
        nodes.push_back(nodeAt(index));
    m_showsAllNodes = showsAll;
    forgetRows();
    QModelIndexList after;
    // Qt forgets one of two that become the same index, and it would outlive the model.
    QSet<const html::Node*> taken;
    for (const html::Node* const node : nodes) {
        if (hasRow(*node))
            taken.insert(node);
    }
    for (const html::Node* node : nodes) {
        if (!hasRow(*node))
            node = taken.contains(node->parent()) ? nullptr : node->parent();
        taken.insert(node);
        after.append(indexOf(node));
    }
    changePersistentIndexList(before, after);
    emit layoutChanged();
}

std::vector<OutlinePart> OutlineModel::partsOf(const html::Node& node) const
{
    const html::Element* const element = node.asElement();
    return element ? outlineParts(*element, !m_showsAllNodes) : outlineParts(node);
}

QString OutlineModel::rowText(const html::Node& node) const
{
    QString text;
    for (const OutlinePart& part : partsOf(node))
        text += part.text;
    return text;
}

std::vector<html::Node*> OutlineModel::nodesBelow(const QModelIndex& index) const
{
    std::vector<html::Node*> nodes;
    for (const Row* const row : rowsBelow(*rowOrPage(index)))
        nodes.push_back(row->node);
    return nodes;
}

html::Node* OutlineModel::nodeAt(const QModelIndex& index)
{
    return index.isValid() ? rowAt(index)->node : nullptr;
}

html::Element* OutlineModel::elementAt(const QModelIndex& index)
{
    html::Node* const node = nodeAt(index);
    return node ? node->asElement() : nullptr;
}

QModelIndex OutlineModel::indexOf(const html::Node* node) const
{
    return indexOf(rowOf(node));
}

QModelIndex OutlineModel::indexOf(Row* row) const
{
    return row && row->above ? createIndex(row->number, 0, row) : QModelIndex();
}

OutlineModel::Row* OutlineModel::rowOf(const html::Node* node) const
{
    (void)rowOrPage({});
    std::vector<const html::Node*> unknown;
    auto known = m_rows.end();
    for (; node && (known = m_rows.find(node)) == m_rows.end(); node = node->parent())
        unknown.push_back(node);
    for (; !unknown.empty() && known != m_rows.end(); unknown.pop_back()) {
        (void)rowsBelow(known->second);
        known = m_rows.find(unknown.back());
    }
    return known == m_rows.end() ? nullptr : &known->second;
}

OutlineModel::Row* OutlineModel::rowOrPage(const QModelIndex& index) const
{
    if (index.isValid())
        return rowAt(index);
    html::Document* const page = m_tree.document();
    return page ? &m_rows.try_emplace(page, Row{page}).first->second : nullptr;
}

QModelIndex OutlineModel::indexAtPath(const std::vector<int>& path) const
{
    return m_tree.document() ? indexOf(elementAtPath(*m_tree.document(), path)) : QModelIndex();
}

void OutlineModel::setActiveElement(const QModelIndex& index)
{
    if (index == m_activeElement)
        return;
    const QModelIndex before = std::exchange(m_activeElement, QPersistentModelIndex(index));
    for (const QModelIndex& changed : {before, index}) {
        if (changed.isValid())
            emit dataChanged(changed, changed, {Qt::ForegroundRole});
    }
}

void OutlineModel::setMarked(const QModelIndex& index)
{
    if (index == m_marked)
        return;
    const QModelIndex before = std::exchange(m_marked, QPersistentModelIndex(index));
    for (const QModelIndex& changed : {before, index}) {
        if (changed.isValid())
            emit dataChanged(changed, changed, {Qt::BackgroundRole});
    }
}

bool OutlineModel::toggleHidden(const QModelIndex& index)
{
    m_hidden.removeIf([](const QPersistentModelIndex& each) { return !each.isValid(); });
    const bool wasHidden = m_hidden.removeOne(index);
    if (!wasHidden && !m_rules.canAddClass(elementAt(index)))
        return false;
    if (!wasHidden)
        m_hidden.append(index);
    emit dataChanged(index, index, {Qt::ForegroundRole});
    return true;
}

const std::vector<OutlineModel::Row*>& OutlineModel::rowsBelow(Row& row) const
{
    if (row.below)
        return *row.below;
    std::vector<Row*>& rows = row.below.emplace();
    const html::ParentNode* const parent = row.node->asParent();
    for (html::Node* child = parent ? parent->firstChild() : nullptr; child; child = child->next()) {
        if (!hasRow(*child))
            continue;
        Row& each = m_rows.try_emplace(child, Row{child}).first->second;
        each.above = &row;
        each.number = static_cast<int>(rows.size());
        rows.push_back(&each);
    }
    return rows;
}

void OutlineModel::forgetRows()
{
    m_rows.clear();
    m_deepestLevel.reset();
}

// Of a large page everything else stays known: the view asks for every row again.
void OutlineModel::forgetChange()
{
    for (const html::Node* const gone : m_leaving) {
        for (const html::Node* node = gone; node; node = node->following(*gone))
            m_rows.erase(node);
    }
    m_leaving.clear();
    m_deepestLevel.reset();
    for (Row* const changed : std::exchange(m_changing, {})) {
        changed->below.reset();
        (void)rowsBelow(*changed); // numbers them anew
    }
}

int OutlineModel::deepestLevel() const
{
    if (!m_deepestLevel)
        m_deepestLevel = m_tree.document() ? std::max(elementDepth(*m_tree.document()) - 1, 0) : 0;
    return *m_deepestLevel + (m_showsAllNodes ? 1 : 0);
}

QModelIndex OutlineModel::index(int row, int column, const QModelIndex& parent) const
{
    Row* const above = rowOrPage(parent);
    if (!above || column != 0 || row < 0 || parent.column() > 0)
        return {};
    const auto& rows = rowsBelow(*above);
    const auto at = static_cast<std::size_t>(row);
    return at < rows.size() ? createIndex(row, 0, rows[at]) : QModelIndex();
}

QModelIndex OutlineModel::parent(const QModelIndex& child) const
{
    return child.isValid() ? indexOf(rowAt(child)->above) : QModelIndex();
}

int OutlineModel::rowCount(const QModelIndex& parent) const
{
    Row* const row = rowOrPage(parent);
    return row && parent.column() <= 0 ? static_cast<int>(rowsBelow(*row).size()) : 0;
}

int OutlineModel::columnCount(const QModelIndex&) const
{
    return 1;
}

bool OutlineModel::hasChildren(const QModelIndex& parent) const
{
    Row* const row = rowOrPage(parent);
    return row && !rowsBelow(*row).empty();
}

QString OutlineModel::descriptionOf(const QModelIndex& index) const
{
    const html::Node& node = *nodeAt(index);
    if (m_hidden.contains(index))
        return tr("Hidden");
    if (html::isServerCode(node))
        return tr("Server code");
    if (node.kind() == html::Node::Kind::Text)
        return tr("Text");
    return node.kind() == html::Node::Kind::Comment ? tr("Comment") : QString();
}

QVariant OutlineModel::data(const QModelIndex& index, int role) const
{
    const html::Node* const node = nodeAt(index);
    if (!node)
        return {};
    switch (role) {
    case Qt::DisplayRole:
        return shortened(rowText(*node), longestRow);
    case Qt::ToolTipRole:
        return shortened(rowText(*node), longestToolTip).toHtmlEscaped();
    case Qt::AccessibleDescriptionRole:
        return descriptionOf(index);
    case Qt::BackgroundRole:
        return index == m_marked ? QVariant(markColour()) : QVariant();
    case Qt::ForegroundRole:
        if (m_hidden.contains(index))
            return QPalette().color(QPalette::Disabled, QPalette::Text);
        return index == m_activeElement && m_activeColour.isValid() ? QVariant(m_activeColour) : QVariant();
    default:
        return {};
    }
}

Qt::ItemFlags OutlineModel::flags(const QModelIndex& index) const
{
    if (!index.isValid())
        return Qt::NoItemFlags;
    const Qt::ItemFlags common = Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsDropEnabled;
    return m_rules.canMove(nodeAt(index)) ? common | Qt::ItemIsDragEnabled : common;
}

// Dragging

int OutlineModel::outlineRow(const html::Node& node) const
{
    int row = 0;
    const html::Document& page = *m_tree.document();
    for (const html::Node* each = page.firstChild(); each && each != &node; each = each->following(page))
        row += hasRow(*each) ? 1 : 0;
    return row;
}

html::Node* OutlineModel::nodeAtRow(qlonglong row) const
{
    const html::Document* const page = m_tree.document();
    for (html::Node* node = page ? page->firstChild() : nullptr; node; node = node->following(*page)) {
        if (hasRow(*node) && row-- == 0)
            return node;
    }
    return nullptr;
}

QStringList OutlineModel::mimeTypes() const
{
    return {QString::fromLatin1(nodeDragType)};
}

QMimeData* OutlineModel::mimeData(const QModelIndexList& indexes) const
{
    const html::Node* const node = indexes.isEmpty() ? nullptr : nodeAt(indexes.first());
    if (!node || !m_rules.canMove(node))
        return nullptr;
    const html::Element* const above = node->parent()->asElement();
    const QVariantMap record = {
        {QStringLiteral("sourceParentRowNo"), above ? qlonglong{outlineRow(*above)} : qlonglong{-1}},
        {QStringLiteral("sourceChildIndex"), qlonglong{indexes.first().row()}},
        {QStringLiteral("sourceItemRowNo"), qlonglong{outlineRow(*node)}}};
    const auto bytes = writePropertyList(record, PropertyListFormat::Xml);
    if (!bytes)
        return nullptr;
    auto* data = new QMimeData;
    data->setData(QString::fromLatin1(nodeDragType), *bytes);
    return data;
}

Qt::DropActions OutlineModel::supportedDropActions() const
{
    return Qt::MoveAction | Qt::CopyAction;
}

html::Node* OutlineModel::draggedNode(const QMimeData* data) const
{
    const auto record = readPropertyList(data->data(QString::fromLatin1(nodeDragType)));
    if (!record)
        return nullptr;
    bool isNumber = false;
    const qlonglong row = record->toMap().value(QStringLiteral("sourceItemRowNo")).toLongLong(&isNumber);
    return isNumber && row >= 0 ? nodeAtRow(row) : nullptr;
}

bool OutlineModel::canDropMimeData(const QMimeData* data, Qt::DropAction action, int, int,
                                   const QModelIndex& parent) const
{
    return supportedDropActions().testFlag(action) &&
           reasonAgainstDrop(m_rules, draggedNode(data), elementAt(parent)).isEmpty();
}

bool OutlineModel::dropMimeData(const QMimeData* data, Qt::DropAction action, int row, int column,
                                const QModelIndex& parent)
{
    if (canDropMimeData(data, action, row, column, parent))
        emit nodeDropped(indexOf(draggedNode(data)), parent, row, action);
    return true;
}

} // namespace luma
