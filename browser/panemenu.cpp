// SPDX-License-Identifier: GPL-3.0-or-later
#include "browser/panemenu.h"

#include "desktop/icons.h"

namespace luma {

PaneMenu::PaneMenu(QWidget* parent) : QMenu(parent)
{
    setObjectName(QStringLiteral("contextualMenu"));
    addOpening();
    addSeparator();
    addForItem(QStringLiteral("cutAction"), tr("Cu&t"), QStringLiteral("cut"), &PaneMenu::cutRequested);
    addForItem(QStringLiteral("copyAction"), tr("Cop&y"), QStringLiteral("duplicate"),
               &PaneMenu::copyRequested);
    add(QStringLiteral("pasteAction"), tr("&Paste"), QStringLiteral("paste"), &PaneMenu::pasteRequested);
    addSeparator();
    addForItem(QStringLiteral("copyPathAction"), tr("&Copy Path"), {}, &PaneMenu::pathCopyRequested);
    addForItem(QStringLiteral("copyLinkAction"), tr("Copy Relative L&ink"), {}, &PaneMenu::linkCopyRequested);
    addSeparator();
    addChanges();
    addSeparator();
    m_transferAction = addForItem(QStringLiteral("transferAction"), {}, QStringLiteral("upload"),
                                  &PaneMenu::transferRequested);
    addSeparator();
    addLinkReports();
    addSeparator();
    add(QStringLiteral("reloadAction"), tr("R&eload"), QStringLiteral("reload"), &PaneMenu::reloadRequested);
    addForItem(QStringLiteral("propertiesAction"), tr("Propertie&s"), QStringLiteral("properties"),
               &PaneMenu::propertiesRequested);
}

void PaneMenu::addOpening()
{
    addForItem(QStringLiteral("openAction"), tr("&Open"), QStringLiteral("open"), &PaneMenu::openRequested);
    m_openWith = addMenu(tr("Open &With"));
    m_openWith->setObjectName(QStringLiteral("openWithMenu"));
    m_itemActions.append(m_openWith->menuAction());
    addForItem(QStringLiteral("browserAction"), tr("Open in &Browser"), QStringLiteral("browser"),
               &PaneMenu::browserRequested);
    addForItem(QStringLiteral("fileManagerAction"), tr("Show in &File Manager"), QStringLiteral("folder"),
               &PaneMenu::fileManagerRequested);
}

void PaneMenu::addChanges()
{
    add(QStringLiteral("newFolderAction"), tr("&New Folder"), QStringLiteral("new-folder"),
        &PaneMenu::newFolderRequested);
    addForItem(QStringLiteral("duplicateAction"), tr("D&uplicate"), QStringLiteral("duplicate"),
               &PaneMenu::duplicateRequested);
    addForItem(QStringLiteral("renameAction"), tr("&Rename"), QStringLiteral("rename"),
               &PaneMenu::renameRequested);
    addForItem(QStringLiteral("deleteAction"), tr("&Delete..."), QStringLiteral("delete"),
               &PaneMenu::deleteRequested);
}

void PaneMenu::addLinkReports()
{
    addForItem(QStringLiteral("showLinksFromAction"), tr("Show Lin&ks From Item..."), QStringLiteral("link"),
               &PaneMenu::linksFromItemRequested);
    addForItem(QStringLiteral("showLinksToAction"), tr("S&how Links To Item..."), QStringLiteral("link"),
               &PaneMenu::linksToItemRequested);
    add(QStringLiteral("missingLinksAction"), tr("&Missing Links"), QStringLiteral("missing-links"),
        &PaneMenu::missingLinksRequested);
    add(QStringLiteral("unlinkedItemsAction"), tr("Un&linked Items"), QStringLiteral("unlinked-items"),
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

QAction* PaneMenu::addForItem(const QString& name, const QString& text, const QString& icon,
                              void (PaneMenu::*wish)())
{
    m_itemActions.append(add(name, text, icon, wish));
    return m_itemActions.last();
}

void PaneMenu::showKeysOf(const QWidget& window)
{
    const QList<QAction*> own = actions();
    for (QAction* action : own) {
        const auto* const same =
            action->objectName().isEmpty()
                ? nullptr
                : window.findChild<QAction*>(action->objectName(), Qt::FindDirectChildrenOnly);
        // Behind a tab, for two actions with one key are ambiguous.
        if (same && !same->shortcut().isEmpty())
            action->setText(action->text().section(u'\t', 0, 0) + u'\t' +
                            same->shortcut().toString(QKeySequence::NativeText));
    }
}

void PaneMenu::popupFor(bool hasItem, const QPoint& globalPosition)
{
    for (QAction* action : m_itemActions)
        action->setEnabled(hasItem);
    popup(globalPosition);
}

} // namespace luma
