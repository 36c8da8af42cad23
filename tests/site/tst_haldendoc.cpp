// SPDX-License-Identifier: GPL-3.0-or-later
#include "desktop/windowregistry.h"
#include "site/syncpanel.h"
#include "tests/site/sitewindow.h"
#include "tests/support/registry.h"
#include "tests/support/screenshot.h"
#include "tests/support/tabwalk.h"

#include <QDialog>
#include <QPlainTextEdit>
#include <QSemaphore>
#include <QTableView>
#include <QThreadPool>
#include <QTreeView>

using namespace luma;
using luma::test::SiteWindow;
using luma::test::TwoFolders;

class tst_haldendoc final : public QObject
{
    Q_OBJECT

    std::unique_ptr<TwoFolders> m_folders;
    std::shared_ptr<SiteRecord> m_record;
    std::unique_ptr<SiteWindow> m_site;
    QString m_checkAnswer;
    QString m_setUpAnswer;
    QStringList m_calls;
    QSemaphore m_shellMayAnswer;
    QSemaphore* m_setUpGate = nullptr;

    static QVariantMap endpointAt(const std::filesystem::path& folder, const QString& server)
    {
        QVariantMap values = SiteWindow::localFolder(folder);
        values.insert({{endpoint::server, server},
                       {endpoint::user, "anna"},
                       {endpoint::password, "secret"},
                       {endpoint::sshPortNo, "22"}});
        return values;
    }

    HaldenDoc::Services services()
    {
        return {{[this](const QString& login, const QString& port) {
                     onMainCall(QStringLiteral("check %1 %2").arg(login, port));
                     return m_checkAnswer;
                 },
                 [this](const QString& login, const QString& port, const QString& password) {
                     onMainCall(QStringLiteral("set up %1 %2 %3").arg(login, port, password));
                     if (m_setUpGate)
                         m_setUpGate->acquire();
                     return m_setUpAnswer;
                 }},
                [this](const std::vector<std::string>&, std::string_view, const StillWanted&) {
                    m_shellMayAnswer.acquire();
                    return ProgramResult();
                },
                std::make_shared<test::UnavailableMounter>(),
                {}};
    }

    void onMainCall(const QString& call)
    {
        QMetaObject::invokeMethod(this, [this, call] { m_calls += call; });
    }

    HaldenDoc& window() const { return *m_site->window; }
    void open(const QByteArray& layout = {})
    {
        m_site = std::make_unique<SiteWindow>(m_record, services(), layout);
    }
    void openConnected()
    {
        open();
        QTRY_VERIFY(m_site->isConnected());
    }
    void close()
    {
        window().close();
        QTRY_VERIFY(!m_site->window);
    }

private slots:
    void init()
    {
        m_folders = std::make_unique<TwoFolders>();
        m_record = std::make_shared<SiteRecord>(
            QVariantMap{{"sourceDict", endpointAt(m_folders->sending(), "localhost")},
                        {"destinationDict", endpointAt(m_folders->receiving(), "web.example")}});
        m_calls.clear();
        m_checkAnswer.clear();
        m_setUpAnswer.clear();
    }
    void cleanup() { m_site.reset(); }

    void oddRecord_opensAndIsKeptAsItIs_data()
    {
        const QVariantMap connecting{{endpoint::autoconnect, 1}};
        const QVariantMap mistyped{{endpoint::protocol, 7},           {endpoint::server, QVariantList{1}},
                                   {endpoint::path, QByteArray("/")}, {endpoint::user, QVariantMap{}},
                                   {endpoint::autoconnect, "1"},      {endpoint::sshPortNo, 22}};
        QTest::addColumn<QVariantMap>("values");
        QTest::newRow("nothing") << QVariantMap{};
        QTest::newRow("no endpoints") << QVariantMap{{"sourceDict", 1}, {"destinationDict", QVariantList{}}};
        QTest::newRow("empty endpoints connect")
            << QVariantMap{{"sourceDict", connecting}, {"destinationDict", connecting}};
        QTest::newRow("wrong types") << QVariantMap{
            {"sourceDict", mistyped}, {"destinationDict", mistyped}, {"Upload", "a"}};
    }
    void oddRecord_opensAndIsKeptAsItIs()
    {
        QFETCH(QVariantMap, values);
        m_record = std::make_shared<SiteRecord>(values);
        const QVariantMap before = m_record->values();
        open();
        QVERIFY(!m_site->isEnabled("uploadButton"));
        window().sync(Direction::Upload);
        QTRY_COMPARE(m_site->text("syncPanelTitle"), "The comparison failed");
        QTest::keyClick(&m_site->find<QWidget>("syncPanel"), Qt::Key_Escape);
        window().setUpRsync();
        QTRY_COMPARE(m_calls.size(), 1);
        QVERIFY(!m_site->source().rootNode());
        const QVariantMap after = m_record->values();
        QCOMPARE(after.value("sourceDict"), before.value("sourceDict"));
        QCOMPARE(after.value("destinationDict"), before.value("destinationDict"));
    }

    void title_isTheSiteWithItsServerAndFollowsThem()
    {
        open();
        QCOMPARE(WindowRegistry::instance().windowShowing(m_record.get()), &window());
        m_record->setSiteID("Shop");
        m_record->destinationDict()->setValue(endpoint::protocol, "sftp://");
        m_record->destinationDict()->setValue(endpoint::server, "other.example");
        QCOMPARE(window().windowTitle(), "Shop – other.example");
        m_record->destinationDict()->setValue(endpoint::protocol, "file://");
        QCOMPARE(window().windowTitle(), "Shop");
    }

    void connectionLine_followsCheckAndSetUp()
    {
        m_record->destinationDict()->setValue(endpoint::protocol, "sftp://");
        m_record->destinationDict()->setValue(endpoint::autoconnect, 0);
        open();
        const char* const text = "connectionResultText";
        const char* const button = "setUpRemoteLoginConnectionButton";
        m_checkAnswer = "fail - timeout";
        window().checkConnectionOK();
        QTRY_COMPARE(m_site->text(text), "Turn on rsync to make uploads and downloads go faster.");
        QVERIFY(!window().rsync());
        const char* const advice = "connectionAdviceText";
        QVERIFY2(m_site->text(advice).startsWith("The server did not answer"),
                 qPrintable(m_site->text(advice)));
        m_checkAnswer = "fail - customlog needs setup\n";
        window().checkConnectionOK();
        QTRY_VERIFY2(m_site->text(advice).contains("ends with Tallyweb"), qPrintable(m_site->text(advice)));
        const auto& adviceLabel = m_site->find<QLabel>(advice);
        QTRY_VERIFY2(adviceLabel.height() >= adviceLabel.heightForWidth(adviceLabel.width()), "cut off");
        luma::test::saveScreenshots(window(), "site-no-rsync");

        m_setUpAnswer = "Permission denied, please try entering the password again.";
        m_site->click(button);
        QTRY_COMPARE(m_site->text(text), m_setUpAnswer);
        QVERIFY(!window().rsync());
        QVERIFY(m_site->isEnabled(button));

        m_setUpAnswer.clear();
        m_checkAnswer.clear();
        m_site->click(button);
        QTRY_COMPARE(m_site->text(text), "LUMA is using rsync for faster uploads and downloads.");
        QVERIFY(window().rsync());
        QVERIFY(!m_site->isEnabled(button));
        QCOMPARE(m_site->text(advice), QString());
        QCOMPARE(m_calls.last(), "check anna@web.example 22");
        QVERIFY(m_calls.contains("set up anna@web.example 22 secret"));
        luma::test::screenshot(window(), "site-rsync");
        m_record->destinationDict()->setValue(endpoint::path, "/elsewhere");
        QVERIFY(window().rsync());
    }

    // The check was of another account, or of another computer.
    void changedDestination_turnsRsyncOff_data()
    {
        QTest::addColumn<QString>("key");
        for (const auto key : {endpoint::protocol, endpoint::server, endpoint::user, endpoint::sshPortNo})
            QTest::newRow(key.data()) << QString(key);
    }
    void changedDestination_turnsRsyncOff()
    {
        QFETCH(QString, key);
        open();
        window().checkConnectionOK();
        QTRY_VERIFY(window().rsync());
        m_record->destinationDict()->setValue(key, "other");
        QVERIFY(!window().rsync());
        window().checkConnectionOK();
        m_record->destinationDict()->setValue(key, "late");
        QTRY_COMPARE(m_calls.size(), 2);
        QTRY_COMPARE(QThreadPool::globalInstance()->activeThreadCount(), 0);
        QVERIFY(!window().rsync());
    }

    void setUp_isNotStartedTwice()
    {
        m_record->destinationDict()->setValue(endpoint::protocol, "sftp://");
        m_record->destinationDict()->setValue(endpoint::autoconnect, 0);
        m_checkAnswer = "fail - timeout";
        QSemaphore gate;
        m_setUpGate = &gate;
        open();
        window().setUpRsync();
        QTRY_COMPARE(m_calls.size(), 1);
        window().checkConnectionOK();
        QTRY_COMPARE(m_calls.size(), 2);
        m_record->destinationDict()->setValue(endpoint::password, "new");
        QCoreApplication::processEvents();
        QVERIFY(!m_site->isEnabled("setUpRemoteLoginConnectionButton"));
        const auto& action = m_site->find<QAction>("setUpRemoteLoginAction");
        QVERIFY(!action.isEnabled());
        window().setUpRsync();
        gate.release(2);
        QTRY_VERIFY(action.isEnabled());
        QCOMPARE(m_calls.filter("set up").size(), 1);
        m_setUpGate = nullptr;
    }

    void closing_whileAJobRuns_data()
    {
        QTest::addColumn<bool>("rsync");
        QTest::newRow("file mode comparison") << false;
        QTest::newRow("rsync that does not answer") << true;
    }
    void closing_whileAJobRuns()
    {
        QFETCH(bool, rsync);
        for (int i = 0; i < 200; ++i)
            m_folders->put("sending/" + std::to_string(i % 20) + "/" + std::to_string(i));
        openConnected();
        if (rsync) {
            window().checkConnectionOK();
            QTRY_VERIFY(window().rsync());
        }
        window().sync(Direction::Upload);
        close();
        m_shellMayAnswer.release();
        QVERIFY(std::filesystem::is_empty(m_folders->receiving()));
    }

    void layout_comesBack()
    {
        m_folders->put("sending/a/index.html");
        openConnected();
        window().resize(900, 800);
        m_site->source().browser().setColumnWidths({310, 150});
        m_site->destination().browser().setColumnWidths({99});
        const auto panel = [](const BrowserController& pane) {
            return pane.widget()->findChild<QDialog*>("linkReportPanel");
        };
        panel(m_site->source())->resize(700, 410);
        panel(m_site->source())->findChild<QTreeView*>("linkReportView")->setColumnWidth(1, 123);
        panel(m_site->destination())->resize(640, 400);
        window().findChild<QTableView*>("syncTableView")->setColumnWidth(0, 222);
        m_site->find<QAction>("sideBySideAction").trigger();
        const QByteArray state = window().layoutState();
        close();
        open(state);
        window().restoreLayoutState("nonsense");
        QCOMPARE(window().size(), QSize(900, 800));
        // A layout cut off or damaged anywhere does no harm.
        for (int size = 0; size < state.size(); ++size) {
            window().restoreLayoutState(state.left(size));
            QByteArray damaged = state;
            damaged[size] = static_cast<char>(~state[size]);
            window().restoreLayoutState(damaged);
        }
        window().restoreLayoutState(state);
        BrowserController& source = m_site->source();
        QVERIFY(m_site->find<QAction>("sideBySideAction").isChecked());
        QTRY_COMPARE(source.widget()->y(), m_site->destination().widget()->y());
        test::saveScreenshots(window(), "site-side-by-side");
        QCOMPARE(source.browser().columnWidths(), (QList<int>{310, 150}));
        QCOMPARE(m_site->destination().browser().columnWidths(), QList<int>{99});
        QCOMPARE(panel(source)->size(), QSize(700, 410));
        QCOMPARE(panel(source)->findChild<QTreeView*>("linkReportView")->columnWidth(1), 123);
        QCOMPARE(panel(m_site->destination())->size(), QSize(640, 400));
        QCOMPARE(window().findChild<QTableView*>("syncTableView")->columnWidth(0), 222);
        QTRY_VERIFY(source.rootNode());
        source.browser().setPath({"a"});
        QCOMPARE(source.widget()->findChild<QWidget*>("browserColumn0")->width(), 310);
        QCOMPARE(source.widget()->findChild<QWidget*>("browserColumn1")->width(), 150);
    }

    void hiddenFiles_showOnBothSidesAndTheChoiceComesBack()
    {
        m_folders->put("sending/.htaccess");
        m_folders->put("receiving/.well-known/a");
        openConnected();
        QCOMPARE(m_site->source().browser().model().rowCount(), 0);
        window().findChild<QAction*>("showHiddenAction")->trigger();
        QCOMPARE(m_site->shownNames(), QStringList(".well-known"));
        QVERIFY(m_site->source().browser().reveal(m_folders->sending() / ".htaccess"));
        const QByteArray state = window().layoutState();
        close();
        open(state);
        QTRY_COMPARE(m_site->shownNames(), QStringList(".well-known"));
        window().findChild<QAction*>("showHiddenAction")->trigger();
        QCOMPARE(m_site->shownNames(), QStringList());
    }

    void commands_actOnThePaneUsedLast()
    {
        openConnected();
        window().activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&window()));
        SiteWindow::list(m_site->destination(), 0).setFocus();
        m_site->find<QWidget>("uploadButton").setFocus();
        // The panes' menus have actions of the same names.
        window().findChild<QAction*>("newFolderAction", Qt::FindDirectChildrenOnly)->trigger();
        QTRY_COMPARE(m_site->shownNames(), QStringList("untitled folder"));
        QVERIFY(std::filesystem::is_empty(m_folders->sending()));
    }

    void page_isPublishedWithWhatItNeeds_onceBothSidesAreThere()
    {
        m_folders->put("sending/docs/p.html", "<img src=../i.png><a href=other.html>");
        m_folders->putAll("sending", "i.png|docs/other.html|else.png");
        open();
        window().publishPage(m_folders->at("sending/docs/p.html"));
        QTRY_COMPARE(m_site->rows(), (QStringList{"+docs/p.html", "+i.png"}));
        m_site->click("cancelButton");
        QVERIFY(m_site->isConnected());
        m_site->destination().disconnectPane();
        m_folders->put("sending/docs/p.html", "<img src=../else.png>");
        window().publishPage(m_folders->at("sending/docs/p.html"));
        QTRY_COMPARE(m_site->rows(), (QStringList{"+docs/p.html", "+else.png"}));
        m_site->click("cancelButton");
    }

    void differingTexts_areShownSideBySide()
    {
        m_folders->put("sending/a.html", "<p>one</p>\n<p>two</p>\n<p>three</p>\n<p>four, which is new</p>\n",
                       10);
        m_folders->put("receiving/a.html", "<p>one</p>\n<p>2</p>\n<p>three</p>\n", 20);
        m_folders->put("sending/b.gif", std::string("GIF\0a", 5), 10);
        m_folders->put("receiving/b.gif", std::string("GIF\0b", 5), 20);
        openConnected();
        const auto compare = [this](const char* path) {
            emit window().findChild<SyncPanel*>()->comparisonRequested(path);
            return window().findChild<QDialog*>("comparisonWindow");
        };
        m_site->click("uploadButton");
        QTRY_VERIFY(m_site->isSyncIdle());
        QPointer<QDialog> shown = compare("a.html");
        const auto* const status = shown->findChild<QLabel*>("comparisonStatus");
        QTRY_COMPARE(status->text(), "2 differences");
        const auto* const left = shown->findChild<QPlainTextEdit*>("comparisonLeft");
        const auto* const right = shown->findChild<QPlainTextEdit*>("comparisonRight");
        QCOMPARE(left->toPlainText(), "<p>one</p>\n<p>two</p>\n<p>three</p>\n<p>four, which is new</p>");
        QCOMPARE(right->toPlainText(), "<p>one</p>\n<p>2</p>\n<p>three</p>\n");
        QCOMPARE(left->textCursor().blockNumber(), 1);
        test::saveScreenshots(*shown, "sync-compare");
        auto* const next = shown->findChild<QPushButton*>("nextDifference");
        for (const int line : {3, 1}) {
            next->click();
            QCOMPARE(left->textCursor().blockNumber(), line);
            QCOMPARE(right->textCursor().blockNumber(), line);
        }
        shown->close();
        QTRY_VERIFY(!shown);
        shown = compare("b.gif");
        QTRY_COMPARE(shown->findChild<QLabel*>("comparisonStatus")->text(), "The files are no text");
        shown->close();
        QTRY_VERIFY(!shown);
    }

    void window_beginsWithTheFirstRow_andTabGoesOnInOrder()
    {
        m_folders->putAll("sending", "a.html|b.html");
        m_folders->put("receiving/c.html");
        openConnected();
        window().activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&window()));
        QTRY_VERIFY(SiteWindow::list(m_site->source(), 0).hasFocus());
        QCOMPARE(m_site->source().browser().path(), Browser::Path{"a.html"});
        const auto tab = [] { QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab); };
        tab();
        QCOMPARE(QApplication::focusWidget(), &m_site->connectButton());
        tab();
        tab();
        QVERIFY(SiteWindow::list(m_site->destination(), 0).hasFocus());
        QCOMPARE(m_site->destination().browser().path(), Browser::Path{"c.html"});
    }

    void selectedItems_arePublishedAlone()
    {
        m_folders->putAll("sending", "a/x|a/y|b");
        openConnected();
        m_site->source().browser().setPath({"a"});
        window().findChild<QAction*>("transferAction", Qt::FindDirectChildrenOnly)->trigger();
        QTRY_COMPARE(m_site->rows(), QStringList({"+a/x", "+a/y"}));
        luma::test::saveScreenshots(m_site->find<QWidget>("syncPanel"), "publish-selected");
        QVERIFY(m_site->transfer());
        QCOMPARE(m_site->rows(), QStringList());
        QVERIFY(std::filesystem::exists(m_folders->receiving() / "a/y"));
        QVERIFY(!std::filesystem::exists(m_folders->receiving() / "b"));
        m_site->find<QWidget>("cancelButton").setFocus();
        m_site->click("cancelButton");
        window().sync(Direction::Upload);
        QTRY_COMPARE(m_site->rows(), QStringList("+b"));
    }

    void actions_needASelectionAndBothSides()
    {
        m_folders->put("receiving/a.html");
        openConnected();
        const auto isOn = [this](const char* action) {
            return window().findChild<QAction*>(action, Qt::FindDirectChildrenOnly)->isEnabled();
        };
        QVERIFY(isOn("uploadAction") && isOn("newFolderAction"));
        for (const char* action : {"openAction", "renameAction", "deleteAction", "transferAction"})
            QVERIFY2(!isOn(action), action);
        m_site->destination().browser().setPath({"a.html"});
        QVERIFY(!isOn("deleteAction"));
        window().activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&window()));
        SiteWindow::list(m_site->destination(), 0).setFocus();
        for (const char* action : {"openAction", "renameAction", "deleteAction", "transferAction"})
            QVERIFY2(isOn(action), action);
        m_site->source().disconnectPane();
        QVERIFY(!isOn("uploadAction") && !isOn("transferAction") && isOn("deleteAction"));
        m_site->destination().disconnectPane();
        QVERIFY(!isOn("deleteAction") && !isOn("newFolderAction") && !isOn("reloadAction"));
    }

    void tab_walksEveryStopBothWays()
    {
        m_folders->put("sending/index.html");
        openConnected();
        window().activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&window()));
        for (const Qt::Key key : {Qt::Key_Tab, Qt::Key_Backtab}) {
            m_site->find<QWidget>("browserList0").setFocus();
            QCOMPARE(luma::test::tabWalk(key), luma::test::tabStops(window()));
        }
        QVERIFY(luma::test::tabStops(window()).size() >= 6);
        luma::test::checkControlNames(window());
    }
};

LUMA_TEST(tst_haldendoc)
#include "tst_haldendoc.moc"
