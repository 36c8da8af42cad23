// SPDX-License-Identifier: GPL-3.0-or-later
#include "site/foldednames.h"
#include "site/syncpanel.h"
#include "tests/site/twofolders.h"
#include "tests/support/registry.h"
#include "tests/support/screenshot.h"

#include <QAbstractItemModelTester>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QProgressBar>
#include <QPushButton>
#include <QScrollBar>
#include <QTableView>
#include <QTest>

using namespace luma;
using luma::test::TwoFolders;

namespace {

// The panel in a window, with two real folders; rsync, if used, prints `rsyncListing`.
struct Fixture
{
    explicit Fixture(std::string rsyncListing = {})
        : record({{"sourceDict", QVariantMap{{"path", QString::fromStdString(folders.sending().string())}}},
                  {"destinationDict", QVariantMap{{"user", "me"}, {"server", "host"}, {"path", "/b"}}}}),
          engine(
              record,
              [rsyncListing](const std::vector<std::string>&, std::string_view, const StillWanted&) {
                  return ProgramResult{0, rsyncListing, {}};
              },
              [this, rsyncListing] {
                  return SyncSides{!rsyncListing.empty(), folders.sending(), folders.receiving()};
              }),
          panel(new SyncPanel(engine, &window))
    {
        window.resize(900, 700);
        window.show();
    }

    template <class T>
    T& find(const char* name)
    {
        return *panel->findChild<T*>(QLatin1String(name));
    }

    void click(const char* button) { QTest::mouseClick(&find<QPushButton>(button), Qt::LeftButton); }
    [[nodiscard]] QString title() { return find<QLabel>("syncPanelTitle").text(); }
    [[nodiscard]] int rowCount() { return find<QTableView>("syncTableView").model()->rowCount(); }

    TwoFolders folders;
    SiteRecord record;
    SyncEngine engine;
    QWidget window;
    SyncPanel* panel;
};

} // namespace

class tst_syncpanel final : public QObject
{
    Q_OBJECT

private slots:
    void publishesTickedFiles_rememberingTheOthers()
    {
        Fixture f;
        f.folders.putAll("sending", "about us.html|index.html|css/main.css|news/2026/\u00fcbersicht.html");
        f.panel->sync(Direction::Upload);
        QVERIFY(f.panel->isVisible());
        QCOMPARE(f.panel->windowModality(), Qt::WindowModal);
        QTRY_COMPARE(f.rowCount(), 4);
        QVERIFY(f.find<QPushButton>("syncButton").isEnabled());
        QVERIFY(!f.find<QProgressBar>("syncProgressIndicator").isVisible());
        QCOMPARE(f.find<QCheckBox>("allOnOffCheckBox").checkState(), Qt::Checked);
        auto& table = f.find<QTableView>("syncTableView");
        table.setCurrentIndex(table.model()->index(0, 0));
        QTest::keyClick(&table, Qt::Key_Space);
        QCOMPARE(f.find<QCheckBox>("allOnOffCheckBox").checkState(), Qt::PartiallyChecked);
        QCOMPARE(f.find<QLabel>("syncCount").text(), "3 of 4 selected, 12 bytes to move");
        test::saveScreenshots(*f.panel, "sync-rows");
        f.click("syncButton");
        QTRY_COMPARE(f.rowCount(), 1);
        QCOMPARE(f.folders.listing("receiving"),
                 std::string("css/main.css\nindex.html\nnews/2026/\u00fcbersicht.html\n"));
        QCOMPARE(f.record.untickedNames(Direction::Upload), QStringList{"about us.html"});
        f.click("cancelButton");
        QVERIFY(!f.panel->isVisible());
        f.panel->sync(Direction::Upload);
        QTRY_COMPARE(f.rowCount(), 1);
        QVERIFY(!f.find<QCheckBox>("allOnOffCheckBox").isChecked());
        f.find<QCheckBox>("allOnOffCheckBox").click();
        f.click("syncButton");
        QTRY_COMPARE(f.title(), "No more files to be moved.");
        test::saveScreenshots(*f.panel, "sync-done");
    }

    void nothingChanged_andTheOtherDirection()
    {
        Fixture f;
        f.folders.put("receiving/index.html");
        f.panel->sync(Direction::Upload);
        QTRY_COMPARE(f.title(), "Nothing changed from Source to Destination");
        QVERIFY(!f.find<QPushButton>("syncButton").isEnabled());
        test::saveScreenshots(*f.panel, "sync-empty");
        auto& direction = f.find<QComboBox>("uploadDownloadPopupButton");
        QTest::keyClick(&direction, Qt::Key_Down);
        QTRY_COMPARE(f.rowCount(), 1);
        QCOMPARE(direction.currentText(), "Download");
        QCOMPARE(f.title(), "Move these new/modified files from Destination to Source?");
        QTest::keyClick(f.panel, Qt::Key_Escape);
        QVERIFY(!f.panel->isVisible());
    }

    void whatFailedStaysAndIsNamed()
    {
        Fixture f;
        f.folders.putAll("sending", "a.html|b.html");
        f.panel->sync(Direction::Upload);
        QTRY_COMPARE(f.rowCount(), 2);
        f.folders.put("receiving/a.html/in the way");
        f.click("syncButton");
        QTRY_COMPARE(f.rowCount(), 1);
        QCOMPARE(f.find<QLabel>("syncMessage").text(), "a.html: a folder stands where the file should be");
        test::saveScreenshots(*f.panel, "sync-failed");
    }

    void guardsAskFirst_data()
    {
        QTest::addColumn<QString>("sending");
        QTest::addColumn<QString>("receiving");
        QTest::addColumn<QString>("question");
        QTest::newRow("empty source") << ""
                                      << "a|b"
                                      << "no files at all";
        QTest::newRow("many deletions") << "a|b"
                                        << "a|b|c|d"
                                        << "More than a third";
        QTest::newRow("nothing in common") << "a|b"
                                           << "c|d|e|f|g|h|i|j"
                                           << "no file in common";
        QTest::newRow("few deletions") << "a|b|c"
                                       << "a|b|c|d"
                                       << "";
        QTest::newRow("empty destination") << "a|b|c"
                                           << ""
                                           << "";
    }
    void guardsAskFirst()
    {
        QFETCH(QString, sending);
        QFETCH(QString, receiving);
        QFETCH(QString, question);
        Fixture f;
        f.folders.putAll("sending", sending.toStdString());
        f.folders.putAll("receiving", receiving.toStdString());
        const std::string before = f.folders.listing("receiving");
        f.find<QCheckBox>("deleteOptionCheckBox").setChecked(true);
        f.panel->sync(Direction::Upload);
        QTRY_VERIFY(f.find<QPushButton>("syncButton").isEnabled());
        f.click("syncButton");
        if (!question.isEmpty()) {
            auto* box = f.panel->findChild<QMessageBox*>("syncQuestion");
            QVERIFY(box && box->text().contains(question));
            test::saveScreenshots(*box, "sync-question");
            QTest::keyClick(box, Qt::Key_Return);
            QTRY_VERIFY(!f.panel->findChild<QMessageBox*>());
            QCOMPARE(f.folders.listing("receiving"), before);
            f.click("syncButton");
            box = f.panel->findChild<QMessageBox*>("syncQuestion");
            for (QAbstractButton* const button : box->buttons()) {
                if (button->text() == "Move anyway")
                    button->click();
            }
        }
        QTRY_COMPARE(f.title(), "No more files to be moved.");
        QCOMPARE(f.folders.listing("receiving"), f.folders.listing("sending"));
    }

    void aRowsMenuIgnoresIt_andShowsIt()
    {
        Fixture f;
        f.folders.putAll("sending", "a.html|docs/b.html");
        f.panel->sync(Direction::Upload);
        QTRY_COMPARE(f.rowCount(), 2);
        auto& table = f.find<QTableView>("syncTableView");
        const auto choose = [&](const char* title) {
            emit table.customContextMenuRequested(table.visualRect(table.model()->index(0, 0)).center());
            auto* const menu = f.panel->findChild<QMenu*>();
            test::saveScreenshots(*menu, "sync-menu");
            for (QAction* const action : menu->actions()) {
                if (action->text() == title)
                    action->trigger();
            }
            delete menu;
        };
        choose("Never publish this");
        QTRY_COMPARE(f.rowCount(), 1);
        QCOMPARE(f.record.ignoredNames(), "/a.html\n");
        QString shown;
        connect(f.panel, &SyncPanel::showRequested, this, [&shown](const std::string& path, bool isSent) {
            shown = QString::fromStdString(path) + (isSent ? " sent" : " received");
        });
        choose("Show in pane");
        QCOMPARE(shown, "docs/b.html sent");
        QVERIFY(!f.panel->isVisible());
    }

    void selectedItemsAlone_areListedTickedAndNotRemembered()
    {
        Fixture f;
        f.folders.putAll("sending", "a.html|docs/b.html|docs/sub/c.html|docs2/d.html");
        f.record.setUntickedNames(Direction::Upload, {"docs/b.html", "a.html"});
        f.panel->sync(Direction::Upload, {"docs", "docs2/d.html"});
        QTRY_COMPARE(f.rowCount(), 3);
        QCOMPARE(f.find<QLabel>("syncCount").text(),
                 "3 of 3 selected, only the selected items, 12 bytes to move");
        auto& table = f.find<QTableView>("syncTableView");
        table.setCurrentIndex(table.model()->index(2, 0));
        QTest::keyClick(&table, Qt::Key_Space);
        f.click("syncButton");
        QTRY_COMPARE(f.rowCount(), 1);
        QCOMPARE(f.folders.listing("receiving"), std::string("docs/b.html\ndocs/sub/c.html\n"));
        f.click("cancelButton");
        QCOMPARE(f.record.untickedNames(Direction::Upload), (QStringList{"docs/b.html", "a.html"}));
        f.panel->sync(Direction::Upload);
        QTRY_COMPARE(f.rowCount(), 2);
        QCOMPARE(f.engine.table().tickedCount(), std::size_t{1});
    }

    void filterSortAndMenuChooseTheRows()
    {
        Fixture f;
        f.folders.put("sending/docs/b.html", "newer and longer", 10);
        f.folders.put("receiving/docs/b.html", "old", 20);
        f.folders.putAll("sending", "a.html|docs/c.html");
        f.folders.putAll("receiving", "gone.html");
        f.find<QCheckBox>("deleteOptionCheckBox").setChecked(true);
        f.panel->sync(Direction::Upload);
        QTRY_COMPARE(f.rowCount(), 4);
        test::saveScreenshots(*f.panel, "sync-kinds");
        auto& table = f.find<QTableView>("syncTableView");
        const auto shown = [&] {
            QStringList texts;
            for (int row = 0; row < f.rowCount(); ++row)
                texts += table.model()->index(row, SyncTableModel::NameColumn).data().toString();
            return texts.join(u' ');
        };
        const QAbstractItemModelTester tester(table.model());
        table.selectRow(0);
        table.sortByColumn(SyncTableModel::SentSizeColumn, Qt::DescendingOrder);
        QCOMPARE(shown(), "docs/b.html a.html docs/c.html deleting gone.html");
        QCOMPARE(table.selectionModel()->selectedRows().value(0).row(), 1);
        f.find<QLineEdit>("syncNameFilter").setText("DOCS/");
        QCOMPARE(shown(), "docs/b.html docs/c.html");
        f.find<QCheckBox>("allOnOffCheckBox").click();
        QCOMPARE(f.find<QLabel>("syncCount").text(), "2 of 4 selected, 4 bytes to move, 1 to delete");
        f.find<QLineEdit>("syncNameFilter").clear();
        auto& kinds = f.find<QComboBox>("syncKindFilter");
        kinds.setCurrentText("New");
        QCOMPARE(shown(), "a.html docs/c.html");
        kinds.setCurrentIndex(0);
        emit table.customContextMenuRequested(table.visualRect(table.model()->index(0, 0)).center());
        const auto actions = f.panel->findChild<QMenu*>()->actions();
        const auto found = std::find_if(actions.begin(), actions.end(), [](const QAction* action) {
            return action->text() == "Tick all in this folder";
        });
        QVERIFY(found != actions.end());
        (*found)->trigger();
        QCOMPARE(f.engine.table().tickedCount(), std::size_t{4});
        delete f.panel->findChild<QMenu*>();
    }

    void filter_findsNamesInAnyLetterCase()
    {
        FoldedNames names;
        for (const char* const name : {"docs/Ü.html", "DOCS/a.html", "", "ab", "ba", "docs/ü/b", "aab"})
            names.add(name);
        const auto holding = [&names](const char* text) {
            QString rows;
            for (const bool holds : names.holding(QString::fromUtf8(text)))
                rows += holds ? u'x' : u'-';
            return rows;
        };
        QCOMPARE(holding(""), "xxxxxxx");
        QCOMPARE(holding("docs/"), "xx---x-");
        QCOMPARE(holding("DOCS/ü"), "x----x-");
        QCOMPARE(holding("AB"), "---x--x");
        QCOMPARE(holding("b"), "---xxxx");
        QCOMPARE(holding("lb"), "-------");
        QCOMPARE(FoldedNames().holding("a").size(), std::size_t{0});
    }

    // Other rows come while the filter stays.
    void filter_meetsNewRows()
    {
        Fixture f;
        f.find<QLineEdit>("syncNameFilter").setText("A.H");
        f.folders.putAll("sending", "a.html|b.html");
        f.panel->sync(Direction::Upload);
        QTRY_COMPARE(f.engine.state(), SyncEngine::State::Ready);
        QCOMPARE(f.rowCount(), 1);
        f.folders.putAll("sending", "A.html|c.html|0a.htm");
        f.panel->sync(Direction::Upload);
        QTRY_COMPARE(f.engine.table().allCount(), std::size_t{5});
        QTRY_COMPARE(f.rowCount(), 3);
    }

    void twentyThousandRows()
    {
        std::string listing = "|cd+++++++++ 4096 2026/11/22-02:30:05 .///\n";
        for (int i = 0; i < 20000; ++i)
            listing +=
                "|>f+++++++++ 512 2026/11/22-02:30:05 archive/2026/page-" + std::to_string(i) + ".html//\n";
        Fixture f(listing);
        f.panel->sync(Direction::Download);
        QTRY_COMPARE(f.rowCount(), 20000);
        auto& table = f.find<QTableView>("syncTableView");
        auto& all = f.find<QCheckBox>("allOnOffCheckBox");
        all.click();
        QCOMPARE(f.engine.table().tickedCount(), std::size_t{0});
        all.click();
        QCOMPARE(f.engine.table().tickedCount(), std::size_t{20000});
        table.verticalScrollBar()->setValue(table.verticalScrollBar()->maximum() / 2);
        test::saveScreenshots(*f.panel, "sync-20000");
        f.find<QCheckBox>("deleteOptionCheckBox").click();
        QCOMPARE(f.engine.state(), SyncEngine::State::Comparing);
        QTRY_COMPARE(f.rowCount(), 20000);
    }
};

LUMA_TEST(tst_syncpanel)
#include "tst_syncpanel.moc"
