// SPDX-License-Identifier: GPL-3.0-or-later
#include "site/panesplitter.h"
#include "tests/support/registry.h"
#include "tests/support/rows.h"

#include <QTest>

using namespace luma;

class tst_panesplitter final : public QObject
{
    Q_OBJECT

    static void dragTo(PaneSplitter& splitter, int y)
    {
        QSplitterHandle* handle = splitter.handle(1);
        QTest::mousePress(handle, Qt::LeftButton, {}, QPoint(50, 1));
        QTest::mouseMove(handle, handle->mapFrom(&splitter, QPoint(50, (y + handle->y()) / 2)));
        QTest::mouseMove(handle, handle->mapFrom(&splitter, QPoint(50, y)));
        QTest::mouseRelease(handle, Qt::LeftButton, {}, handle->mapFrom(&splitter, QPoint(50, y)));
    }

private slots:
    void resize_keepsTheShares_data()
    {
        const test::Rows<int, int, int, int, int> row("upper", "lower", "height", "expectedUpper",
                                                      "expectedLower");
        row("taller", 300, 600, 1205, 400, 800);
        row("upper at its minimum", 200, 600, 605, 181, 419);
        row("lower at its minimum", 600, 200, 605, 396, 204);
        row("too small for both", 300, 300, 305, 181, 119);
        row("too small for one", 300, 300, 100, 95, 0);
    }
    void resize_keepsTheShares()
    {
        QFETCH(int, upper);
        QFETCH(int, lower);
        QFETCH(int, height);
        const panesplit::Heights heights = panesplit::resized({upper, lower}, height, 5);
        QTEST(heights.upper, "expectedUpper");
        QTEST(heights.lower, "expectedLower");
    }

    void divider_staysInItsLimits()
    {
        PaneSplitter splitter;
        splitter.addWidget(new QWidget);
        splitter.addWidget(new QWidget);
        splitter.resize(400, 800);
        splitter.show();
        QVERIFY(QTest::qWaitForWindowExposed(&splitter));
        splitter.setSizes({400, 400 - splitter.handleWidth()});
        dragTo(splitter, 10);
        QCOMPARE(splitter.sizes()[0], 181);
        dragTo(splitter, 790);
        QCOMPARE(splitter.sizes()[1], 204);

        const int room = 800 - splitter.handleWidth();
        splitter.resize(400, 900);
        QTRY_COMPARE(splitter.height(), 900);
        QCOMPARE(splitter.sizes()[1],
                 900 - splitter.handleWidth() - qRound((room + 100) * (room - 204.0) / room));
        splitter.resize(400, 300);
        QTRY_COMPARE(splitter.height(), 300);
        QCOMPARE(splitter.sizes()[0], 181);

        splitter.resize(700, 800);
        splitter.arrange(Qt::Horizontal);
        QTRY_COMPARE(splitter.widget(1)->height(), 800);
        QVERIFY(qAbs(splitter.sizes()[0] - splitter.sizes()[1]) <= 1);
        splitter.setSizes({200, 500 - splitter.handleWidth()});
        splitter.resize(1400, 800);
        QTRY_COMPARE(splitter.width(), 1400);
        QVERIFY(qAbs(splitter.sizes()[0] - 400) < 10);
    }
};

LUMA_TEST(tst_panesplitter)
#include "tst_panesplitter.moc"
