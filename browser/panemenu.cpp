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
    addShowLinks(QStringLiteral("showLinksFromAction"), QStringLiteral("Show Links From Item..."));
    addShowLinks(QStringLiteral("showLinksToAction"), QStringLiteral("Show Links To Item..."));
    add(QStringLiteral("paneMissingLinksAction"), tr("&Missing Links"), QStringLiteral("missing-links"),
        &PaneMenu::missingLinksRequested);
    add(QStringLiteral("paneUnlinkedItemsAction"), tr("Un&linked Items"), QStringLiteral("unlinked-items"),
        &PaneMenu::unlinkedItemsRequested);
}

void PaneMenu::addShowLinks(const QString& name, const QString& title)
{
    QAction* action = addAction(title);
    action->setObjectName(name);
    m_itemActions.append(action);
    connect(action, &QAction::triggered, this, [this, title] { emit showLinksRequested(title); });
}

QAction* PaneMenu::add(const QString& name, const QString& text, const QString& icon,
                       void (PaneMenu::*chosen)())
{
    QAction* action = addAction(icons::symbol(icon), text);
    action->setObjectName(name);
    connect(action, &QAction::triggered, this, [this, chosen] { emit(this->*chosen)(); });
    return action;
}

QAction* PaneMenu::addForItem(const QString& name, const QString& text, const QString& icon,
                              void (PaneMenu::*chosen)())
{
    QAction* action = add(name, text, icon, chosen);
    m_itemActions.append(action);
    return action;
}

void PaneMenu::popupFor(bool hasItem, const QPoint& globalPosition)
{
    for (QAction* action : m_itemActions)
        action->setEnabled(hasItem);
    popup(globalPosition);
}

} // namespace luma
