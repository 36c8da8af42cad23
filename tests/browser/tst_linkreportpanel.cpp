// SPDX-License-Identifier: GPL-3.0-or-later
#include "browser/browser.h"
#include "browser/linkreportpanel.h"
#include "browser/linkreportview.h"
#include "browser/logview.h"
#include "tests/browser/panefixture.h"
#include "tests/support/registry.h"
#include "tests/support/tabwalk.h"

#include <QAbstractItemModelTester>
#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QFileDialog>
#include <QHeaderView>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTabWidget>
#include <QTest>
#include <QThreadPool>

namespace fs = std::filesystem;
using namespace luma;
using luma::test::PaneFixture;

/// The table of the link reports on the site of a real pane.
class tst_linkreportpanel final : public QObject
{
    Q_OBJECT

    std::unique_ptr<PaneFixture> m_site;

    LinkReportPanel& panel() const { return *m_site->find<LinkReportPanel>("linkReportPanel"); }
    LinkReportView& view() const { return *m_site->find<LinkReportView>("linkReportView"); }
    bool isDone() const { return m_site->find<QPushButton>("linkReportRestartButton")->isEnabled(); }
    QString note() const { return m_site->text("linkReportNote"); }
    void select(const Browser::Path& path) const { m_site->pane->browser().setPath(path); }

    // The rows of the table, their columns in the order shown.
    QStringList rows() const
    {
        QStringList rows;
        QModelIndex index = view().model()->index(0, 0);
        for (; index.isValid(); index = view().indexBelow(index)) {
            QStringList cells;
            for (int column = 0; column < view().header()->count(); ++column) {
                const int section = view().header()->logicalIndex(column);
                if (!view().isColumnHidden(section))
                    cells += index.siblingAtColumn(section).data().toString();
            }
            rows += cells.join(u'|');
        }
        return rows;
    }
    void findMissing() const
    {
        m_site->pane->startFindMissingLinks();
        QTRY_VERIFY(isDone());
        QVERIFY(QTest::qWaitForWindowExposed(&panel()));
    }

private slots:
    void init()
    {
        m_site = std::make_unique<PaneFixture>();
        m_site->folder.put("index.html",
                           "<title>x</title>\n<a href=about.html>a</a> <img src=images/Logo.png>\n"
                           "<a href='css/'>c</a><a href=#top2>t</a>");
        m_site->folder.put("news/new.html", "\n\n <a href=../about.html>a</a><a href=../index.html>i</a>");
        m_site->pane->doConnect();
        QTRY_VERIFY(m_site->pane->rootNode());
    }
    void cleanup()
    {
        m_site.reset();
        QTRY_COMPARE(QThreadPool::globalInstance()->activeThreadCount(), 0);
    }

    void missingLinks_areATable()
    {
        const QAbstractItemModelTester tester(view().model());
        findMissing();
        QCOMPARE(rows(), (QStringList{"index.html|2|9|href|about.html|no such file|",
                                      "index.html|2|35|src|images/Logo.png|other letter case|images/logo.png",
                                      "index.html|3|10|href|css/|folder without index page|",
                                      "index.html|3|29|href|#top2|no such place in the page|",
                                      "news/new.html|3|10|href|../about.html|no such file|"}));
        QCOMPARE(note(), "5 missing links in 2 pages");
        test::saveScreenshots(panel(), "missing-table");
        auto* grouping = m_site->find<QComboBox>("linkReportGrouping");
        grouping->setCurrentIndex(1);
        QCOMPARE(rows().mid(4),
                 (QStringList{"#top2|3|29|href|no such place in the page|", "news/new.html  (1)|||||",
                              "../about.html|3|10|href|no such file|"}));
        test::saveScreenshots(panel(), "missing-by-page");
        grouping->setCurrentIndex(2);
        QCOMPARE(rows().mid(0, 3),
                 (QStringList{"about.html  (2)||||||", "about.html|index.html|2|9|href|no such file|",
                              "../about.html|news/new.html|3|10|href|no such file|"}));
        view().setCurrentIndex(view().model()->index(0, 0));
        QTest::keyClick(&view(), Qt::Key_Left);
        test::saveScreenshots(panel(), "missing-by-target");
        m_site->find<QLineEdit>("linkReportFilter")->setText("LOGO");
        QTRY_COMPARE(rows().size(), 2);
        QCOMPARE(note(), "5 missing links in 2 pages; 1 row shown");
        m_site->find<QLineEdit>("linkReportFilter")->setText("nowhere");
        QTRY_VERIFY(m_site->find<QLabel>("linkReportPlaceholder")->isVisible());
        QCOMPARE(m_site->text("linkReportPlaceholder"), "No row matches the filter.");
        test::saveScreenshots(panel(), "missing-filtered");
    }

    void aRow_opensItsPageAndIsCopied()
    {
        QSignalSpy opened(m_site->pane, &BrowserController::placeRequested);
        findMissing();
        const QModelIndex last = view().model()->index(4, 0);
        view().setCurrentIndex(last);
        QTest::keyClick(&view(), Qt::Key_Return);
        const QPoint place = view().visualRect(last).center();
        QTest::mouseClick(view().viewport(), Qt::LeftButton, {}, place);
        QTest::mouseDClick(view().viewport(), Qt::LeftButton, {}, place);
        QCOMPARE(opened.count(), 2);
        for (const QList<QVariant>& arguments : opened) {
            QCOMPARE(arguments.at(0).value<fs::path>(), m_site->at("news/new.html"));
            QCOMPARE(arguments.at(2).toUInt(), 3U);
            QCOMPARE(arguments.at(3).toUInt(), 10U);
        }
        QTest::keyClick(&view(), Qt::Key_C, Qt::ControlModifier);
        QCOMPARE(QApplication::clipboard()->text(),
                 "news/new.html\t3\t10\thref\t../about.html\tno such file\t\n");
        QTest::keyClick(&view(), Qt::Key_C, Qt::ControlModifier | Qt::ShiftModifier);
        QCOMPARE(QApplication::clipboard()->text(),
                 "page,line,column,place,link,state,why,suggestion\r\n"
                 "news/new.html,3,10,href,../about.html,missing,no such file,\r\n");
        m_site->find<QAction>("linkReportShowAction")->trigger();
        QCOMPARE(m_site->pane->browser().path(), (Browser::Path{"news", "new.html"}));
        for (const char* name : {"report.json", "report.csv"}) {
            m_site->find<QPushButton>("linkReportSaveButton")->click();
            auto* dialog = m_site->find<QFileDialog>("saveReportDialog");
            QVERIFY(dialog);
            emit dialog->fileSelected(QString::fromStdString(m_site->at(name)));
            dialog->reject();
            QTRY_VERIFY(!m_site->find<QFileDialog>("saveReportDialog"));
        }
        QVERIFY(m_site->folder.bytesOf("report.json")
                    .starts_with("{\"page\":\"index.html\",\"line\":2,\"column\":9,\"place\":\"href\","
                                 "\"link\":\"about.html\",\"state\":\"missing\",\"why\":\"no such file\""));
        const std::string csv = m_site->folder.bytesOf("report.csv");
        QCOMPARE(std::count(csv.begin(), csv.end(), '\n'), 6);
    }

    void linksFromAndTo_areTheSameTable()
    {
        select({"index.html"});
        m_site->pane->showLinksToItem();
        QTRY_VERIFY(isDone());
        QCOMPARE(panel().windowTitle(), "Links to index.html");
        QCOMPARE(rows(),
                 (QStringList{"index.html|3|29|href|#top2||", "news/new.html|3|37|href|../index.html||"}));
        select({"news", "new.html"});
        m_site->pane->showLinksFromItem();
        QTRY_VERIFY(isDone());
        QCOMPARE(rows(), (QStringList{"news/new.html|3|10|href|../about.html|no such file|",
                                      "news/new.html|3|37|href|../index.html||"}));
        QCOMPARE(note(), "2 links in 1 page");
        test::saveScreenshots(panel(), "links-from");
        select({"images", "logo.png"});
        m_site->pane->showLinksFromItem();
        QTRY_VERIFY(m_site->text("linkReportPlaceholder").endsWith("Not a page"));
    }

    void theLog_hasTheSameReportAsLines()
    {
        findMissing();
        m_site->find<QTabWidget>("linkReportTabs")->setCurrentIndex(1);
        auto* log = m_site->find<LogView>("linkReportLog");
        const QString page = QString::fromStdString(m_site->at("news/new.html")) + u'\n';
        QTRY_VERIFY(log->log().text().endsWith((page + "    href : ../about.html    *** MISSING ***\n"
                                                       "    href : ../index.html\n\nDone")
                                                   .toUtf8()));
        test::saveScreenshots(panel(), "missing-log");
        m_site->choices.linkRules = LinkRules::Letter;
        m_site->pane->startFindMissingLinks();
        QTRY_VERIFY(m_site->report.log.contains("css/\n")); // by the letter a folder is there
        QTRY_VERIFY(!m_site->report.isRunning());
    }

    void aChangeOfTheSite_keepsSelectionAndClosedGroups()
    {
        findMissing();
        m_site->find<QComboBox>("linkReportGrouping")->setCurrentIndex(1);
        view().setExpanded(view().model()->index(1, 0), false);
        view().setCurrentIndex(view().model()->index(3, 0, view().model()->index(0, 0)));
        int attempt = 0;
        // Repeated, for the watcher may not be running yet.
        QTRY_VERIFY((m_site->folder.put("about.html", std::to_string(++attempt)), rows().size() == 4));
        m_site->folder.put("news/new.html", "<a href=x>");
        QTRY_COMPARE(view().model()->index(0, 0, view().model()->index(1, 0)).data().toString(), "x");
        QVERIFY(!view().isExpanded(view().model()->index(1, 0)));
        QCOMPARE(view().currentIndex().data().toString(), "#top2");
        QCOMPARE(view().selectionModel()->selectedRows().size(), 1);
    }

    void inTheMiddle_data()
    {
        QTest::addColumn<QString>("end");
        for (const char* end : {"stop", "close the panel", "disconnect", "close the window"})
            QTest::newRow(end) << end;
    }
    void inTheMiddle()
    {
        QFETCH(QString, end);
        std::string page;
        for (int i = 0; i < 2000; ++i)
            page += "<a href='none" + std::to_string(i % 50) + "'>";
        for (int i = 0; i < 60; ++i)
            m_site->folder.put("many/" + std::to_string(i) + ".html", page);
        m_site->pane->startFindMissingLinks();
        QTRY_VERIFY(view().model()->rowCount() > 0 || isDone());
        if (end == "stop")
            m_site->find<QPushButton>("linkReportStopButton")->click();
        else if (end == "close the panel")
            panel().close();
        else if (end == "disconnect")
            m_site->pane->disconnectPane();
        else
            m_site.reset();
        if (!m_site)
            return;
        QVERIFY(isDone());
        if (end == "stop") {
            m_site->find<QPushButton>("linkReportRestartButton")->click();
            QTRY_COMPARE(view().model()->rowCount(), 120'005);
        }
    }

    void tab_walksEveryStop()
    {
        findMissing();
        panel().activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&panel()));
        view().setFocus();
        QCOMPARE(test::tabWalk(Qt::Key_Tab), test::tabStops(panel()));
    }
};

LUMA_TEST(tst_linkreportpanel)
#include "tst_linkreportpanel.moc"
