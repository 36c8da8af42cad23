// SPDX-License-Identifier: GPL-3.0-or-later
#include "web/formatmenus.h"

#include "web/viewcontroller.h"

#include <QMenu>

#include <initializer_list>

namespace luma {

namespace {

using Titles = std::initializer_list<const char*>;

QAction* addItem(QMenu* menu, const char* title)
{
    QAction* action = menu->addAction(FormatMenus::tr(title));
    action->setObjectName(QString::fromLatin1(title));
    action->setProperty("commandWord", action->objectName());
    return action;
}

void addStyles(QMenu* menu, ViewController& controller, Titles titles)
{
    for (const char* title : titles) {
        QAction* action = addItem(menu, title);
        action->setCheckable(true);
        QObject::connect(action, &QAction::triggered, &controller, [&controller, action](bool checked) {
            checked ? controller.applyStyle(action) : controller.removeStyle(action);
        });
    }
}

void addCommands(QMenu* menu, ViewController& controller, Titles titles)
{
    for (const char* title : titles) {
        QAction* action = addItem(menu, title);
        QObject::connect(action, &QAction::triggered, &controller,
                         [&controller, action] { controller.doExecCommand(action); });
    }
}

} // namespace

QMenu* FormatMenus::textStyle(QWidget* parent, ViewController& controller)
{
    auto* menu = new QMenu(tr("Text Style"), parent);
    menu->setObjectName(QStringLiteral("fontSubMenu"));
    addStyles(menu, controller,
              {QT_TR_NOOP("Bold"), QT_TR_NOOP("Italic"), QT_TR_NOOP("Underline"),
               QT_TR_NOOP("Strike Through"), QT_TR_NOOP("Superscript"), QT_TR_NOOP("Subscript"),
               QT_TR_NOOP("Code")});
    menu->addSeparator();
    addStyles(menu, controller,
              {QT_TR_NOOP("Paragraph"), QT_TR_NOOP("Heading 1"), QT_TR_NOOP("Heading 2"),
               QT_TR_NOOP("Heading 3"), QT_TR_NOOP("Heading 4"), QT_TR_NOOP("Heading 5"),
               QT_TR_NOOP("Heading 6"), QT_TR_NOOP("Block Quote"), QT_TR_NOOP("Preformatted")});
    menu->addSeparator();
    addStyles(menu, controller, {QT_TR_NOOP("Ordered List"), QT_TR_NOOP("Unordered List")});
    addCommands(menu, controller, {QT_TR_NOOP("Indent"), QT_TR_NOOP("Outdent")});
    menu->addSeparator();
    QObject::connect(addItem(menu, QT_TR_NOOP("Remove Format")), &QAction::triggered, &controller,
                     &ViewController::removeAllStyles);
    return menu;
}

QMenu* FormatMenus::justification(QWidget* parent, ViewController& controller)
{
    auto* menu = new QMenu(tr("Text Justification"), parent);
    menu->setObjectName(QStringLiteral("justificationSubMenu"));
    addCommands(menu, controller,
                {QT_TR_NOOP("Justify Left"), QT_TR_NOOP("Justify Center"), QT_TR_NOOP("Justify Right"),
                 QT_TR_NOOP("Justify Full")});
    const QList<QAction*> actions = menu->actions();
    for (QAction* action : actions)
        action->setCheckable(true);
    menu->addSeparator();
    QObject::connect(addItem(menu, QT_TR_NOOP("Remove Justification")), &QAction::triggered, &controller,
                     &ViewController::removeJustfication);
    return menu;
}

} // namespace luma
