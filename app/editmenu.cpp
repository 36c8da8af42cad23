// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/editmenu.h"

#include <QApplication>
#include <QMenu>
#include <QMetaMethod>

namespace luma {

namespace {

struct EditMenu
{
    Q_DECLARE_TR_FUNCTIONS(luma::EditMenu)
};

// The slot without parameters that text fields and views call so.
QMetaMethod slotOf(const QWidget* widget, const char* name)
{
    if (!widget)
        return {};
    const QMetaObject* const type = widget->metaObject();
    return type->method(type->indexOfSlot(QByteArray(name).append("()").constData()));
}

void add(QMenu& menu, const char* slot, const QString& title, QKeySequence::StandardKey keys)
{
    QAction* const action = menu.addAction(title);
    action->setObjectName(QLatin1StringView(slot) + QLatin1StringView("Action"));
    action->setShortcut(keys);
    QObject::connect(action, &QAction::triggered, &menu, [slot] {
        QWidget* const focused = QApplication::focusWidget();
        if (const QMetaMethod method = slotOf(focused, slot); method.isValid())
            method.invoke(focused);
    });
    QObject::connect(&menu, &QMenu::aboutToShow, action, [action, slot] {
        action->setEnabled(slotOf(QApplication::focusWidget(), slot).isValid());
    });
    // A key must not depend on what had the focus when the menu was last open.
    QObject::connect(&menu, &QMenu::aboutToHide, action, [action] { action->setEnabled(true); });
}

} // namespace

void addTextActions(QMenu& menu)
{
    menu.addSeparator();
    add(menu, "cut", EditMenu::tr("Cu&t"), QKeySequence::Cut);
    add(menu, "copy", EditMenu::tr("&Copy"), QKeySequence::Copy);
    add(menu, "paste", EditMenu::tr("&Paste"), QKeySequence::Paste);
    menu.addSeparator();
    add(menu, "selectAll", EditMenu::tr("Select &All"), QKeySequence::SelectAll);
}

} // namespace luma
