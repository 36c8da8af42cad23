// SPDX-License-Identifier: GPL-3.0-or-later
#include "browser/ticktable.h"
#include "tests/browser/panefixture.h"
#include "tests/support/registry.h"

#include <QAbstractItemModelTester>
#include <QAction>
#include <QCheckBox>
#include <QMessageBox>
#include <QPushButton>
#include <QTableView>
#include <QTest>

namespace fs = std::filesystem;
using namespace luma;
using luma::test::PaneFixture;

class tst_unlinkeditemspanel final : public QObject
{
    Q_OBJECT

    static QStringList rows(const PaneFixture& site)
    {
        const auto* view = site.find<QTableView>("unlinkedItemsTableView");
        QStringList rows;
        for (int row = 0; row < view->model()->rowCount(); ++row) {
            const QModelIndex index = view->model()->index(row, 0);
            rows +=
                index.data().toString() + (index.data(Qt::CheckStateRole).toInt() == Qt::Checked ? "+" : "");
        }
        return rows;
    }
    static bool isDone(const PaneFixture& site)
    {
        return site.find<QPushButton>("unlinkedItemsRestartButton")->isEnabled();
    }

private slots:
    void files_areKeptDeletedAndPutBack()
    {
        PaneFixture site;
        site.folder.put("images/large.bin", std::string(5000, 'x'));
        site.pane->doConnect();
        QTRY_VERIFY(site.pane->rootNode());
        site.pane->startFindUnlinkedItems();
        QTRY_VERIFY(isDone(site));
        QCOMPARE(rows(site),
                 (QStringList{"css/main.css+", "css/print.css+", "images/large.bin+", "images/logo.png+"}));
        auto* kept = site.find<QCheckBox>("unlinkedItemsKeptCheckBox");
        QVERIFY(!kept->isVisible());
        auto* view = site.find<QTableView>("unlinkedItemsTableView");
        view->selectRow(1);
        site.find<QAction>("keepItemAction")->trigger();
        QCOMPARE(rows(site), (QStringList{"css/main.css+", "images/large.bin+", "images/logo.png+"}));
        QCOMPARE(site.choices.keptItems, std::vector<std::string>{"css/print.css"});
        test::saveScreenshots(*site.find<QWidget>("unlinkedItemsPanel"), "unlinked-kept");

        site.find<QPushButton>("unlinkedItemsDeleteButton")->click();
        auto* question = site.find<QMessageBox>("deleteUnlinkedItemsAlert");
        const QString size = QLocale().formattedDataSize(5000);
        QCOMPARE(question->informativeText(),
                 QStringLiteral("Are you sure you want to move these 3 files (%1) to the trash?").arg(size));
        test::saveScreenshots(*question, "unlinked-delete");
        question->buttons().first()->click();
        QTRY_COMPARE(rows(site), QStringList());
        QVERIFY(!fs::exists(site.at("images/large.bin")) && fs::exists(site.at("css/print.css")));
        QTRY_VERIFY(site.find<QPushButton>("unlinkedItemsPutBackButton")->isVisible());
        site.find<QPushButton>("unlinkedItemsPutBackButton")->click();
        QTRY_VERIFY(rows(site).size() == 3 && isDone(site));
        QCOMPARE(site.folder.bytesOf("images/large.bin").size(), 5000U);
        QVERIFY(!site.find<QPushButton>("unlinkedItemsPutBackButton")->isVisible());

        QVERIFY(kept->isVisible());
        kept->click();
        QCOMPARE(rows(site).last(), "css/print.css (kept)");
        view->selectRow(3);
        QVERIFY(site.find<QAction>("keepItemAction")->text().startsWith("No Longer"));
        site.find<QAction>("keepItemAction")->trigger();
        QVERIFY(rows(site).contains("css/print.css+"));
        QVERIFY(site.choices.keptItems.empty() && !kept->isVisible());
    }

    void addedRows_passTheFilter()
    {
        struct Row
        {
            bool select = true;
            QString name;
        };
        static constexpr TickColumn<Row> column = {"Name", [](const Row& row) { return row.name; }};
        TickTable<Row> table({&column, 1});
        const QAbstractItemModelTester tester(&table, QAbstractItemModelTester::FailureReportingMode::QtTest);
        table.setFilter([](const Row& row) { return row.name.startsWith(u'a'); });
        table.append({{true, "a1"}, {true, "b1"}, {false, "a2"}});
        table.append({{true, "b2"}});
        QCOMPARE(table.rowCount(), 2);
        QCOMPARE(table.index(1, 0).data().toString(), "a2");
        table.setFilter({});
        QCOMPARE(table.rowCount(), 4);
    }

    void sortedRows_equalOnesStayInOrder_data()
    {
        QTest::addColumn<QList<qint64>>("keys");
        QTest::newRow("near") << QList<qint64>{3, 1, 3, 2};
        QTest::newRow("negative") << QList<qint64>{-1, -70000, -1, -60000};
        constexpr auto most = std::numeric_limits<qint64>::max();
        QTest::newRow("far apart") << QList<qint64>{most, -most - 1, most, 0};
    }
    void sortedRows_equalOnesStayInOrder()
    {
        struct Row
        {
            bool select = true;
            qint64 key = 0;
        };
        static constexpr TickColumn<Row> column = {
            .title = "Key",
            .text = [](const Row& row) { return QString::number(row.key); },
            .sortKey = [](const Row& row) { return std::int64_t{row.key}; }};
        QFETCH(const QList<qint64>, keys);
        TickTable<Row> table({&column, 1});
        const QAbstractItemModelTester tester(&table, QAbstractItemModelTester::FailureReportingMode::QtTest);
        std::vector<Row> rows;
        for (const qint64 key : keys)
            rows.push_back({true, key});
        table.setRows(rows);
        const auto shown = [&] {
            QList<std::ptrdiff_t> numbers;
            for (int row = 0; row < table.rowCount(); ++row)
                numbers.append(&table.shownRow(row) - table.rows().data());
            return numbers;
        };
        const QPersistentModelIndex second = table.index(1, 0);
        table.sort(0, Qt::AscendingOrder);
        QCOMPARE(shown(), (QList<std::ptrdiff_t>{1, 3, 0, 2}));
        QCOMPARE(second.row(), 0);
        table.sort(0, Qt::DescendingOrder);
        QCOMPARE(shown(), (QList<std::ptrdiff_t>{0, 2, 3, 1}));
        table.setFilter([&](const Row& row) { return row.key != keys[3]; });
        QCOMPARE(shown(), (QList<std::ptrdiff_t>{0, 2, 1}));
        table.sort(-1, Qt::AscendingOrder);
        QCOMPARE(shown(), (QList<std::ptrdiff_t>{0, 1, 2}));
    }

    void change_isShown_ticksStay()
    {
        PaneFixture site;
        site.pane->doConnect();
        QTRY_VERIFY(site.pane->rootNode());
        site.pane->startFindUnlinkedItems();
        QTRY_VERIFY(isDone(site));
        QCOMPARE(rows(site), (QStringList{"css/main.css+", "css/print.css+", "images/logo.png+"}));
        QAbstractItemModel* model = site.find<QTableView>("unlinkedItemsTableView")->model();
        model->setData(model->index(1, 0), Qt::Unchecked, Qt::CheckStateRole);
        // Repeated, for the watcher may not be running yet.
        int attempt = 0;
        QTRY_VERIFY((site.folder.put("lost.bin", std::to_string(++attempt)), rows(site).size() == 4));
        QCOMPARE(rows(site),
                 (QStringList{"css/main.css+", "css/print.css", "images/logo.png+", "lost.bin+"}));
        site.folder.put("new.html", "<a href=lost.bin><img src=css/main.css>");
        QTRY_COMPARE(rows(site), (QStringList{"css/print.css", "images/logo.png+", "new.html+"}));
    }
};

LUMA_TEST(tst_unlinkeditemspanel)
#include "tst_unlinkeditemspanel.moc"
