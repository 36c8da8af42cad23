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
    void resize_givesTheChangeToTheUpperPane_data()
    {
        const test::Rows<int, int, int, int> row("lower", "height", "expectedUpper", "expectedLower");
        row("taller", 300, 1005, 700, 300);
        row("upper reaches its minimum exactly", 300, 486, 181, 300);
        row("lower gives way", 300, 485, 181, 299);
        row("too small for both", 300, 100, 95, 0);
    }
    void resize_givesTheChangeToTheUpperPane()
    {
        QFETCH(int, lower);
        QFETCH(int, height);
        const panesplit::Heights heights = panesplit::resized(lower, height, 5);
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

        splitter.resize(400, 900);
        QTRY_COMPARE(splitter.height(), 900);
        QCOMPARE(splitter.sizes()[1], 204);
        splitter.resize(400, 300);
        QTRY_COMPARE(splitter.height(), 300);
        QCOMPARE(splitter.sizes()[0], 181);
    }
};

LUMA_TEST(tst_panesplitter)
#include "tst_panesplitter.moc"
