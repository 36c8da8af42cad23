// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/outlinemodel.h"

#include "base/propertylist.h"
#include "editor/outlinerow.h"
#include "html/element.h"
#include "page/pagetree.h"

#include <QMimeData>
#include <QPalette>

#include <algorithm>

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

QString toolTipOf(const html::Element& element)
{
    return shortened(outlineRowText(element), longestToolTip).toHtmlEscaped();
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
    connect(&m_tree, &PageTree::aboutToInsert, this, [this](html::ParentNode* parent, int first, int last) {
        m_changing = parent;
        beginInsertRows(indexOfParent(parent), first, last);
    });
    connect(&m_tree, &PageTree::inserted, this, [this] {
        forgetChange();
        endInsertRows();
    });
    connect(&m_tree, &PageTree::aboutToRemove, this, [this](html::ParentNode* parent, int first, int last) {
        m_changing = parent;
        beginRemoveRows(indexOfParent(parent), first, last);
        const auto& children = childrenOf(*parent);
        m_leaving.assign(children.begin() + first, children.begin() + last + 1);
    });
    connect(&m_tree, &PageTree::removed, this, [this] {
        forgetChange();
        endRemoveRows();
    });
    connect(&m_tree, &PageTree::elementChanged, this, [this](html::Element* element) {
        const QModelIndex index = indexOf(element);
        emit dataChanged(index, index);
    });
}

html::Element* OutlineModel::elementAt(const QModelIndex& index)
{
    return index.isValid() ? static_cast<html::Element*>(index.internalPointer()) : nullptr;
}

QModelIndex OutlineModel::indexOf(const html::Element* element) const
{
    if (!element || !element->parent())
        return {};
    (void)childrenOf(*element->parent());
    const auto row = m_rows.find(element);
    return row == m_rows.end() ? QModelIndex() : createIndex(row->second, 0, element);
}

QModelIndex OutlineModel::indexOfParent(html::ParentNode* parent) const
{
    return indexOf(parent->asElement());
}

QModelIndex OutlineModel::indexAtPath(const std::vector<int>& path) const
{
    QModelIndex found = index(0, 0);
    for (const int step : path)
        found = found.isValid() ? index(step, 0, found) : found;
    return found;
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

void OutlineModel::toggleHidden(const QModelIndex& index)
{
    if (!index.isValid())
        return;
    m_hidden.removeIf([](const QPersistentModelIndex& each) { return !each.isValid(); });
    if (!m_hidden.removeOne(index) && m_rules.canAddClass(elementAt(index)))
        m_hidden.append(index);
    emit dataChanged(index, index, {Qt::ForegroundRole});
}

const std::vector<html::Element*>& OutlineModel::childrenOf(const html::ParentNode& parent) const
{
    const auto [found, isNew] = m_children.try_emplace(&parent);
    if (isNew) {
        found->second = parent.children();
        int row = 0;
        for (const html::Element* child : found->second)
            m_rows[child] = row++;
    }
    return found->second;
}

void OutlineModel::forgetRows()
{
    m_children.clear();
    m_rows.clear();
    m_deepestLevel.reset();
}

// Of a large page everything else stays known: the view asks for every row again.
void OutlineModel::forgetChange()
{
    m_children.erase(m_changing);
    for (const html::Element* const gone : m_leaving) {
        for (const html::Node* node = gone; node; node = node->following(*gone)) {
            if (const html::Element* const element = node->asElement()) {
                m_children.erase(element);
                m_rows.erase(element);
            }
        }
    }
    m_leaving.clear();
    m_deepestLevel.reset();
}

int OutlineModel::deepestLevel() const
{
    if (!m_deepestLevel)
        m_deepestLevel = m_tree.document() ? std::max(elementDepth(*m_tree.document()) - 1, 0) : 0;
    return *m_deepestLevel;
}

const html::ParentNode* OutlineModel::nodeOf(const QModelIndex& index) const
{
    if (index.isValid())
        return elementAt(index);
    return m_tree.document();
}

QModelIndex OutlineModel::index(int row, int column, const QModelIndex& parent) const
{
    const html::ParentNode* const node = nodeOf(parent);
    if (!node || column != 0 || row < 0 || parent.column() > 0)
        return {};
    const auto& children = childrenOf(*node);
    const auto at = static_cast<std::size_t>(row);
    return at < children.size() ? createIndex(row, 0, children[at]) : QModelIndex();
}

QModelIndex OutlineModel::parent(const QModelIndex& child) const
{
    const html::Element* const element = elementAt(child);
    return element && element->parent() ? indexOf(element->parent()->asElement()) : QModelIndex();
}

int OutlineModel::rowCount(const QModelIndex& parent) const
{
    const html::ParentNode* const node = nodeOf(parent);
    return node && parent.column() <= 0 ? static_cast<int>(childrenOf(*node).size()) : 0;
}

int OutlineModel::columnCount(const QModelIndex&) const
{
    return 1;
}

bool OutlineModel::hasChildren(const QModelIndex& parent) const
{
    const html::ParentNode* const node = nodeOf(parent);
    return node && node->firstElement();
}

QVariant OutlineModel::data(const QModelIndex& index, int role) const
{
    const html::Element* const element = elementAt(index);
    if (!element)
        return {};
    switch (role) {
    case Qt::DisplayRole:
        return shortened(outlineRowText(*element), longestRow);
    case Qt::ToolTipRole:
        return toolTipOf(*element);
    case Qt::AccessibleDescriptionRole:
        return m_hidden.contains(index) ? tr("Hidden") : QString();
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
    return m_rules.canDrag(elementAt(index)) ? common | Qt::ItemIsDragEnabled : common;
}

// Dragging

int OutlineModel::outlineRow(const html::Element& element) const
{
    int row = 0;
    for (const html::Node* node = m_tree.document(); node && node != &element;
         node = node->following(*m_tree.document()))
        row += node->asElement() ? 1 : 0;
    return row;
}

html::Element* OutlineModel::elementAtRow(qlonglong row) const
{
    for (html::Node* node = m_tree.document(); node; node = node->following(*m_tree.document())) {
        if (node->asElement() && row-- == 0)
            return node->asElement();
    }
    return nullptr;
}

QStringList OutlineModel::mimeTypes() const
{
    return {QString::fromLatin1(nodeDragType)};
}

QMimeData* OutlineModel::mimeData(const QModelIndexList& indexes) const
{
    const html::Element* const element = indexes.isEmpty() ? nullptr : elementAt(indexes.first());
    if (!element || !m_rules.canDrag(element))
        return nullptr;
    const html::Element* const above = element->parent()->asElement();
    const QVariantMap record = {
        {QStringLiteral("sourceParentRowNo"), above ? qlonglong{outlineRow(*above)} : qlonglong{-1}},
        {QStringLiteral("sourceChildIndex"), qlonglong{indexes.first().row()}},
        {QStringLiteral("sourceItemRowNo"), qlonglong{outlineRow(*element)}}};
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

html::Element* OutlineModel::draggedElement(const QMimeData* data) const
{
    const auto record = readPropertyList(data->data(QString::fromLatin1(nodeDragType)));
    if (!record)
        return nullptr;
    bool isNumber = false;
    const qlonglong row = record->toMap().value(QStringLiteral("sourceItemRowNo")).toLongLong(&isNumber);
    return isNumber && row >= 0 ? elementAtRow(row) : nullptr;
}

bool OutlineModel::canDropMimeData(const QMimeData* data, Qt::DropAction action, int, int,
                                   const QModelIndex& parent) const
{
    return supportedDropActions().testFlag(action) &&
           m_rules.canDrop(draggedElement(data), elementAt(parent));
}

bool OutlineModel::dropMimeData(const QMimeData* data, Qt::DropAction action, int row, int column,
                                const QModelIndex& parent)
{
    if (canDropMimeData(data, action, row, column, parent))
        emit elementDropped(indexOf(draggedElement(data)), parent, row, action);
    return true;
}

} // namespace luma
