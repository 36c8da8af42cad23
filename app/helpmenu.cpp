// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/helpmenu.h"

#include "app/manualwindow.h"

#include <QApplication>
#include <QCoreApplication>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>

namespace luma {

namespace {

struct HelpMenu
{
    Q_DECLARE_TR_FUNCTIONS(luma::HelpMenu)
};

void showAbout(QWidget* window)
{
    auto* const box = new QMessageBox(window);
    box->setObjectName(QStringLiteral("aboutSheet"));
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setWindowTitle(HelpMenu::tr("About LUMA"));
    box->setIconPixmap(QApplication::windowIcon().pixmap(64));
    box->setTextFormat(Qt::PlainText);
    box->setText(HelpMenu::tr("LUMA %1").arg(QCoreApplication::applicationVersion()));
    box->setInformativeText(HelpMenu::tr(
        "Manages web sites kept as folders of pages: publishes changes and keeps links correct."));
    box->setStandardButtons(QMessageBox::Ok);
    box->open();
}

template <class Does>
QAction* add(QMenu& menu, const char* name, const QString& title, QMainWindow& window, Does does)
{
    auto* const action = new QAction(title, &menu);
    action->setObjectName(QLatin1StringView(name));
    QObject::connect(action, &QAction::triggered, &window, does);
    return action;
}

} // namespace

void addHelpMenu(QMainWindow& window)
{
    QMenu* const menu = window.menuBar()->addMenu(HelpMenu::tr("&Help"));
    menu->setObjectName(QStringLiteral("helpMenu"));
    fillHelpMenu(*menu, window);
}

void fillHelpMenu(QMenu& menu, QMainWindow& window)
{
    QAction* const manual = add(menu, "manualAction", HelpMenu::tr("LUMA &Manual"), window,
                                [] { ManualWindow::showChapter(QStringLiteral("index")); });
    manual->setShortcut(QKeySequence::HelpContents);
    QAction* const keys = add(menu, "keysAction", HelpMenu::tr("&Keys"), window,
                              [] { ManualWindow::showChapter(QStringLiteral("keys")); });
    QAction* const own = menu.actions().value(0);
    menu.insertActions(own, {manual, keys});
    menu.insertSeparator(own);
    if (own)
        menu.addSeparator();
    QAction* const about =
        add(menu, "aboutAction", HelpMenu::tr("&About LUMA"), window, [&window] { showAbout(&window); });
    about->setMenuRole(QAction::AboutRole);
    QAction* const aboutQt =
        add(menu, "aboutQtAction", HelpMenu::tr("About &Qt"), window, &QApplication::aboutQt);
    aboutQt->setMenuRole(QAction::AboutQtRole);
    menu.addActions({about, aboutQt});
}

} // namespace luma
