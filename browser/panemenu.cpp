// SPDX-License-Identifier: GPL-3.0-or-later
#include "browser/panemenu.h"

#include "desktop/icons.h"

namespace luma {

PaneMenu::PaneMenu(QWidget* parent) : QMenu(parent)
{
    setObjectName(QStringLiteral("contextualMenu"));
    addForItem(QStringLiteral("openAction"), tr("&Open"), QStringLiteral("open"), &PaneMenu::openRequested);
    addSeparator();
    add(QStringLiteral("newFolderAction"), tr("&New Folder"), QStringLiteral("new-folder"),
        &PaneMenu::newFolderRequested);
    addForItem(QStringLiteral("duplicateAction"), tr("D&uplicate"), QStringLiteral("duplicate"),
               &PaneMenu::duplicateRequested);
    addForItem(QStringLiteral("renameAction"), tr("&Rename"), QStringLiteral("rename"),
               &PaneMenu::renameRequested);
    addForItem(QStringLiteral("deleteAction"), tr("&Delete..."), QStringLiteral("delete"),
               &PaneMenu::deleteRequested);
    addSeparator();
    addLinkReports();
    addSeparator();
    add(QStringLiteral("reloadAction"), tr("Re&load"), QStringLiteral("reload"), &PaneMenu::reloadRequested);
}

void PaneMenu::addLinkReports()
{
    addForItem(QStringLiteral("showLinksFromAction"), QStringLiteral("Show Links From Item..."), {},
               &PaneMenu::linksFromItemRequested);
    addForItem(QStringLiteral("showLinksToAction"), QStringLiteral("Show Links To Item..."), {},
               &PaneMenu::linksToItemRequested);
    add(QStringLiteral("paneMissingLinksAction"), tr("&Missing Links"), QStringLiteral("missing-links"),
        &PaneMenu::missingLinksRequested);
    add(QStringLiteral("paneUnlinkedItemsAction"), tr("Un&linked Items"), QStringLiteral("unlinked-items"),
        &PaneMenu::unlinkedItemsRequested);
}

QAction* PaneMenu::add(const QString& name, const QString& text, const QString& icon,
                       void (PaneMenu::*wish)())
{
    QAction* action = addAction(icon.isEmpty() ? QIcon() : icons::symbol(icon), text);
    action->setObjectName(name);
    connect(action, &QAction::triggered, this, wish);
    return action;
}

void PaneMenu::addForItem(const QString& name, const QString& text, const QString& icon,
                          void (PaneMenu::*wish)())
{
    m_itemActions.append(add(name, text, icon, wish));
}

void PaneMenu::popupFor(bool hasItem, const QPoint& globalPosition)
{
    for (QAction* action : m_itemActions)
        action->setEnabled(hasItem);
    popup(globalPosition);
}

} // namespace luma
