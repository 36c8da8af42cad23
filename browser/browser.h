// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "browser/columnselection.h"
#include "browser/drop.h"
#include "browser/droptarget.h"
#include "browser/filesystemmodel.h"

#include <QPersistentModelIndex>
#include <QScrollArea>

#include <functional>

class QContextMenuEvent;
class QLabel;

namespace luma {

class BrowserColumn;
class BrowserListView;
class IconPreviewController;

/// The column browser: one column of rows for each folder on the way to the selected item, the preview of a
/// selected leaf after the last one. A column's single selected folder opens as the next column, so
/// neighbours always agree. Columns keep their scroll position and the widths that the user gave them. Every
/// key but Control+Delete and Control+Backspace beeps and is then handled as usual; these two ask for
/// deletion.
class Browser final : public QScrollArea
{
    Q_OBJECT

public:
    using Path = ColumnSelection::Path;

    explicit Browser(QWidget* parent = nullptr);
    ~Browser() override;

    [[nodiscard]] FileSystemModel& model() { return m_model; }

    /// Shown instead of columns while there is no root.
    void setEmptyText(const QString& text);
    /// What sounds on a key press; the desktop's beep unless a test listens.
    void setBeep(std::function<void()> beep) { m_beep = std::move(beep); }

    // As ColumnSelection has them.
    [[nodiscard]] Path path() const { return m_selection.path(); }
    void setPath(const Path& path) { m_selection.setPath(path); }
    void selectInLastColumn(const std::vector<std::string>& names) { m_selection.selectInLastColumn(names); }
    void selectInFolder(const std::filesystem::path& folder, const std::vector<std::string>& names)
    {
        m_selection.selectInFolder(folder, names);
    }
    /// Lists the shown folders again and keeps path, selection and scroll position.
    void refresh();
    /// Opens the columns on the way to `item` and selects it. False, and as far as it goes, when it is not to
    /// be seen: outside of the root, hidden, or gone.
    bool reveal(const std::filesystem::path& item);
    /// Starts the in-place edit of a name.
    void rename(const QModelIndex& item);

    [[nodiscard]] int columnCount() const { return static_cast<int>(m_columns.size()); }
    [[nodiscard]] QModelIndex parentForItemsInColumn(int column) const;
    /// The item that was clicked last, or moved to with the keyboard; invalid when it is gone.
    [[nodiscard]] QModelIndex clickedItem() const { return m_clicked; }
    /// The column of the last click, in a blank place too; -1 for none.
    [[nodiscard]] int clickedColumn() const;
    /// The selected rows of the last column that has any.
    [[nodiscard]] QModelIndexList selectedItems() const;
    [[nodiscard]] int draggedColumnIndex() const { return m_draggedColumn; }

    /// The widths that the user gave the columns, from the first one on.
    [[nodiscard]] QList<int> columnWidths() const { return m_widths; }
    /// Widths that no column can have become the nearest that it can.
    void setColumnWidths(const QList<int>& widths);

signals:
    void clicked(const QModelIndex& item);
    void doubleClicked(const QModelIndex& item);
    /// Control+Delete or Control+Backspace: the selected items are to go.
    void deleteRequested();
    /// Items were dropped where that is allowed.
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
    QPersistentModelIndex m_clicked;
    int m_clickedColumn = -1;
    int m_draggedColumn = -1;
    bool m_changing = false;
    QList<int> m_widths;
    std::function<void()> m_beep;

    void connectModel();
    void makeContent();
    void connectColumn(BrowserColumn& column, int number);
    void rebuild();
    void openColumn(const QModelIndex& folder);
    void closeColumnsFrom(int number);
    void closeLostColumns(const QModelIndex& parent, int first, int last);
    void showPreview(const QModelIndex& leaf);
    void hidePreview();
    void selectionChanged(int number);
    void noteClick(int column, const QModelIndex& item);
    void askForMenu(int column, const QContextMenuEvent& event);
    bool handleKey(int column, const QKeyEvent& event);
    void moveLeft(int column);
    void moveRight(int column);
    void scrollToEnd();
    [[nodiscard]] int columnOfList(const QObject* list) const;
};

} // namespace luma
