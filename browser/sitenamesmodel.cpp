// SPDX-License-Identifier: GPL-3.0-or-later
#include "browser/sitenamesmodel.h"

#include "browser/countedtext.h"
#include "browser/displaytext.h"

#include <QFont>

#include <algorithm>

namespace luma {

namespace {

// An index of a place holds the number of its name's row, counted from 1; that of a name 0.
constexpr quintptr ofName = 0;

QString numberText(std::size_t number)
{
    return number == 0 ? QString() : QLocale().toString(static_cast<qulonglong>(number));
}

QString signedName(const SiteName& name)
{
    return (name.isId ? u'#' : u'.') + displayText(name.name);
}

// An id that only serves as the target of links needs no rule.
bool lacksRule(const SiteName& name)
{
    return name.isUndefined() && (!name.isId || name.references.empty());
}

} // namespace

void SiteNamesModel::setNames(std::vector<SiteName> names)
{
    beginResetModel();
    m_names = std::move(names);
    arrange();
    endResetModel();
}

void SiteNamesModel::setFilter(const QString& text, Shown shown)
{
    if (text == m_filter && shown == m_shown)
        return;
    beginResetModel();
    m_filter = text;
    m_shown = shown;
    arrange();
    endResetModel();
}

void SiteNamesModel::sort(int column, Qt::SortOrder order)
{
    beginResetModel();
    m_sortColumn = column;
    m_order = order;
    arrange();
    endResetModel();
}

bool SiteNamesModel::isShown(const SiteName& name) const
{
    if (!signedName(name).contains(m_filter, Qt::CaseInsensitive))
        return false;
    switch (m_shown) {
    case Shown::Unused:
        return name.isUnused();
    case Shown::Undefined:
        return name.isUndefined();
    case Shown::Classes:
        return !name.isId;
    case Shown::Ids:
        return name.isId;
    default:
        return true;
    }
}

bool SiteNamesModel::isBefore(const SiteName& a, const SiteName& b) const
{
    switch (m_sortColumn) {
    case Name:
        return displayText(a.name).localeAwareCompare(displayText(b.name)) < 0;
    case Rules:
        return SiteName::countOf(a.rules) < SiteName::countOf(b.rules);
    case Elements:
        return SiteName::countOf(a.elements) < SiteName::countOf(b.elements);
    case Pages:
        return a.elements.size() < b.elements.size();
    default:
        return noteOn(a).localeAwareCompare(noteOn(b)) < 0;
    }
}

void SiteNamesModel::arrange()
{
    m_rows.clear();
    for (std::uint32_t i = 0; i < m_names.size(); ++i) {
        if (isShown(m_names[i]))
            m_rows.push_back(i);
    }
    if (m_sortColumn < 0)
        return;
    std::stable_sort(m_rows.begin(), m_rows.end(), [this](std::uint32_t a, std::uint32_t b) {
        return m_order == Qt::AscendingOrder ? isBefore(m_names[a], m_names[b])
                                             : isBefore(m_names[b], m_names[a]);
    });
}

std::vector<SiteNamesModel::Part> SiteNamesModel::partsOf(const SiteName& name)
{
    std::vector<Part> parts;
    for (const SiteName::Place& place : name.rules)
        parts.emplace_back(&place, Rules);
    for (const SiteName::Place& place : name.elements)
        parts.emplace_back(&place, Elements);
    for (const SiteName::Place& place : name.references)
        parts.emplace_back(&place, Note);
    return parts;
}

const SiteName* SiteNamesModel::nameOf(const QModelIndex& index) const
{
    if (!index.isValid())
        return nullptr;
    const quintptr row =
        index.internalId() == ofName ? static_cast<quintptr>(index.row()) : index.internalId() - 1;
    return &m_names[m_rows[row]];
}

const SiteName::Place* SiteNamesModel::placeOf(const QModelIndex& index) const
{
    const SiteName* const name = nameOf(index);
    if (!name)
        return nullptr;
    const std::vector<Part> parts = partsOf(*name);
    const std::size_t number = index.internalId() == ofName ? 0 : static_cast<std::size_t>(index.row());
    return number < parts.size() ? parts[number].first : nullptr;
}

QModelIndex SiteNamesModel::index(int row, int column, const QModelIndex& parent) const
{
    if (!hasIndex(row, column, parent))
        return {};
    return createIndex(row, column, parent.isValid() ? static_cast<quintptr>(parent.row()) + 1 : ofName);
}

QModelIndex SiteNamesModel::parent(const QModelIndex& index) const
{
    if (!index.isValid() || index.internalId() == ofName)
        return {};
    return createIndex(static_cast<int>(index.internalId()) - 1, 0, ofName);
}

int SiteNamesModel::rowCount(const QModelIndex& parent) const
{
    if (!parent.isValid())
        return static_cast<int>(m_rows.size());
    if (parent.internalId() != ofName || parent.column() != 0)
        return 0;
    const SiteName& name = *nameOf(parent);
    return static_cast<int>(name.rules.size() + name.elements.size() + name.references.size());
}

int SiteNamesModel::columnCount(const QModelIndex& /*parent*/) const
{
    return ColumnCount;
}

QString SiteNamesModel::noteOn(const SiteName& name)
{
    QStringList notes;
    if (name.isUnused())
        notes.append(name.scripts.empty() ? tr("unused") : tr("only in scripts"));
    else if (lacksRule(name))
        notes.append(tr("no rule"));
    if (const std::size_t count = SiteName::countOf(name.references); count > 0)
        notes.append(counted(count, tr("link or label"), tr("links or labels")));
    if (!name.isUnused() && !name.scripts.empty())
        notes.append(tr("in scripts"));
    return notes.join(QStringLiteral(", "));
}

QString SiteNamesModel::nameText(const SiteName& name, int column) const
{
    switch (column) {
    case Name:
        return signedName(name);
    case Rules:
        return numberText(SiteName::countOf(name.rules));
    case Elements:
        return numberText(SiteName::countOf(name.elements));
    case Pages:
        return numberText(name.elements.size());
    default:
        return noteOn(name);
    }
}

QString SiteNamesModel::placeText(const Part& part, int column) const
{
    const auto& [place, counts] = part;
    if (column == Name)
        return tr("%1:%2").arg(displayText(place->file)).arg(place->line);
    if (column == Note && counts == Note)
        return counted(place->count, tr("link or label"), tr("links or labels"));
    return column == counts ? numberText(place->count) : QString();
}

QVariant SiteNamesModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid())
        return {};
    const SiteName& name = *nameOf(index);
    const bool isName = index.internalId() == ofName;
    if (role == Qt::DisplayRole)
        return isName ? nameText(name, index.column())
                      : placeText(partsOf(name)[static_cast<std::size_t>(index.row())], index.column());
    if (role == Qt::ToolTipRole && index.column() == Name)
        return index.data(Qt::DisplayRole);
    if (role == Qt::TextAlignmentRole && index.column() != Name && index.column() != Note)
        return QVariant(Qt::AlignRight | Qt::AlignVCenter);
    const bool isMarked = name.isUnused() || lacksRule(name);
    if (role == MarkedRole)
        return isMarked;
    if (role == Qt::FontRole && isName && isMarked) {
        QFont font;
        font.setItalic(true);
        return font;
    }
    return {};
}

QVariant SiteNamesModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    switch (section) {
    case Name:
        return tr("Name");
    case Rules:
        return tr("Rules");
    case Elements:
        return tr("Elements");
    case Pages:
        return tr("Pages");
    default:
        return tr("Note");
    }
}

} // namespace luma
