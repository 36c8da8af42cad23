// SPDX-License-Identifier: GPL-3.0-or-later
#include "desktop/focuslook.h"
#include "tests/support/registry.h"

#include <QLineEdit>
#include <QStyleOptionViewItem>
#include <QTest>
#include <QTreeWidget>

using namespace luma;

class tst_focuslook final : public QObject
{
    Q_OBJECT

private slots:
    void selection_isPaleOutsideTheViewWithTheFocus()
    {
        QWidget window;
        QTreeWidget view(&window);
        QLineEdit field(&window);
        QLineEdit inside(view.viewport());
        window.show();
        window.activateWindow();
        QTRY_VERIFY2(window.isActiveWindow(), "the window is active");
        const auto isPale = [&view](QStyle::State state) {
            QStyleOptionViewItem option;
            option.widget = &view;
            option.state = QStyle::State_Active | state;
            const bool isChanged = showFocus(option);
            return isChanged &&
                   option.palette.color(QPalette::Highlight) != view.palette().color(QPalette::Highlight) &&
                   option.palette.color(QPalette::HighlightedText) == view.palette().color(QPalette::Text);
        };
        for (QWidget* const focused :
             {static_cast<QWidget*>(&field), static_cast<QWidget*>(&view), static_cast<QWidget*>(&inside)}) {
            focused->setFocus();
            QTRY_VERIFY2(focused->hasFocus(), "the widget has the focus");
            QCOMPARE(isPale(QStyle::State_Selected), focused == &field);
            QVERIFY(!isPale({}));
        }
    }
};

LUMA_TEST(tst_focuslook)
#include "tst_focuslook.moc"
