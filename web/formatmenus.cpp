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
    QAction* action = menu->addAction(QString::fromLatin1(title));
    action->setObjectName(action->text());
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
    auto* menu = new QMenu(QMenu::tr("Text Style"), parent);
    menu->setObjectName(QStringLiteral("fontSubMenu"));
    addStyles(menu, controller,
              {"Bold", "Italic", "Underline", "Strike Through", "Superscript", "Subscript", "Code"});
    menu->addSeparator();
    addStyles(menu, controller,
              {"Paragraph", "Heading 1", "Heading 2", "Heading 3", "Heading 4", "Heading 5", "Heading 6",
               "Block Quote", "Preformatted"});
    menu->addSeparator();
    addStyles(menu, controller, {"Ordered List", "Unordered List"});
    addCommands(menu, controller, {"Indent", "Outdent"});
    menu->addSeparator();
    QObject::connect(addItem(menu, "Remove Format"), &QAction::triggered, &controller,
                     &ViewController::removeAllStyles);
    return menu;
}

QMenu* FormatMenus::justification(QWidget* parent, ViewController& controller)
{
    auto* menu = new QMenu(QMenu::tr("Text Justification"), parent);
    menu->setObjectName(QStringLiteral("justificationSubMenu"));
    addCommands(menu, controller, {"Justify Left", "Justify Center", "Justify Right", "Justify Full"});
    const QList<QAction*> actions = menu->actions();
    for (QAction* action : actions)
        action->setCheckable(true);
    menu->addSeparator();
    QObject::connect(addItem(menu, "Remove Justification"), &QAction::triggered, &controller,
                     &ViewController::removeJustfication);
    return menu;
}

} // namespace luma
