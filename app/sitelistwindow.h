// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/endpointform.h"
#include "app/sitelist.h"

#include <QMainWindow>

#include <memory>

namespace Ui {
class SiteListWindow;
}

namespace luma {

class Preferences;

/// The window of the site list: on the left the searchable list, on the right the form of the selected site.
/// Actions only emit signals. The object's name is `window`. Main thread only.
class SiteListWindow final : public QMainWindow
{
    Q_OBJECT

public:
    /// `sites` outlives the window.
    explicit SiteListWindow(SiteList& sites, QWidget* parent = nullptr);
    ~SiteListWindow() override;

    /// The selected row of the whole list, not of the search result; -1 for none.
    [[nodiscard]] int selectedRow() const;

    /// Selects a row and scrolls to it; clears a search that hides it.
    void select(int row);

    /// Selects a row and focuses its name.
    void editNameOf(int row);

    /// Enables the check for updates; it is disabled while one is running.
    void setUpdateEnabled(bool enabled);

    /// The menu entry that takes the last change of the list back; an empty text disables it.
    void setUndo(const QString& text);

    /// Says below the list that it could not be saved; an empty text takes that back.
    void showSaveError(const QString& reason);

    /// Says below the list what is going on; an empty text takes that back.
    void showNotice(const QString& text);

    void restoreFrom(const Preferences& preferences);
    void saveTo(Preferences& preferences) const;

signals:
    void addRequested();
    void sampleRequested();
    void duplicateRequested();
    void importRequested();
    void exportRequested();
    void removeRequested();
    void undoRequested();
    void openRequested();
    /// A chooser for the folder of one side.
    void folderRequested(SiteSide side);
    void preferencesRequested();
    void productPageRequested();
    void updateRequested();
    void quitRequested();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void connectActions();
    void connectList();
    void connectForm();
    void search(const QString& text);
    void connectFolders();
    void removeSelected();
    void showSelected();
    void updateActions();
    bool handleKey(const QObject* watched, int key);

    SiteList& m_sites;
    std::unique_ptr<Ui::SiteListWindow> m_ui;
};

} // namespace luma
