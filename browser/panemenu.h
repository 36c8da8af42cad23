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

signals:
    void openRequested();
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

    void addLinkReports();
    QAction* add(const QString& name, const QString& text, const QString& icon, void (PaneMenu::*wish)());
    void addForItem(const QString& name, const QString& text, const QString& icon, void (PaneMenu::*wish)());
};

} // namespace luma
