// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QMenu>

namespace luma {

/// The menu of an item in a pane, and of the blank space below the items. Actions that need an item are
/// disabled without one. Each action has an object name and only emits its signal. Main thread only.
class PaneMenu final : public QMenu
{
    Q_OBJECT

public:
    explicit PaneMenu(QWidget* parent);

    void popupFor(bool hasItem, const QPoint& globalPosition);
    /// Shows the keys of the window's actions of the same names beside the titles.
    void showKeysOf(const QWidget& window);
    /// The title of the command that publishes the selected items.
    void setTransferTitle(const QString& title) { m_transferAction->setText(title); }
    [[nodiscard]] QMenu& openWithMenu() const { return *m_openWith; }

signals:
    void openRequested();
    void browserRequested();
    void fileManagerRequested();
    void cutRequested();
    void copyRequested();
    void pasteRequested();
    void pathCopyRequested();
    void linkCopyRequested();
    void transferRequested();
    void propertiesRequested();
    void newFolderRequested();
    void duplicateRequested();
    void renameRequested();
    void deleteRequested();
    void reloadRequested();
    void linksFromItemRequested();
    void linksToItemRequested();
    void missingLinksRequested();
    void unlinkedItemsRequested();

private:
    QList<QAction*> m_itemActions;
    QMenu* m_openWith = nullptr;
    QAction* m_transferAction = nullptr;

    void addOpening();
    void addChanges();
    void addLinkReports();
    QAction* add(const QString& name, const QString& text, const QString& icon, void (PaneMenu::*wish)());
    QAction* addForItem(const QString& name, const QString& text, const QString& icon,
                        void (PaneMenu::*wish)());
};

} // namespace luma
