// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/sitelist.h"

#include <QMainWindow>
#include <QSortFilterProxyModel>

#include <memory>

namespace Ui {
class SiteListWindow;
}

namespace luma {

class Preferences;

/// The window of the site list: left the sites, to be searched, right the form of the selected one. It shows
/// and asks; what an action does is decided by who hears its signals. The object's name is `window`. Main
/// thread only.
class SiteListWindow final : public QMainWindow
{
    Q_OBJECT

public:
    /// `sites` outlives the window.
    explicit SiteListWindow(SiteList& sites, QWidget* parent = nullptr);
    ~SiteListWindow() override;

    /// The selected row of the list, not of what the search has left of it; -1 for none.
    [[nodiscard]] int selectedRow() const;

    /// Selects a row and scrolls to it; a search that hides it is ended.
    void select(int row);

    /// Selects a row and puts the keyboard into its name.
    void editNameOf(int row);

    /// Off while a check for updates is running.
    void setUpdateEnabled(bool enabled);

    void restoreFrom(const Preferences& preferences);
    void saveTo(Preferences& preferences) const;

signals:
    void addRequested();
    void removeRequested();
    void openRequested();
    /// The sender's property `tag`: 0 for the source's folder, any other for the destination's.
    void pathRequested(QObject* sender);
    void preferencesRequested();
    void productPageRequested();
    void updateRequested();
    void aboutRequested();
    void quitRequested();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void connectActions();
    void connectList();
    void connectForm();
    void search(const QString& text);
    void showSelected();
    void updateActions();
    bool handleKey(const QObject* watched, int key);

    SiteList& m_sites;
    QSortFilterProxyModel m_found;
    std::unique_ptr<Ui::SiteListWindow> m_ui;
};

} // namespace luma
