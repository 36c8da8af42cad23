#include "browser/panemenu.h"

#include "platform/icons.h"

namespace luma {

PaneMenu::PaneMenu(QWidget* parent) : QMenu(parent)
{
    setObjectName(QStringLiteral("contextualMenu"));
    addForItem(QStringLiteral("openAction"), tr("&Open"), QStringLiteral("open"), &PaneMenu::openChosen);
    addSeparator();
    add(QStringLiteral("newFolderAction"), tr("&New Folder"), QStringLiteral("new-folder"),
        &PaneMenu::newFolderChosen);
    addForItem(QStringLiteral("duplicateAction"), tr("D&uplicate"), QStringLiteral("duplicate"),
               &PaneMenu::duplicateChosen);
    addForItem(QStringLiteral("renameAction"), tr("&Rename"), QStringLiteral("rename"),
               &PaneMenu::renameChosen);
    addForItem(QStringLiteral("deleteAction"), tr("&Delete..."), QStringLiteral("delete"),
               &PaneMenu::deleteChosen);
    addSeparator();
    add(QStringLiteral("reloadAction"), tr("Re&load"), QStringLiteral("reload"), &PaneMenu::reloadChosen);
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
