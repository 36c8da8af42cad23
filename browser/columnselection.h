// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>
#include <string>
#include <vector>

class QModelIndex;

namespace luma {

class BrowserColumn;
class FileSystemModel;

/// What is selected in the columns of a browser, by the names of the items. Selecting a folder opens its
/// column, so the columns may grow and shrink under every call. Main thread only; model and columns outlive
/// it.
class ColumnSelection final
{
public:
    using Columns = std::vector<BrowserColumn*>;
    /// The names (bytes) from the root to the last selected item.
    using Path = std::vector<std::string>;

    ColumnSelection(const FileSystemModel& model, const Columns& columns) : m_model(model), m_columns(columns)
    {}

    [[nodiscard]] Path path() const;
    /// Selects along `path` as far as it goes; what is selected already stays as it is.
    void setPath(const Path& path) const;
    /// The same to `item`. False, and as far as it goes, when the columns don't show it.
    [[nodiscard]] bool reach(const std::filesystem::path& item) const;
    /// Selects in the last column the rows of these names, when there are any, and shows the first.
    void selectInLastColumn(const std::vector<std::string>& names) const;
    /// The same in the column that shows `folder`, when there is one.
    void selectInFolder(const std::filesystem::path& folder, const std::vector<std::string>& names) const;

private:
    const FileSystemModel& m_model;
    const Columns& m_columns;

    void select(BrowserColumn& column, const QModelIndex& item) const;
    void selectRows(BrowserColumn& column, const std::vector<std::string>& names) const;
};

} // namespace luma
