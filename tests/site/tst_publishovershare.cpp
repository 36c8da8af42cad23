// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/files.h"
#include "browser/itemcommands.h"
#include "mounts/mounts.h"
#include "mounts/sharelisting.h"
#include "site/filetransfer.h"
#include "site/foldercomparison.h"
#include "tests/site/sitewindow.h"
#include "tests/support/mainthread.h"
#include "tests/support/registry.h"
#include "tests/support/sambaserver.h"
#include "tests/support/screenshot.h"

#include <QApplication>
#include <QClipboard>
#include <QFile>
#include <QMenu>
#include <QMessageBox>
#include <QProcess>
#include <QScopeGuard>
#include <QTest>

#include <csignal>
#include <fstream>

namespace fs = std::filesystem;
using namespace luma;
using luma::test::runFlow;
using luma::test::SiteWindow;

/// One story over the real window, a share and the desktop's network file systems: each test
/// continues from the one before.
class tst_publishovershare final : public QObject
{
    Q_OBJECT

private:
    test::SambaServer m_samba;
    test::TwoFolders m_folders;
    std::shared_ptr<SiteRecord> m_record;
    std::unique_ptr<SiteWindow> m_site;

    // There is no ssh server.
    static HaldenDoc::Services services()
    {
        HaldenDoc::Services all = HaldenDoc::standardServices();
        all.remoteLogin.checkConnection = [](const QString&, const QString&) {
            return "fail - unknown user, host and port combination";
        };
        return all;
    }
    [[nodiscard]] QString address() const { return QString::fromStdString(m_samba.address()); }
    [[nodiscard]] fs::path site() const { return m_samba.folder("Web Site"); }

    bool connectPane(const char* flow) const
    {
        return runFlow(
            flow, [&] { m_site->connectButton().click(); },
            [&] { return m_site->connectState() == address(); });
    }
    std::string onShare(const char* name) const
    {
        const auto bytes = readFile(site() / name);
        return bytes ? *bytes : "unreadable: " + bytes.error().text;
    }
    static bool unmountByDesktop(const QString& address)
    {
        return QProcess::execute("gio", {"mount", "-u", address}) == 0;
    }

    [[nodiscard]] QWidget* ofDestination(const char* name) const
    {
        return m_site->destination().widget()->window()->findChild<QWidget*>(QLatin1String(name));
    }

private slots:
    void initTestCase()
    {
        if (!qEnvironmentVariableIsSet("LUMA_PRIVATE_SESSION"))
            QSKIP("not in a session of its own (scripts/private-session)");
        if (QFile device("/dev/fuse"); !device.open(QIODevice::ReadWrite))
            QSKIP("no FUSE here");
        if (const QString reason = test::SambaServer::whyNot(); !reason.isEmpty())
            QSKIP(qPrintable(reason));
        QVERIFY(m_samba.start());
        m_record = std::make_shared<SiteRecord>(QVariantMap{
            {"sourceDict", SiteWindow::localFolder(m_folders.sending())},
            {"destinationDict", QVariantMap{{"protocol", "smb://"},
                                            {"server", address().mid(6)},
                                            {"volume", "Web Site"},
                                            {"user", QString::fromStdString(test::SambaServer::user())},
                                            {"password", "No Secret 7"},
                                            {"autoconnect", 1}}}});
        for (const char* name :
             {"index.html", "My Page.html", "docs/gr\u00f6\u00dfe.html", "docs/deep/#1 & 100%.html"})
            m_folders.put(std::string("sending/") + name, "first", 100.5);
    }
    void cleanupTestCase() { m_site.reset(); }

    void wrongPassword_isRefusedWithoutAsking()
    {
        m_site = std::make_unique<SiteWindow>(m_record, services());
        QVERIFY(runFlow(
            "refused connection", [] {},
            [&] {
                return m_site->connectState() == "There is an error connecting to the Destination Server";
            }));
        QVERIFY(!QApplication::activeModalWidget() && !QApplication::activePopupWidget());
        QVERIFY(!m_site->destination().rootNode());
        QCOMPARE(m_site->connectButton().text(), "Connect");
        test::saveScreenshots(*m_site->window, "share-refused");
    }

    void rightPassword_showsTheShare()
    {
        std::ofstream(site() / "old.html") << "old";
        m_record->destinationDict()->setValue("password", QString::fromStdString(m_samba.password()));
        QVERIFY(connectPane("connection"));
        QCOMPARE(m_site->connectButton().text(), "Disconnect");
        QCOMPARE(m_site->shownNames(), QStringList{"old.html"});
        QTRY_COMPARE(m_site->text("connectionResultText"),
                     "Turn on rsync to make uploads and downloads go faster.");
    }

    void upload_leavesNothingToCompare()
    {
        QVERIFY(m_site->compare());
        QCOMPARE(m_site->rows().size(), 4);
        m_site->click("syncButton");
        auto& question = m_site->find<QMessageBox>("syncQuestion");
        QVERIFY2(question.text().contains("no file in common"), qPrintable(question.text()));
        question.buttons().constFirst()->click();
        QTRY_VERIFY(m_site->isSyncIdle() && m_site->rows().isEmpty());
        QCOMPARE(m_site->text("syncMessage"), QString());
        QCOMPARE(m_site->text("syncPanelTitle"), "No more files to be moved.");
        QCOMPARE(onShare("docs/deep/#1 & 100%.html"), std::string("first"));
        m_folders.put("sending/index.html", "second", 50);
        m_site->click("cancelButton");
        QVERIFY(m_site->compare());
        QCOMPARE(m_site->rows(), QStringList{"+index.html"});
        QVERIFY(m_site->transfer());
        QCOMPARE(onShare("index.html"), std::string("second"));
        for (const char* name : {"index.html", "My Page.html", "docs/deep/#1 & 100%.html"}) {
            const auto sent = fs::last_write_time(m_folders.sending() / name);
            const auto kept = fs::last_write_time(site() / name);
            QCOMPARE(std::chrono::floor<std::chrono::seconds>(kept).time_since_epoch().count(),
                     std::chrono::floor<std::chrono::seconds>(sent).time_since_epoch().count());
        }
        m_site->click("cancelButton");
        QVERIFY(m_site->compare());
        QCOMPARE(m_site->text("syncPanelTitle"), "Nothing changed from Source to Destination");
        m_site->click("cancelButton");
        QTRY_VERIFY(m_site->shownNames().contains("My Page.html"));
    }

    // All at once from gvfs, and item by item from the server's own folder.
    void listing_isThatOfTheServersFolder()
    {
        fs::create_directories(site() / "empty");
        std::ofstream(site() / ".hidden # %41.html") << "hidden";
        const auto listed = [](const fs::path& folder) {
            QStringList lines;
            const auto found = FolderComparison({.sending = folder, .receiving = {}}).find(WorkItem());
            for (const FilePair& file : found ? found->files : std::vector<FilePair>())
                lines += QStringLiteral("%1 %2 %3")
                             .arg(QString::fromStdString(file.path))
                             .arg(file.sent.size)
                             .arg(file.sent.time);
            for (const FilePair& folderFound : found ? found->emptyFolders : std::vector<FilePair>())
                lines += QString::fromStdString(folderFound.path);
            lines.sort();
            return lines;
        };
        const fs::path mounted = m_site->destination().mountPath();
        QVERIFY(shareListerFor(mounted));
        QCOMPARE(listed(mounted), listed(site()));
        QVERIFY(listed(mounted).size() > 5);
        fs::remove(site() / "empty");
        fs::remove(site() / ".hidden # %41.html");
        QVERIFY(!listShareFolder(mounted / "nowhere"));
    }

    // The copy has the time of what was copied; that of a change made meanwhile would hide the change.
    void changeDuringATransfer_isListedNext()
    {
        m_folders.put("sending/changing.html", "old!", 80);
        const SyncFolders folders = {.sending = m_folders.sending(),
                                     .receiving = m_site->destination().mountPath()};
        auto report = FolderComparison(folders).run(WorkItem());
        QVERIFY(report);
        QCOMPARE(report->rows.size(), std::size_t{1});
        const auto done = FileTransfer(report->rows).run(WorkItem(), [this](const SyncProgress&) {
            m_folders.put("sending/changing.html", "new!", 20);
        });
        QCOMPARE(done.done.size(), std::size_t{1});
        QCOMPARE(onShare("changing.html"), std::string("old!"));
        report = FolderComparison(folders).run(WorkItem());
        QCOMPARE(report->rows.size(), std::size_t{1});
        QVERIFY(FileTransfer(report->rows).run(WorkItem()).problems.empty());
        QCOMPARE(onShare("changing.html"), std::string("new!"));
    }

    void download_leavesNothingToCompare()
    {
        fs::create_directories(site() / "theirs");
        std::ofstream(site() / "theirs/news of 2026.html") << "news";
        QVERIFY(m_site->compare("downloadButton"));
        const QStringList listed = {"+old.html", "+theirs/news of 2026.html"};
        QVERIFY2(m_site->rows() == listed, qPrintable(m_site->rows().join(u'\n')));
        QVERIFY(m_site->transfer());
        QCOMPARE(m_folders.bytesOf("sending/theirs/news of 2026.html"), std::string("news"));
        m_site->click("cancelButton");
        QVERIFY(m_site->compare("downloadButton"));
        QCOMPARE(m_site->text("syncPanelTitle"), "Nothing changed from Destination to Source");
        m_site->click("cancelButton");
    }

    void secondWindow_takesTheShareThatIsMounted()
    {
        const fs::path folder = m_site->destination().mountPath();
        {
            const SiteWindow other(m_record, services());
            QTRY_COMPARE(other.connectState(), address());
            QCOMPARE(other.destination().mountPath(), folder);
        }
    }

    // While it is stopped, each call on the share's folder waits: none of these lines would be left.
    void silentShare_holdsNothingUp()
    {
        if (!m_site->destination().rootNode())
            QVERIFY(connectPane("connection before the share hangs"));
        BrowserController& pane = m_site->destination();
        pane.newFolder();
        QTRY_VERIFY(SiteWindow::item(pane, 0, "untitled folder").isValid());
        const pid_t daemon = test::SambaServer::fuseDaemon();
        QVERIFY(daemon > 0);
        QCOMPARE(::kill(daemon, SIGSTOP), 0);
        const auto goOn = qScopeGuard([daemon] { ::kill(daemon, SIGCONT); });
        const auto rename = [&pane](const char* name, const char* newName) {
            return pane.browser().model().setData(SiteWindow::item(pane, 0, name), newName, Qt::EditRole);
        };
        QVERIFY(rename("untitled folder", "new folder"));
        QVERIFY(rename("My Page.html", "renamed.html"));
        pane.browser().setPath({"index.html"});
        pane.itemCommands().showProperties();
        pane.itemCommands().copyRelativeLink();
        QCOMPARE(QGuiApplication::clipboard()->text(), QStringLiteral("index.html"));
        QMenu programs;
        pane.itemCommands().fillOpenWith(programs);
        emit programs.aboutToShow();
        QVERIFY(!programs.isEmpty());
        pane.newFolder();
        pane.browser().setPath({"docs"});
        pane.reload();
        m_site->click("uploadButton");
        QTRY_COMPARE(m_site->text("syncPanelTitle"),
                     "Move these new/modified files from Source to Destination?");
        m_site->click("cancelButton");
        QTRY_VERIFY(m_site->isSyncIdle());
        {
            const SiteWindow other(m_record, services());
            QTRY_VERIFY(other.destination().isConnecting());
        }
        QVERIFY(!ofDestination("propertySize"));

        QCOMPARE(::kill(daemon, SIGCONT), 0);
        QTRY_VERIFY(ofDestination("propertySize"));
        delete ofDestination("itemProperties");
        QTRY_VERIFY2(fs::exists(site() / "renamed.html"), qPrintable(m_site->log()));
        QTRY_VERIFY(fs::exists(site() / "new folder"));
        QTRY_VERIFY(SiteWindow::item(pane, 0, "renamed.html").isValid());
        QTRY_VERIFY(SiteWindow::item(pane, 0, "new folder").isValid());
        QVERIFY(fs::remove(site() / "new folder"));
        // Perhaps it was made before the first one had its new name, and has another one.
        const auto madeMeanwhile = [this] {
            return fs::exists(site() / "untitled folder") ? site() / "untitled folder"
                                                          : site() / "untitled folder 2";
        };
        QTRY_VERIFY(fs::exists(madeMeanwhile()));
        QVERIFY(fs::remove(madeMeanwhile()));
        QVERIFY(rename("renamed.html", "My Page.html"));
        QTRY_VERIFY(fs::exists(site() / "My Page.html"));
        QVERIFY(m_site->compare());
        m_site->click("cancelButton");
    }

    void unmountedBehindOurBack_emptiesThePane()
    {
        if (!m_site->destination().rootNode())
            QVERIFY(connectPane("connection"));
        const QString volume = QLatin1String("smb://") + QString::fromStdString(test::SambaServer::user()) +
                               u'@' + address().mid(6) + "/web%20site";
        bool isUnmounted = false;
        QTRY_VERIFY(isUnmounted = isUnmounted || unmountByDesktop(volume)); // once nothing uses it any more
        QTRY_COMPARE(m_site->connectState(), QString());
        QVERIFY(!m_site->destination().rootNode());
        QVERIFY(m_site->destination().mountPath().empty());
        QCOMPARE(m_site->connectButton().text(), "Connect");
        QVERIFY(m_site->window->sourceBrowserController().rootNode());
    }

    void disconnecting_unmounts()
    {
        QVERIFY(connectPane("connection once more"));
        const fs::path folder = m_site->destination().mountPath();
        QVERIFY(fs::exists(folder));
        QVERIFY(runFlow(
            "disconnection", [&] { m_site->connectButton().click(); },
            [&] { return m_site->connectState().isEmpty(); }));
        // The mount point may outlive the mount for a while.
        const std::string share = m_samba.address() + "/Web%20Site";
        QTRY_VERIFY(!findExistingMount(share, test::SambaServer::user()));
        QTRY_VERIFY(!fs::exists(folder / "index.html"));
    }

    // The server ends after the first of many files.
    void vanishedShare_endsTheTransferWithAMessage()
    {
        QVERIFY(connectPane("connection before the server ends"));
        for (int i = 0; i < 50; ++i)
            m_folders.put("sending/many/" + std::to_string(i) + ".html", "new", 10);
        const SyncFolders folders = {.sending = m_folders.sending(),
                                     .receiving = m_site->destination().mountPath()};
        const auto report = FolderComparison(folders).run(WorkItem());
        QVERIFY(report);
        QVERIFY(report->rows.size() >= 50);
        const auto done = FileTransfer(report->rows).run(WorkItem(), [this](const SyncProgress& progress) {
            if (progress.rows == 5)
                m_samba.stop();
        });
        QCOMPARE(done.problems.size(), std::size_t{1});
        QVERIFY2(done.problems[0].text.find("the server no longer answers") != std::string::npos,
                 done.problems[0].text.c_str());
        for (const auto& entry : fs::directory_iterator(site() / "many"))
            QVERIFY(entry.file_size() == 3 || entry.path().filename().native().starts_with(".luma-"));
        const auto compared = FolderComparison(folders).run(WorkItem());
        QVERIFY(!compared || !compared->problems.empty());
    }
};

LUMA_TEST(tst_publishovershare)
#include "tst_publishovershare.moc"
