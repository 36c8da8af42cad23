// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>
#include <string>
#include <vector>

class QModelIndex;

namespace luma {

class BrowserColumn;
class FileSystemModel;

/// The selection in the columns of a browser, by the names of the items. Selecting a folder opens its column,
/// so every call may add and remove columns. Main thread only; model and columns outlive it.
class ColumnSelection final
{
public:
    using Columns = std::vector<BrowserColumn*>;
    /// The names (bytes) from the root to the last selected item.
    using Path = std::vector<std::string>;

    ColumnSelection(const FileSystemModel& model, const Columns& columns) : m_model(model), m_columns(columns)
    {}

    [[nodiscard]] Path path() const;
    /// Selects along `path` as far as its items exist; keeps what is already selected.
    void setPath(const Path& path) const;
    /// Selects along the path to `item`. If the columns don't show the item, selects as far as possible and
    /// returns false.
    [[nodiscard]] bool reach(const std::filesystem::path& item) const;
    /// Selects the rows with these names in the last column, if there are any, and scrolls to the first.
    void selectInLastColumn(const std::vector<std::string>& names) const;
    /// The same in the column of `folder`, if it is shown.
    void selectInFolder(const std::filesystem::path& folder, const std::vector<std::string>& names) const;

private:
    const FileSystemModel& m_model;
    const Columns& m_columns;

    void select(BrowserColumn& column, const QModelIndex& item) const;
    void selectRows(BrowserColumn& column, const std::vector<std::string>& names) const;
};

} // namespace luma
