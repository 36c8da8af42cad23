// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/sshcontroller.h"
#include "site/filetransfer.h"
#include "site/foldercomparison.h"
#include "site/keptversions.h"
#include "site/rsyncjob.h"
#include "tests/site/twofolders.h"
#include "tests/support/registry.h"
#include "tests/support/sshserver.h"

#include <QTest>

namespace fs = std::filesystem;
using namespace luma;

namespace {

const WorkItem item;
const std::string hardName = "it's $(a) \"b\"\n#1.html";

} // namespace

class tst_keptversions final : public QObject
{
    Q_OBJECT

private:
    test::SshServer m_server;
    std::unique_ptr<test::TwoFolders> m_folders;
    bool m_byRsync = false;
    PublishedFiles m_published;

    RsyncArguments arguments() const
    {
        return {m_folders->sending().native() + '/',
                m_server.login() + ':' + m_folders->receiving().native() + '/', Direction::Upload,
                m_server.port()};
    }
    KeptVersions versions(const KeepChoice& choice = {}) const
    {
        return *(m_byRsync ? KeptVersions::onServer(arguments(), &runProgram, choice)
                           : KeptVersions::here(m_folders->receiving(), choice));
    }
    // Everything that differs; what could not be done.
    std::vector<std::string> publish(const KeepChoice& choice = {})
    {
        const RsyncJob job(arguments(), &runProgram);
        const SyncFolders folders = {m_folders->sending(), m_folders->receiving()};
        auto report = *(m_byRsync ? job.compare(IgnoredNames(), Deletions::Listed, item)
                                  : FolderComparison(folders, IgnoredNames(), Deletions::Listed).run(item));
        const KeptPublish kept = versions(choice).newPublish();
        RsyncReport done;
        if (m_byRsync) {
            done = job.transfer(report.rows, report.foldersOnlyThere, {}, {}, {}, kept);
        } else {
            TransferReport copied = FileTransfer(report.rows, report.foldersOnlyThere, kept).run(item);
            done = {std::move(copied.done), std::move(copied.received), {}};
            for (const TransferProblem& problem : copied.problems)
                done.problems.push_back(problem.text);
        }
        m_published = std::move(report.published);
        for (std::size_t i = 0; i < done.done.size(); ++i)
            noteTransfer(m_published, report.rows[done.done[i]], done.received[i], Direction::Upload);
        return done.problems;
    }
    std::vector<SyncRow> rowsOf(const KeptFiles& kept) const
    {
        return *versions().rows(kept, m_published, Direction::Upload, item);
    }
    static std::string text(const std::vector<SyncRow>& rows)
    {
        std::string all;
        for (const SyncRow& row : rows)
            all += (row.select ? "+" : "-") + row.relativePath + ": " + textOf(row.reason) + '\n';
        return all;
    }
    void giveAll() const
    {
        if (m_byRsync)
            m_server.giveToUser(m_folders->root());
    }
    // The connection dies with a temporary file of rsync beside one of the user's that looks alike.
    void killedRestore_isTidiedByTheNextRun(const std::string& publish, const std::vector<SyncRow>& rows)
    {
        m_folders->put("receiving/.page.html.backup", "mine");
        int runs = 0;
        const ProgramRunner dies = [&](const auto& words, std::string_view input, const StillWanted& wanted) {
            if (++runs <= 2)
                return runProgram(words, input, wanted);
            m_folders->put("receiving/.page.html.x1Y2z3", "half");
            return ProgramResult{12, {}, "rsync: connection unexpectedly closed\n"};
        };
        const RestoreReport report =
            KeptVersions::onServer(arguments(), dies, {})->restore("a site", publish, rows, item, item);
        QVERIFY(report.done.empty() && !report.problems.empty());
        giveAll();
        const auto next =
            RsyncJob(arguments(), &runProgram)
                .compare(IgnoredNames(), Deletions::Ignored, item, PublishedFiles::load("a site"));
        QVERIFY(next);
        QCOMPARE(next->leftovers.paths(), std::vector<std::string>{".page.html.x1Y2z3"});
        fs::remove(m_folders->at("receiving/.page.html.backup"));
        fs::remove(m_folders->at("receiving/.page.html.x1Y2z3"));
    }
    static void addModes()
    {
        QTest::addColumn<bool>("byRsync");
        QTest::newRow("in a folder") << false;
        QTest::newRow("on a server") << true;
    }

private slots:
    void initTestCase()
    {
        if (m_server.start())
            QCOMPARE(SSHController::setUpRemoteLogin(m_server.login(), m_server.port(), m_server.password()),
                     std::string());
    }
    void init()
    {
        QFETCH(bool, byRsync);
        m_byRsync = byRsync;
        if (m_byRsync && !m_server.skipReason().isEmpty())
            QSKIP(qPrintable(m_server.skipReason()));
        m_folders = std::make_unique<test::TwoFolders>();
        fs::permissions(m_folders->root(), fs::perms(0755));
        m_published = {};
    }

    void whatAPublishReplacedAndDeletedIsPutBack_data() { addModes(); }
    void whatAPublishReplacedAndDeletedIsPutBack()
    {
        for (const std::string& name :
             {std::string("page.html"), "docs/" + hardName, std::string("edited")}) {
            m_folders->put("receiving/" + name, "old", 100);
            m_folders->put("sending/" + name, "newer", 50);
        }
        m_folders->put("receiving/gone/away.css", "old", 100);
        m_folders->put("sending/new.html", "new", 50);
        giveAll();
        QVERIFY(versions().list(item)->empty());
        QVERIFY(publish().empty());
        QCOMPARE(m_folders->listing("receiving"), m_folders->listing("sending"));

        m_folders->put("receiving/edited", "by hand", 10);
        giveAll();
        const auto kept = versions().list(item);
        QVERIFY(kept && kept->size() == 1);
        std::vector<SyncRow> rows = rowsOf(kept->front());
        const std::string replaced = ": Replaced by this publish\n";
        QCOMPARE(text(rows), "+docs/" + hardName + replaced +
                                 "-edited: Changed there since the last publish\n" +
                                 "+gone/away.css: Deleted by this publish\n" + "+page.html" + replaced);
        if (m_byRsync)
            killedRestore_isTidiedByTheNextRun(kept->front().publish, rows);
        const RestoreReport report = versions().restore("a site", kept->front().publish, rows, item, item);
        QVERIFY2(report.problems.empty(), report.problems.empty() ? "" : report.problems.front().c_str());
        QCOMPARE(report.done, (std::vector<std::size_t>{0, 2, 3}));
        for (const std::string& name :
             {std::string("page.html"), "docs/" + hardName, std::string("gone/away.css")})
            QCOMPARE(m_folders->bytesOf("receiving/" + name), std::string("old"));
        QCOMPARE(m_folders->bytesOf("receiving/edited"), std::string("by hand"));
        QCOMPARE(text(rowsOf(kept->front())), std::string("-edited: Changed there since the last publish\n"));

        // What was replaced by that is kept, too.
        const auto again = versions().list(item);
        QVERIFY(again && again->size() == 2 && again->at(1).publish == kept->front().publish);
        QCOMPARE(again->front().files.size(), std::size_t{2});
    }

    void onlyOldFoldersOfPublishesAreRemoved_data() { addModes(); }
    void onlyOldFoldersOfPublishesAreRemoved()
    {
        const std::string place = ".receiving.luma-kept/";
        const std::string old = "luma-20200102T030405.006Z";
        m_folders->put(place + old + "/deep/in/a.html");
        m_folders->put(place + KeptPlace::publishNow() + "/a.html");
        m_folders->put(place + "luma-20200102T030405.006Z.txt/a.html");
        m_folders->put(place + "notes.txt");
        m_folders->put("elsewhere/precious.txt");
        fs::create_directory_symlink(m_folders->at("elsewhere"),
                                     m_folders->at(place + "luma-20200102T030405.007Z"));
        giveAll();
        QVERIFY(versions().removeOlder(30, {}));
        QVERIFY(!fs::exists(m_folders->at(place + old)));
        QVERIFY(fs::exists(m_folders->at("elsewhere/precious.txt")));
        QCOMPARE(versions().list(item)->size(), std::size_t{1});
        QVERIFY(fs::exists(m_folders->at(place + "luma-20200102T030405.006Z.txt/a.html")));
        QVERIFY(fs::exists(m_folders->at(place + "notes.txt")));

        // A link in the place of the folder leads to files of somebody else.
        fs::rename(m_folders->at(place), m_folders->at("elsewhere/moved"));
        fs::create_directory(m_folders->at("elsewhere/moved/" + old));
        m_folders->put("elsewhere/moved/" + old + "/a.html");
        fs::create_directory_symlink(m_folders->at("elsewhere/moved"), m_folders->at(".receiving.luma-kept"));
        giveAll();
        (void)versions().removeOlder(30, {});
        QVERIFY(fs::exists(m_folders->at("elsewhere/moved/" + old + "/a.html")));
    }

    void whatCannotBeKeptIsNotReplaced_data() { addModes(); }
    void whatCannotBeKeptIsNotReplaced()
    {
        m_folders->put("receiving/page.html", "old", 100);
        m_folders->put("sending/page.html", "newer", 50);
        if (m_byRsync) {
            m_server.giveToUser(m_folders->receiving());
            QCOMPARE(publish().front(),
                     std::string("What is replaced can't be kept in "
                                 "\"../.receiving.luma-kept\"; choose another folder for it"));
            QCOMPARE(m_folders->bytesOf("receiving/page.html"), std::string("old"));
        }
        giveAll();
        // A file where the folder should be stops root as well.
        m_folders->put("kept", "a file");
        const auto problems = publish({.days = 1, .folder = m_folders->at("kept")});
        QVERIFY(!problems.empty());
        QVERIFY2(problems.front().find("kept") != std::string::npos, problems.front().c_str());
        QCOMPARE(m_folders->bytesOf("receiving/page.html"), std::string("old"));
        QVERIFY(publish({.days = 1, .folder = m_folders->at("other/../elsewhere")}).empty());
        QVERIFY(!KeptVersions::here(m_folders->receiving(),
                                    {.days = 1, .folder = m_folders->at("receiving/kept")}));
        QVERIFY(!KeptVersions::here("/", {}) && !KeptVersions::here("/a", {.days = 1, .folder = "relative"}));
    }
};

LUMA_TEST(tst_keptversions)
#include "tst_keptversions.moc"
