// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/filedescriptor.h"
#include "browser/browsercontroller.h"
#include "browser/displaytext.h"
#include "browser/dragrecord.h"
#include "browser/filesystemmodel.h"
#include "browser/movenotices.h"
#include "links/sitemoves.h"
#include "site/jobline.h"
#include "tests/site/sitewindow.h"
#include "tests/support/registry.h"
#include "tests/support/rows.h"
#include "tests/support/screenshot.h"

#include <QAbstractItemModelTester>
#include <QAccessible>
#include <QAction>
#include <QCheckBox>
#include <QDialog>
#include <QMenu>
#include <QMessageBox>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTableView>
#include <QThreadPool>
#include <QTimer>

#include <fcntl.h>

#include <cstdio>

namespace fs = std::filesystem;
using namespace luma;
using luma::test::SiteWindow;
using luma::test::TwoFolders;

namespace {

/// Redirects standard output to a file during its lifetime.
class StandardOutput final
{
public:
    explicit StandardOutput(const fs::path& file)
        : m_former(::fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, 0)),
          m_file(::open(file.c_str(), O_CREAT | O_WRONLY | O_CLOEXEC, 0600))
    {
        (void)std::fflush(stdout);
        ::dup2(m_file.get(), STDOUT_FILENO);
    }
    ~StandardOutput()
    {
        (void)std::fflush(stdout);
        ::dup2(m_former.get(), STDOUT_FILENO);
    }
    StandardOutput(const StandardOutput&) = delete;
    StandardOutput& operator=(const StandardOutput&) = delete;

private:
    FileDescriptor m_former;
    FileDescriptor m_file;
};

/// Two folders with links within and out of them.
class LinkedSite final : public TwoFolders
{
public:
    LinkedSite()
    {
        put("sending/index.html", "<a href=\"a/x.html\">x</a><img src=\"img/none.png\">");
        put("sending/a/x.html", "<img src=\"img/p.png\"><a href=x.html>me</a>");
        put("sending/a/y.html", "<a href=\"x.html#top\">x</a>");
        put("sending/a/img/p.png");
        put("sending/b/lonely.txt");
        put("sending/images/logo.png");
        put("receiving/c/z.html", "<a href='http://example.org'>out</a>");
    }
};

} // namespace

/// Links maintenance in the panes of a real window.
class tst_panelinks final : public QObject
{
    Q_OBJECT

private:
    static void choose(const SiteWindow& site, const char* folder, const char* name)
    {
        site.source().browser().setPath({folder, name});
        QCOMPARE(site.source().browser().path(), (Browser::Path{folder, name}));
    }

    static std::shared_ptr<SiteRecord> asABrowser(const LinkedSite& folders)
    {
        return std::make_shared<SiteRecord>(
            QVariantMap{{"sourceDict", SiteWindow::localFolder(folders.sending())},
                        {"destinationDict", SiteWindow::localFolder(folders.receiving())}});
    }

    static QMessageBox* findAlert(const SiteWindow& site)
    {
        return site.window->findChild<QMessageBox*>("deleteUnlinkedItemsAlert");
    }

    // What the table of the unlinked items shows of its ticked rows.
    static QStringList tickedItems(const SiteWindow& site)
    {
        const QAbstractItemModel& rows = *site.find<QTableView>("unlinkedItemsTableView").model();
        QStringList names;
        for (const QModelIndex& row : rows.match(rows.index(0, 0), Qt::CheckStateRole, Qt::Checked, -1))
            names += row.data().toString();
        return names;
    }

    static void deleteAllUnlinked(const SiteWindow& site)
    {
        site.source().startFindUnlinkedItems();
        auto& remove = site.find<QPushButton>("unlinkedItemsDeleteButton");
        QTRY_VERIFY(remove.isEnabled());
        remove.click();
        QVERIFY(findAlert(site));
        findAlert(site)->buttons().first()->click();
    }

private slots:
    void drop_movesOrCopiesAndUpdatesLinks_data()
    {
        QTest::addColumn<bool>("control");
        QTest::newRow("moves within the pane") << false;
        QTest::newRow("copies with Control") << true;
    }
    void drop_movesOrCopiesAndUpdatesLinks()
    {
        QFETCH(bool, control);
        QTest::failOnWarning(QRegularExpression("invalid type"));
        const LinkedSite folders;
        const SiteWindow site(folders);
        choose(site, "a", "x.html");
        const Qt::DropAction action = SiteWindow::dragAndDrop(
            SiteWindow::list(site.source(), 1), SiteWindow::list(site.source(), 0),
            SiteWindow::item(site.source(), 0, "b"), control ? Qt::ControlModifier : Qt::NoModifier);
        QCOMPARE(action, control ? Qt::CopyAction : Qt::MoveAction);
        QTRY_COMPARE(site.log(), "Updating links to: x.html\n\n\nDone");
        QTRY_VERIFY(site.isDone());
        QCOMPARE(site.status(),
                 control ? "Copied x.html to b; 4 pages changed" : "Moved x.html to b; 3 pages changed");
        QCOMPARE(site.text("jobText"), site.status());
        QVERIFY(!site.find<QDialog>("progressPanel").isVisible());
        QCOMPARE(fs::exists(folders.at("sending/a/x.html")), control);
        QCOMPARE(folders.bytesOf("sending/b/x.html"),
                 std::string("<img src=\"../a/img/p.png\"><a href=x.html>me</a>"));
        QCOMPARE(folders.bytesOf("sending/a/y.html"), std::string("<a href=\"../b/x.html#top\">x</a>"));
        QCOMPARE(folders.bytesOf("sending/index.html"),
                 std::string("<a href=\"b/x.html\">x</a><img src=\"img/none.png\">"));
    }

    void dropFromTheOtherPane_copiesIntoTheColumnsFolder()
    {
        const LinkedSite folders;
        folders.put("receiving/lonely.txt", "mine");
        const SiteWindow site(folders);
        choose(site, "b", "lonely.txt");
        BrowserListView& from = SiteWindow::list(site.source(), 1);
        site.destination().browser().setPath({"c"});
        QCOMPARE(SiteWindow::dragAndDrop(from, SiteWindow::list(site.destination(), 1), {}), Qt::CopyAction);
        QTRY_COMPARE(folders.bytesOf("receiving/c/lonely.txt"), std::string("text"));
        QTRY_VERIFY(site.isDone());
        QVERIFY(fs::exists(folders.at("sending/b/lonely.txt")));
        site.find<QDialog>("progressPanel").accept();
        // An existing file is not overwritten but named, on standard output too.
        const StandardOutput output(folders.at("output"));
        QCOMPARE(SiteWindow::dragAndDrop(from, SiteWindow::list(site.destination(), 0), {}), Qt::CopyAction);
        QTRY_COMPARE(site.log(), "File lonely.txt exists, not overwritten\n\nDone");
        QCOMPARE(folders.bytesOf("receiving/lonely.txt"), std::string("mine"));
        QVERIFY(folders.bytesOf("output").find("File lonely.txt exists, not overwritten\n") !=
                std::string::npos);
    }

    // Its place in the one site stands for that in the other; no link leads from the one into the other.
    void asABrowser_fileFromTheOtherPaneKeepsItsRelations()
    {
        const LinkedSite folders;
        folders.put("sending/a/y.html",
                    "<a href=x.html#top><img src=/images/logo.png><a href=../index.html>");
        folders.put("receiving/a/x.html", "<a href=y.html>");
        const SiteWindow site(asABrowser(folders), {.remoteLogin = {},
                                                    .runProgram = {},
                                                    .mounter = std::make_shared<test::UnavailableMounter>(),
                                                    .reportChoices = [] { return ReportChoices(); }});
        QTRY_VERIFY(site.isConnected());
        choose(site, "a", "y.html");
        site.destination().browser().setPath({"c"});
        QCOMPARE(SiteWindow::dragAndDrop(SiteWindow::list(site.source(), 1),
                                         SiteWindow::list(site.destination(), 1), {}),
                 Qt::CopyAction);
        QTRY_COMPARE(folders.bytesOf("receiving/c/y.html"),
                     std::string("<a href=../a/x.html#top><img src=/images/logo.png><a href=../index.html>"));
        QTRY_VERIFY(site.isDone());
        QCOMPARE(folders.bytesOf("receiving/a/x.html"), std::string("<a href=y.html>"));
        QCOMPARE(folders.bytesOf("sending/a/y.html"),
                 std::string("<a href=x.html#top><img src=/images/logo.png><a href=../index.html>"));
    }

    // As a browser reads links, which is the default.
    void asABrowser_movesRenamesAndTakesBack()
    {
        const LinkedSite folders;
        folders.put("receiving/a/x.html", "<img src=../images/p.png>");
        const test::Files before = folders.contents();
        const auto notices = std::make_shared<MoveNotices>();
        const SiteWindow site(asABrowser(folders), {.remoteLogin = {},
                                                    .runProgram = {},
                                                    .mounter = std::make_shared<test::UnavailableMounter>(),
                                                    .reportChoices = [] { return ReportChoices(); },
                                                    .moveNotices = notices});
        QTRY_VERIFY(site.isConnected());
        QSignalSpy renamed(notices.get(), &MoveNotices::itemMoved);
        choose(site, "a", "x.html");
        SiteWindow::dragAndDrop(SiteWindow::list(site.source(), 1), SiteWindow::list(site.source(), 0),
                                SiteWindow::item(site.source(), 0, "b"));
        QTRY_COMPARE(site.log(), "Updating links to: x.html\n\nb/x.html\na/y.html\nindex.html\n\nDone");
        QTRY_VERIFY(site.isDone());
        QCOMPARE(renamed.count(), 1);
        QCOMPARE(folders.bytesOf("sending/a/y.html"), std::string("<a href=\"../b/x.html#top\">x</a>"));
        site.find<QDialog>("progressPanel").accept();
        QTRY_VERIFY(SiteWindow::item(site.source(), 0, "a").isValid());
        site.source().browser().model().setData(SiteWindow::item(site.source(), 0, "a"), "new a",
                                                Qt::EditRole);
        QTRY_COMPARE(folders.bytesOf("sending/b/x.html"),
                     std::string("<img src=\"../new%20a/img/p.png\"><a href=x.html>me</a>"));
        auto& undo = site.find<QAction>("undoMoveAction");
        for (const char* const title : {"&Undo Rename", "&Undo Move"}) {
            QTRY_VERIFY(site.isDone());
            QCOMPARE(undo.text(), title);
            site.find<QDialog>("progressPanel").accept();
            undo.trigger();
            QTRY_VERIFY(site.log().startsWith("Took back: "));
        }
        QTRY_VERIFY(site.isDone());
        QCOMPARE(folders.contents(), before);
        QCOMPARE(renamed.count(), 4);
    }

    void lineAtTheFoot_saysWhatChangedAndTakesItBack()
    {
        const LinkedSite folders;
        const test::Files before = folders.contents();
        const SiteWindow site(asABrowser(folders), {.remoteLogin = {},
                                                    .runProgram = {},
                                                    .mounter = std::make_shared<test::UnavailableMounter>(),
                                                    .reportChoices = [] { return ReportChoices(); }});
        QTRY_VERIFY(site.isConnected());
        choose(site, "a", "x.html");
        auto& line = site.find<JobLine>("jobLine");
        QVERIFY(!line.isVisible());
        site.source().browser().model().setData(SiteWindow::item(site.source(), 1, "x.html"), "z.html",
                                                Qt::EditRole);
        QTRY_COMPARE(site.text("jobText"), "Renamed x.html to z.html; 3 links on 3 pages changed");
        QVERIFY(line.isVisible());
        const QAccessibleInterface* const alert = QAccessible::queryAccessibleInterface(&line);
        QCOMPARE(alert->role(), QAccessible::AlertMessage);
        QCOMPARE(alert->text(QAccessible::Name), site.text("jobText"));
        test::saveScreenshots(*site.window, "job-line");
        auto& panel = site.find<QDialog>("progressPanel");
        QVERIFY(!panel.isVisible());
        site.click("jobShowButton");
        QVERIFY(panel.isVisible());
        QCOMPARE(site.log(), "Updating links to: x.html\n\na/y.html\na/z.html\nindex.html\n\nDone");
        panel.accept();
        // Undo in the line is the menu's.
        site.click("jobUndoButton");
        QTRY_COMPARE(folders.contents(), before);
        QTRY_COMPARE(site.text("jobText"), "Took back: Rename x.html to z.html; 3 pages changed");
        QVERIFY(!site.find<QPushButton>("jobUndoButton").isVisible());
        // It goes away by itself, but not from under the focus.
        auto& timer = site.find<QTimer>("jobGoneTimer");
        site.find<QPushButton>("jobCloseButton").setFocus();
        QSignalSpy timeout(&timer, &QTimer::timeout);
        timer.start(0);
        QTRY_VERIFY(timeout.count() > 0);
        QVERIFY(line.isVisible());
        site.source().browser().focusCurrentColumn();
        QTRY_VERIFY(!line.isVisible());
        site.find<QAction>("lastJobAction").trigger();
        QVERIFY(panel.isVisible());
    }

    void secondDrop_waitsForTheFirst()
    {
        const LinkedSite folders;
        const SiteWindow site(folders);
        QMimeData data;
        const auto drop = [&](const char* name) {
            data.setData("text/uri-list", uriList({folders.at(name)}));
            QCOMPARE(SiteWindow::drop(SiteWindow::list(site.source(), 0), {}, data), Qt::CopyAction);
        };
        folders.put("outside/1.txt");
        folders.put("outside/2.txt");
        drop("outside/1.txt");
        drop("outside/2.txt");
        QTRY_VERIFY(fs::exists(folders.at("sending/2.txt")));
        QTRY_COMPARE(site.text("jobText"), "Copied 2.txt to sending; no page had to change");
        QVERIFY(fs::exists(folders.at("sending/1.txt")));
    }

    void undoThatIsBlocked_canBeLeftOut()
    {
        const LinkedSite folders;
        const SiteWindow site(asABrowser(folders), {.remoteLogin = {},
                                                    .runProgram = {},
                                                    .mounter = std::make_shared<test::UnavailableMounter>(),
                                                    .reportChoices = [] { return ReportChoices(); },
                                                    .moveNotices = std::make_shared<MoveNotices>()});
        QTRY_VERIFY(site.isConnected());
        for (const auto& [name, newName] : {std::pair("y.html", "w.html"), std::pair("x.html", "z.html")}) {
            choose(site, "a", name);
            site.source().browser().model().setData(SiteWindow::item(site.source(), 1, name),
                                                    QLatin1String(newName), Qt::EditRole);
            QTRY_VERIFY(site.log().contains("Done"));
            QTRY_VERIFY(site.isDone());
            site.find<QDialog>("progressPanel").accept();
            QTRY_VERIFY(SiteWindow::item(site.source(), 1, newName).isValid());
        }
        folders.put("sending/a/x.html", "in the way");
        auto& undo = site.find<QAction>("undoMoveAction");
        const auto answer = [&](const char* title) {
            undo.trigger();
            QTRY_VERIFY(site.window->findChild<QMessageBox*>("skipUndoAlert"));
            auto& question = site.find<QMessageBox>("skipUndoAlert");
            QVERIFY(question.informativeText().startsWith("Rename x.html to z.html\n"));
            test::saveScreenshots(question, "undo-blocked");
            const auto buttons = question.buttons();
            (*std::find_if(buttons.begin(), buttons.end(), [title](auto* button) {
                return button->text() == QLatin1String(title);
            }))->click();
            QTRY_VERIFY(!site.window->findChild<QMessageBox*>("skipUndoAlert"));
        };
        // Until it is left out, the menu offers it again.
        answer("Cancel");
        QTRY_VERIFY(site.isDone());
        QCOMPARE(undo.text(), "&Undo Rename");
        answer("Leave It");
        QTRY_VERIFY(site.log().endsWith("Left as it is: Rename x.html to z.html"));
        QTRY_VERIFY(site.isDone());
        site.find<QDialog>("progressPanel").accept();
        site.find<QAction>("undoMoveAction").trigger();
        QTRY_VERIFY(site.log().startsWith("Took back: Rename y.html to w.html"));
        QTRY_VERIFY(site.isDone());
        QVERIFY(fs::exists(folders.at("sending/a/y.html")) && fs::exists(folders.at("sending/a/z.html")));
    }

    void undo_isGreyWhereThereIsNothing()
    {
        const LinkedSite folders;
        const SiteWindow site(folders);
        QTRY_VERIFY(site.isConnected());
        auto& menu = site.find<QMenu>("editMenu");
        auto& undo = site.find<QAction>("undoMoveAction");
        QSignalSpy looked(&site.source(), &BrowserController::olderMoveLooked);
        menu.popup({});
        QTRY_COMPARE(looked.count(), 1);
        QVERIFY(!undo.isEnabled());
        menu.close();
        // Another program may move something, and the key takes it back.
        QVERIFY(undo.isEnabled());
        {
            auto moves = SiteMoves::open(folders.sending());
            const auto plan = planMove({folders.sending(),
                                        {},
                                        MoveOperation::Move,
                                        {{folders.at("sending/a"), folders.at("sending/d")}},
                                        {}});
            QVERIFY(moves->carryOut(*plan).isDone);
        }
        menu.popup({});
        QTRY_COMPARE(looked.count(), 2);
        QVERIFY(undo.isEnabled());
        menu.close();
    }

    void renameThatWasInterrupted_isTakenBackOnOpening()
    {
        const LinkedSite folders;
        const test::Files before = folders.contents();
        const MovedItem item{folders.at("sending/a/x.html"), folders.at("sending/a/z.html")};
        QVERIFY(SiteMoves::open(folders.sending())->noteRename(item));
        fs::rename(item.from, item.to);
        const SiteWindow site(folders);
        QTRY_COMPARE(site.log(), "Took back what was interrupted: Rename x.html to z.html\n\n\nDone");
        QTRY_VERIFY(site.isDone());
        QCOMPARE(folders.contents(), before);
    }

    void drop_isRefused()
    {
        const LinkedSite folders;
        const SiteWindow site(folders);
        choose(site, "a", "x.html");
        BrowserListView& root = SiteWindow::list(site.source(), 0);
        BrowserListView& column = SiteWindow::list(site.source(), 1);
        const QModelIndex folder = SiteWindow::item(site.source(), 0, "b");
        QMimeData data;
        data.setText("no file");
        QCOMPARE(SiteWindow::drop(root, folder, data), Qt::IgnoreAction);
        data.setData("text/uri-list", "http://example.org/x\r\n#file:///a\r\n");
        QCOMPARE(SiteWindow::drop(root, folder, data), Qt::IgnoreAction);
        const QModelIndex file = SiteWindow::item(site.source(), 0, "index.html");
        QCOMPARE(SiteWindow::dragAndDrop(column, root, file), Qt::IgnoreAction);
        QCOMPARE(SiteWindow::dragAndDrop(column, column, {}), Qt::IgnoreAction);
        QVERIFY(!site.find<QDialog>("progressPanel").isVisible());
    }

    void dropFromAnotherProgram_takesNamesAsBytes()
    {
        const LinkedSite folders;
        const std::vector<std::string> names{"a b%20#?.txt", "line\nfeed.txt", "caf\xe9.txt", "'\"$x`.txt"};
        std::vector<fs::path> outside;
        for (const std::string& name : names) {
            folders.put("outside/" + name, name);
            outside.push_back(folders.at("outside/" + name));
        }
        const SiteWindow site(folders);
        QMimeData data;
        data.setData("text/uri-list", uriList(outside));
        QCOMPARE(SiteWindow::drop(SiteWindow::list(site.source(), 0), SiteWindow::item(site.source(), 0, "b"),
                                  data),
                 Qt::CopyAction);
        QTRY_VERIFY(site.log().endsWith("\nDone"));
        for (const std::string& name : names) {
            QCOMPARE(folders.bytesOf("sending/b/" + name), name);
            QVERIFY(fs::exists(folders.at("outside/" + name)));
        }
    }

    void droppedCopy_stopsAndLeavesNothingHalf()
    {
        const LinkedSite folders;
        for (int i = 0; i < 500; ++i)
            folders.put("outside/many/" + std::to_string(i) + ".txt");
        folders.put("outside/large", std::string(64'000'000, 'x'));
        const SiteWindow site(folders);
        const std::string before = folders.listing("sending");
        QMimeData data;
        data.setData("text/uri-list", uriList({folders.at("outside/many"), folders.at("outside/large")}));
        QCOMPARE(SiteWindow::drop(SiteWindow::list(site.source(), 0), {}, data), Qt::CopyAction);
        QTRY_VERIFY(site.window->progress().isRunning());
        site.find<QPushButton>("jobStopButton").click();
        QTRY_VERIFY(site.isDone());
        const bool hasMany = fs::exists(folders.at("sending/many"));
        QVERIFY(site.log().endsWith(hasMany ? "links in the others are as they were."
                                            : "\nStopped before anything was moved or copied."));
        if (hasMany)
            QCOMPARE(std::distance(fs::directory_iterator(folders.at("sending/many")), {}), 500);
        fs::remove_all(folders.at("sending/many"));
        QCOMPARE(folders.listing("sending"), before);
    }

    void rename_rewritesLinks()
    {
        const LinkedSite folders;
        const SiteWindow site(folders);
        site.source().browser().model().setData(SiteWindow::item(site.source(), 0, "a"), "new a",
                                                Qt::EditRole);
        QTRY_COMPARE(site.log(), "Updating links from: a to new a\n\nUpdating links to: a\n\n\nDone");
        QTRY_VERIFY(site.isDone());
        QCOMPARE(folders.bytesOf("sending/index.html"),
                 std::string("<a href=\"new a/x.html\">x</a><img src=\"img/none.png\">"));
        QCOMPARE(folders.bytesOf("sending/new a/y.html"), std::string("<a href=\"x.html#top\">x</a>"));
        QTRY_COMPARE(site.source().browser().path(), Browser::Path{"new a"});
    }

    void reports_data()
    {
        const test::Rows<QString, QString, QString, QString> row("menu", "action", "status", "log");
        const QString ofPane = "contextualMenu";
        row("from", ofPane, "showLinksFromAction", "Listing all links from: %1/a/x.html",
            "%1/a/x.html\n    href : x.html\n    src : img/p.png\n\nDone");
        row("to", ofPane, "showLinksToAction", "Listing all links to: %1/a/x.html",
            "a/x.html\na/y.html\nindex.html\n\nDone");
        const QString missing =
            "%1/a/x.html\n    href : x.html\n    src : img/p.png\n"
            "%1/a/y.html\n    href : x.html#top    *** MISSING ***\n"
            "%1/index.html\n    href : a/x.html\n    src : img/none.png    *** MISSING ***\n\nDone";
        const QString title = "Checking source files for missing links (*** MISSING ***)";
        row("missing", "siteMenu", "missingLinksAction", title, missing);
        row("missing, by the pane's menu", ofPane, "missingLinksAction", title, missing);
    }
    void reports()
    {
        QFETCH(QString, menu);
        QFETCH(QString, action);
        QFETCH(QString, status);
        QFETCH(QString, log);
        const LinkedSite folders;
        const SiteWindow site(folders);
        choose(site, "a", "x.html");
        const QString root = QString::fromStdString(folders.sending().string());
        for (QAction* each : site.find<QMenu>(qPrintable(menu)).actions()) {
            if (each->objectName() == action)
                each->trigger();
        }
        QVERIFY(site.find<QDialog>("progressPanel").isVisible());
        QTRY_VERIFY(site.isDone());
        QCOMPARE(site.log(), log.contains("%1") ? log.arg(root) : log);
        QCOMPARE(site.status(), status.contains("%1") ? status.arg(root) : status);
        test::saveScreenshots(site.find<QDialog>("progressPanel"), QLatin1String(QTest::currentDataTag()));
    }

    void aClickedLine_selectsItsFile()
    {
        const LinkedSite folders;
        const SiteWindow site(folders);
        site.source().startFindMissingLinks();
        QTRY_VERIFY(site.isDone());
        auto& log = site.find<LogView>("progressPanelTextField2");
        const auto click = [&](int line) {
            const QModelIndex row = log.model()->index(line, 0);
            QTest::mouseClick(log.viewport(), Qt::LeftButton, {}, log.visualRect(row).center());
        };
        const auto selected = [&] { return site.source().browser().path(); };
        click(3);
        QTRY_COMPARE(selected(), (Browser::Path{"a", "y.html"}));
        click(2);
        QTRY_COMPARE(selected(), (Browser::Path{"a", "img", "p.png"}));
        // A missing link selects its page.
        click(7);
        QTRY_COMPARE(selected(), (Browser::Path{"index.html"}));
        // A line without a file selects none.
        click(9);
        QCOMPARE(selected(), (Browser::Path{"index.html"}));
    }

    void unlinkedItems_listDeleteAndRestart()
    {
        const LinkedSite folders;
        folders.put("sending/old/x.txt");
        folders.put("sending/b/\xff\n.txt");
        const SiteWindow site(folders);
        site.find<QAction>("unlinkedItemsAction").trigger();
        auto& panel = site.find<QDialog>("unlinkedItemsPanel");
        auto& rows = *site.find<QTableView>("unlinkedItemsTableView").model();
        auto& remove = site.find<QPushButton>("unlinkedItemsDeleteButton");
        QVERIFY(panel.isVisible());
        QCOMPARE(site.find<QLabel>("unlinkedItemsPanelTitle").text(), "Listing all files with no links.");
        QTRY_VERIFY(remove.isEnabled());
        const QAbstractItemModelTester tester(&rows);
        QCOMPARE(tickedItems(site),
                 (QStringList{"a/y.html", "b/lonely.txt", displayText("b/\xff\n.txt"), "index.html"}));
        QVERIFY(!site.find<QPushButton>("unlinkedItemsStopButton").isEnabled());
        test::saveScreenshots(panel, "unlinked-rows");
        site.find<QCheckBox>("unlinkedItemsAllCheckBox").click();
        QVERIFY(tickedItems(site).isEmpty());
        rows.setData(rows.index(2, 0), Qt::Checked, Qt::CheckStateRole);
        rows.setData(rows.index(1, 0), Qt::Checked, Qt::CheckStateRole);
        for (const char* answer : {"No", "Delete"}) {
            remove.click();
            auto* const alert = findAlert(site);
            QVERIFY(alert);
            for (QAbstractButton* choice : alert->buttons()) {
                if (choice->text() == QLatin1String(answer))
                    choice->click();
            }
            QTRY_VERIFY(!findAlert(site));
            QTRY_COMPARE(rows.rowCount(), *answer == 'N' ? 4 : 2);
        }
        QCOMPARE(folders.listing("sending/b"), std::string());
        QVERIFY(fs::exists(folders.at("sending/index.html")));
        folders.put("sending/b/new.txt");
        site.find<QPushButton>("unlinkedItemsRestartButton").click();
        QTRY_COMPARE(tickedItems(site), (QStringList{"a/y.html", "b/new.txt", "index.html"}));
    }

    void allUnlinkedItemsGone_thePanelSaysSo()
    {
        const TwoFolders folders;
        folders.put("sending/a.txt");
        const SiteWindow site(folders);
        deleteAllUnlinked(site);
        QTRY_COMPARE(site.find<QLabel>("unlinkedItemsPanelTitle").text(), "No more files to be deleted.");
        QVERIFY(!site.find<QPushButton>("unlinkedItemsDeleteButton").isEnabled());
        QVERIFY(!fs::exists(folders.at("sending/a.txt")));
        QTRY_COMPARE(SiteWindow::list(site.source(), 0).model()->rowCount(), 0);
        test::saveScreenshots(site.find<QDialog>("unlinkedItemsPanel"), "unlinked-none");
    }

    // Here because a folder has taken the file's name since the scan.
    void anUnlinkedItemThatCannotBeDeleted_staysListed()
    {
        const TwoFolders folders;
        folders.put("sending/a.txt");
        folders.put("sending/b.txt");
        const SiteWindow site(folders);
        site.source().startFindUnlinkedItems();
        auto& rows = *site.find<QTableView>("unlinkedItemsTableView").model();
        QTRY_COMPARE(rows.rowCount(), 2);
        fs::remove(folders.at("sending/a.txt"));
        folders.put("sending/a.txt/kept");
        auto& remove = site.find<QPushButton>("unlinkedItemsDeleteButton");
        QTRY_VERIFY(remove.isEnabled());
        remove.click();
        findAlert(site)->buttons().first()->click();
        QTRY_COMPARE(tickedItems(site), QStringList{"a.txt"});
        QCOMPARE(folders.listing("sending"), std::string("a.txt/kept\n"));
        QTRY_VERIFY(remove.isEnabled());
    }

    void inTheMiddle_data()
    {
        QTest::addColumn<std::function<void(const SiteWindow&)>>("begin");
        QTest::addColumn<bool>("isUnlinked");
        QTest::addColumn<bool>("close");
        const auto addJob = [](const char* name, bool isUnlinked,
                               const std::function<void(const SiteWindow&)>& begin) {
            QTest::addRow("close: %s", name) << begin << isUnlinked << true;
            QTest::addRow("stop: %s", name) << begin << isUnlinked << false;
        };
        addJob("missing links", false, [](const SiteWindow& site) { site.source().startFindMissingLinks(); });
        addJob("unlinked items", true,
               [](const SiteWindow& site) { site.source().startFindUnlinkedItems(); });
        addJob("links to", false, [](const SiteWindow& site) { site.source().showLinksToItem(); });
        addJob("delete unlinked items", true, deleteAllUnlinked);
        addJob("rename", false, [](const SiteWindow& site) {
            site.source().browser().model().setData(SiteWindow::item(site.source(), 0, "a"), "z",
                                                    Qt::EditRole);
        });
    }
    void inTheMiddle()
    {
        QFETCH(std::function<void(const SiteWindow&)>, begin);
        QFETCH(bool, isUnlinked);
        QFETCH(bool, close);
        const LinkedSite folders;
        const std::string links(20'000, ' ');
        for (int i = 0; i < 400; ++i)
            folders.put("sending/many/" + std::to_string(i) + ".html", "<a href='../a/x.html'>" + links);
        const SiteWindow site(folders);
        site.source().browser().setPath({"a"});
        begin(site);
        if (close)
            site.window->close();
        else
            site.click(isUnlinked ? "unlinkedItemsStopButton" : "progressPanelStopButton");
        QTRY_COMPARE(QThreadPool::globalInstance()->activeThreadCount(), 0);
        if (!close)
            QTRY_VERIFY(isUnlinked ? site.isEnabled("unlinkedItemsRestartButton") : site.isDone());
        if (close && QByteArray(QTest::currentDataTag()).contains("rename"))
            QCOMPARE(folders.bytesOf("sending/many/7.html"), "<a href='../z/x.html'>" + links);
        QVERIFY(folders.listing("sending").find(".luma-") == std::string::npos);
    }
};

LUMA_TEST(tst_panelinks)
#include "tst_panelinks.moc"
