// SPDX-License-Identifier: GPL-3.0-or-later
#include "browser/columnselection.h"

#include "base/pathbelow.h"
#include "browser/browsercolumn.h"
#include "browser/browserlistview.h"
#include "browser/filesystemmodel.h"

#include <algorithm>

namespace luma {

ColumnSelection::Path ColumnSelection::path() const
{
    Path names;
    for (const BrowserColumn* column : m_columns) {
        const QModelIndexList rows = column->selectedRows();
        if (rows.size() != 1)
            break;
        names.push_back(m_model.node(rows.first())->name());
    }
    return names;
}

void ColumnSelection::setPath(const Path& path) const
{
    for (std::size_t number = 0; number < path.size() && number < m_columns.size(); ++number) {
        BrowserColumn& column = *m_columns[number];
        const QModelIndex item = m_model.childNamed(column.folder(), path[number]);
        if (!item.isValid())
            return;
        select(column, item);
    }
}

bool ColumnSelection::reach(const std::filesystem::path& item) const
{
    if (!m_model.rootNode())
        return false;
    Path names;
    const std::filesystem::path below =
        pathBelow(item.native(), m_model.rootNode()->url().native()).value_or("");
    for (const std::filesystem::path& name : below)
        names.push_back(name.native());
    if (names.empty())
        return false;
    setPath(names);
    const Path selected = path();
    return selected.size() >= names.size() && std::equal(names.begin(), names.end(), selected.begin());
}

void ColumnSelection::select(BrowserColumn& column, const QModelIndex& item) const
{
    if (column.selectedRows() == QModelIndexList{item})
        return;
    column.list().setCurrentIndex(item);
    column.list().scrollTo(item);
}

void ColumnSelection::selectInLastColumn(const std::vector<std::string>& names) const
{
    if (!m_columns.empty())
        selectRows(*m_columns.back(), names);
}

void ColumnSelection::selectInFolder(const std::filesystem::path& folder,
                                     const std::vector<std::string>& names) const
{
    const auto column = std::find_if(m_columns.begin(), m_columns.end(), [&](const BrowserColumn* shown) {
        return m_model.node(shown->folder())->url() == folder;
    });
    if (column != m_columns.end())
        selectRows(**column, names);
}

void ColumnSelection::selectRows(BrowserColumn& column, const std::vector<std::string>& names) const
{
    QItemSelection rows;
    QModelIndex first;
    for (const std::string& name : names) {
        const QModelIndex item = m_model.childNamed(column.folder(), name);
        if (!item.isValid())
            continue;
        rows.select(item, item);
        first = first.isValid() ? first : item;
    }
    if (!first.isValid())
        return;
    column.list().selectionModel()->setCurrentIndex(first, QItemSelectionModel::NoUpdate);
    column.list().selectionModel()->select(rows, QItemSelectionModel::ClearAndSelect);
    column.list().scrollTo(first);
}

} // namespace luma
