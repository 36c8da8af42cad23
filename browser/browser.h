// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "browser/columnselection.h"
#include "browser/droptarget.h"
#include "browser/filesystemmodel.h"

#include <QPointer>
#include <QScrollArea>

#include <functional>

class QContextMenuEvent;
class QLabel;

namespace luma {

class BrowserColumn;
class BrowserListView;
class EnlargedPreview;
class IconPreviewController;

/// The column browser: one column of rows for each folder on the way to the selected item, and after the last
/// one the preview of a selected leaf. A single selected folder opens as the next column, so neighbouring
/// columns always agree. The current column is the one with the focus, or the one used last; nothing is selected
/// to its right, and it alone is a stop for Tab. Columns keep their scroll position and the widths that the user
/// gave them. Delete, Control+Delete and Control+Backspace request deletion, Enter opens, Space shows the preview
/// enlarged. Keys that only find a name beep. Main thread only.
class Browser final : public QScrollArea
{
    Q_OBJECT

public:
    using Path = ColumnSelection::Path;

    explicit Browser(QWidget* parent = nullptr);
    ~Browser() override;

    [[nodiscard]] FileSystemModel& model() { return m_model; }
    [[nodiscard]] const FileSystemModel& model() const { return m_model; }

    /// The name of the pane, for screen readers.
    void setPaneName(const QString& name) { m_content->setAccessibleName(name); }
    /// The text shown instead of columns while there is no root.
    void setEmptyText(const QString& text);
    /// Replaces the desktop's beep on a key press; a seam for tests.
    void setBeep(std::function<void()> beep) { m_beep = std::move(beep); }

    // See ColumnSelection.
    [[nodiscard]] Path path() const { return m_selection.path(); }
    void setPath(const Path& path) { m_selection.setPath(path); }
    void selectInLastColumn(const std::vector<std::string>& names) { m_selection.selectInLastColumn(names); }
    void selectInFolder(const std::filesystem::path& folder, const std::vector<std::string>& names)
    {
        m_selection.selectInFolder(folder, names);
    }
    /// Lists everything again, packages as such; keeps path, selection and focus.
    void reload();
    /// Gives the current column the focus and, if nothing is selected in it, selects its first row.
    void focusCurrentColumn();
    /// Lists the shown folders again; keeps path, selection and scroll position.
    void refresh();
    /// Opens the columns on the way to `item` and selects it. If the item can't be shown (outside the root,
    /// hidden, or gone), selects as far as possible and returns false.
    bool reveal(const std::filesystem::path& item);
    /// Goes into a folder's column; a package becomes a folder. False for any other item.
    bool enter(const QModelIndex& item);
    /// Shows the names again after one has changed.
    void updateTexts();
    /// Selects all rows of the current column.
    void selectAll();
    /// Starts editing the name in place.
    void rename(const QModelIndex& item);

    [[nodiscard]] int columnCount() const { return static_cast<int>(m_columns.size()); }
    [[nodiscard]] QModelIndex parentForItemsInColumn(int column) const;
    /// The folders of all columns.
    [[nodiscard]] QModelIndexList shownFolders() const;
    /// -1 without a column.
    [[nodiscard]] int currentColumn() const { return m_currentColumn; }
    /// The selected row of the current column that was reached last; invalid if none is selected there.
    [[nodiscard]] QModelIndex currentItem() const;
    /// The selected rows of the current column.
    [[nodiscard]] QModelIndexList selectedItems() const;
    /// The row of the current column to go on with when the selected ones are gone: the one after them, or else the
    /// one before; invalid if there is no other.
    [[nodiscard]] QModelIndex itemBesideSelection() const;
    [[nodiscard]] int draggedColumnIndex() const { return m_draggedColumn; }

    /// The widths that the user gave the columns, in pixels, from the first column on.
    [[nodiscard]] QList<int> columnWidths() const { return m_widths; }
    /// Widths outside the allowed range become the nearest allowed one.
    void setColumnWidths(const QList<int>& widths);

signals:
    /// The current column or its selection has changed.
    void currentChanged();
    /// A folder is shown or was listed again.
    void listed();
    void doubleClicked(const QModelIndex& item);
    /// Deletion of the selected items.
    void deleteRequested();
    /// Items were dropped where dropping is allowed.
    void dropped(const Drop& drop);
    void contextMenuRequested(const QModelIndex& item, const QPoint& globalPosition);
    void columnWidthsChanged();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    FileSystemModel m_model;
    DropTarget m_dropTarget{m_model};
    std::vector<BrowserColumn*> m_columns;
    ColumnSelection m_selection{m_model, m_columns};
    QWidget* m_content = nullptr;
    QLabel* m_emptyLabel = nullptr;
    IconPreviewController* m_preview = nullptr;
    QPointer<EnlargedPreview> m_enlarged;
    int m_currentColumn = -1;
    int m_draggedColumn = -1;
    bool m_changing = false;
    Path m_wantedPath; // while a folder on it is being listed
    QList<int> m_widths;
    std::function<void()> m_beep;

    void connectModel();
    void makeContent();
    void connectColumn(BrowserColumn& column, int number);
    void rebuild();
    void openColumn(const QModelIndex& folder);
    void closeColumnsFrom(int number);
    void closeLostColumns(const QModelIndex& parent, int first, int last);
    void goTo(const Path& wanted);
    void showLateRows();
    void showPreview(const QModelIndex& leaf);
    void hidePreview();
    void selectionChanged(int number);
    void makeCurrent(int column);
    void setCurrentColumn(int column);
    void askForMenu(int column, const QContextMenuEvent& event);
    bool handleKey(int column, const QKeyEvent& event);
    void moveBack(int column);
    void moveOn(int column);
    void selectFirstRow();
    void showEnlarged();
    void updateEnlarged();
    void scrollToEnd();
    [[nodiscard]] int columnOfList(const QObject* list) const;
};

} // namespace luma
