// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/formatbar.h"

#include "desktop/icons.h"
#include "ui_HTMLDocument.h"
#include "web/viewcontroller.h"

#include <QToolButton>

#include <utility>

namespace luma {

namespace {

void setIcons(Ui::HTMLDocument& ui)
{
    const std::pair<QAction*, const char*> icons[] = {
        {ui.boldAction, "bold"},     {ui.italicAction, "italic"},     {ui.underlineAction, "underline"},
        {ui.makeLinkAction, "link"}, {ui.insertImageAction, "image"}, {ui.showSourceAction, "script"},
        {ui.reloadAction, "reload"}};
    for (const auto& [action, icon] : icons)
        action->setIcon(icons::symbol(QString::fromLatin1(icon)));
}

/// A menu as a button of the bar, its marks brought up to date before it opens.
void addMenu(QToolBar& bar, QMenu* menu, const char* icon, const ViewController& rendering)
{
    menu->setIcon(icons::symbol(QString::fromLatin1(icon)));
    QObject::connect(menu, &QMenu::aboutToShow, rendering.webView(), &MyWebView::updateMenuMarks);
    auto* const button = new QToolButton(&bar);
    button->setObjectName(menu->objectName() + QStringLiteral("Button"));
    button->setAccessibleName(menu->title());
    button->setToolTip(menu->title());
    button->setIcon(menu->icon());
    button->setPopupMode(QToolButton::InstantPopup);
    button->setMenu(menu);
    bar.addWidget(button);
}

void connectCommands(Ui::HTMLDocument& ui, ViewController& rendering)
{
    for (QAction* action : {ui.boldAction, ui.italicAction, ui.underlineAction})
        QObject::connect(action, &QAction::triggered, &rendering,
                         [&rendering, action] { rendering.formatText(action); });
    QObject::connect(ui.makeLinkAction, &QAction::triggered, &rendering, &ViewController::makeLink);
    QObject::connect(ui.editLinkAction, &QAction::triggered, &rendering, &ViewController::editLink);
    QObject::connect(ui.removeLinkAction, &QAction::triggered, &rendering, &ViewController::removeLink);
    QObject::connect(ui.insertImageAction, &QAction::triggered, &rendering, &ViewController::insertImage);
}

} // namespace

void fillFormatBar(Ui::HTMLDocument& ui, ViewController& rendering)
{
    setIcons(ui);
    const QList<QAction*> styles = {ui.boldAction, ui.italicAction, ui.underlineAction};
    QToolBar& bar = *ui.formatBar;
    bar.addActions(styles);
    addMenu(bar, rendering.fontSubMenu(), "text-style", rendering);
    addMenu(bar, rendering.justificationSubMenu(), "justify", rendering);
    bar.addSeparator();
    bar.addActions({ui.makeLinkAction, ui.insertImageAction});
    bar.addSeparator();
    bar.addActions({ui.showSourceAction, ui.reloadAction});
    ui.formatMenu->addMenu(rendering.fontSubMenu());
    ui.formatMenu->addMenu(rendering.justificationSubMenu());
    ui.formatMenu->addSeparator();
    ui.formatMenu->addActions(styles);
    ui.formatMenu->addSeparator();
    ui.formatMenu->addActions(
        {ui.makeLinkAction, ui.editLinkAction, ui.removeLinkAction, ui.insertImageAction});
    connectCommands(ui, rendering);
}

} // namespace luma
