// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/files.h"
#include "site/filetransfer.h"
#include "site/foldercomparison.h"
#include "site/rsyncjob.h"
#include "tests/site/hostilenames.h"
#include "tests/site/twofolders.h"
#include "tests/support/registry.h"
#include "tests/support/rows.h"

#include <QTest>

namespace fs = std::filesystem;
using namespace luma;
using luma::test::TwoFolders;

class tst_rsynccommand final : public QObject
{
    Q_OBJECT

private:
    static std::string join(const std::vector<std::string>& words)
    {
        std::string text;
        for (const std::string& word : words)
            text += word + "|";
        return text;
    }

    // Every kind of name, below `folder`.
    static void putNames(const TwoFolders& folders, const std::string& folder = "sending")
    {
        for (const std::string& name : test::hostileNames())
            folders.put(folder + "/" + name);
        fs::create_symlink("nowhere", folders.at(folder + "/sub/link"));
    }

    static RsyncJob job(const TwoFolders& folders, ProgramRunner run = &runProgram,
                        Direction direction = Direction::Upload)
    {
        std::string local = folders.sending().string() + "/";
        std::string remote = folders.receiving().string() + "/";
        if (direction == Direction::Download)
            std::swap(local, remote);
        return {{local, remote, direction, "22"}, std::move(run)};
    }

    static ComparisonReport compare(const TwoFolders& folders, const char* ignored = "",
                                    Direction direction = Direction::Upload,
                                    Deletions deletions = Deletions::Listed)
    {
        auto report =
            job(folders, &runProgram, direction).compare(IgnoredNames(ignored), deletions, WorkItem());
        return report ? std::move(*report) : ComparisonReport{{}, {report.error().text}, 0, {}, {}};
    }

    static ComparisonReport walk(const TwoFolders& folders, Deletions deletions = Deletions::Listed,
                                 const char* ignored = "")
    {
        return *FolderComparison({folders.sending(), folders.receiving()}, IgnoredNames(ignored), deletions)
                    .run(WorkItem());
    }

    // All that the table shows.
    static std::string text(const ComparisonReport& report)
    {
        std::string lines;
        for (const SyncRow& row : report.rows) {
            lines += std::to_string(int(row.kind)) + " " + row.displayName + " " + textOf(row.reason);
            for (const FileFacts& facts : {row.sent, row.received})
                lines += " " + std::to_string(int(facts.type)) + " " + std::to_string(facts.size) + " " +
                         std::to_string(facts.time) + facts.target;
            lines += "\n";
        }
        return lines;
    }

    static std::string namesOf(const std::vector<SyncRow>& rows)
    {
        std::vector<std::string> names;
        for (const SyncRow& row : rows)
            names.push_back(row.displayName);
        std::sort(names.begin(), names.end());
        return join(names);
    }

private slots:
    void wordsOfTheRuns()
    {
        const RsyncCommand command({"/home/me/My Site/", "me@host:/var/www/", Direction::Upload, "2222"});
        const std::string ssh =
            "ssh -p 2222 -o ConnectTimeout=60 -o ServerAliveInterval=15 -o ServerAliveCountMax=3";
        QCOMPARE(
            join(command.listing(IgnoredNames("drafts/\n/a b/*.bak"))),
            std::string(
                "env|TZ=UTC0|rsync|-e|" + ssh +
                "|--timeout=180|--dry-run|--links|"
                "--out-format=|%i %l %M %n//%L|--debug=FILTER|--recursive|"
                "--filter=- .git|--filter=- .svn|--filter=- .hg|--filter=- *~|"
                "--filter=- .*.swp|--filter=- Thumbs.db|--filter=- .DS_Store|"
                "--filter=- .luma-??????|--filter=- .*.luma-kept/|--filter=- drafts/|--filter=- /a b/*.bak|"
                "--|me@host:/var/www/|/proc/none/|"));
        QCOMPARE(join(command.transfer(RsyncCommand::Overwrites::OlderFiles)),
                 std::string("rsync|-e|" + ssh +
                             "|--timeout=180|-az|--out-format=|%i %n|--update|--from0|"
                             "--files-from=-|--|/home/me/My Site/|me@host:/var/www/|"));
        QCOMPARE(RsyncCommand::nameList({"a b", "#x"}), std::string("./a b\0./#x\0", 11));
        QCOMPARE(join(RsyncCommand({"/x/", "me@host:it's $x/", Direction::Upload, "7"}).freeSpace()),
                 std::string(
                     "ssh|-p|7|-o|ConnectTimeout=60|-o|ServerAliveInterval=15|-o|"
                     "ServerAliveCountMax=3|-o|BatchMode=yes|--|me@host|LC_ALL=C df -Pk -- 'it'\\''s $x/'|"));
        QCOMPARE(readFreeSpace("Filesystem 1024-blocks Used Available Capacity Mounted on\n"
                               "/dev/sda1 1000 990 10 99% /\n"),
                 std::optional<std::int64_t>(10240));
        QVERIFY(!readFreeSpace("rsync only\n"));
        QVERIFY(!RsyncCommand({"/x/", "", Direction::Upload, "22"}).isComplete());
    }

    void argumentsComeFromTheRecord()
    {
        QVariantMap destination = {
            {"user", "me"}, {"server", "host"}, {"path", "/www"}, {"sshPortNo", "2222"}};
        const SiteRecord whole(
            {{"sourceDict", QVariantMap{{"path", "/home/me/site"}}}, {"destinationDict", destination}});
        const auto arguments = RsyncArguments::of(whole, Direction::Upload);
        QCOMPARE(join({arguments.local, arguments.remote, arguments.port}),
                 std::string("/home/me/site/|me@host:/www/|2222|"));
        destination.remove("user");
        destination["sshPortNo"] = 2222;
        const auto incomplete =
            RsyncArguments::of(SiteRecord({{"destinationDict", destination}}), Direction::Upload);
        QCOMPARE(join({incomplete.local, incomplete.remote, incomplete.port}), std::string("||22|"));
    }

    void output_isReadLineByLine()
    {
        const auto listing = readRsyncListing("[sender] hiding directory a b/.git because of pattern .git\n"
                                              "|cd+++++++++ 4096 2026/11/22-02:30:05 .///\n"
                                              "|>f+++++++++ 12 1969/12/31-23:59:58  lead\\#012//\n"
                                              "|cL+++++++++ 6 2026/11/22-02:30:05 l -> m// -> a -> b\n"
                                              "|cS+++++++++ 0 2026/11/22-02:30:05 socket//\n"
                                              "|>f\n|>f+++++++++ x\nnoise\n\n");
        QCOMPARE(listing.items.size(), std::size_t{3});
        QCOMPARE(listing.items.at(" lead\n").size, 12);
        QCOMPARE(listing.items.at(" lead\n").time, -2);
        QCOMPARE(listing.items.at("l -> m").target, std::string("a -> b"));
        QCOMPARE(listing.items.at("").time, 1795314605);
        QCOMPARE(join(listing.hidden), std::string("a b/.git|"));
        QCOMPARE(join(readRsyncNames("|*deleting   old/deep/\n|>f.st......  lead\\#012\n"
                                     "|.f...p..... mode.html\ncannot delete non-empty directory: x\n")),
                 std::string("old/deep| lead\n|"));
        QCOMPARE(nameWithoutDeleting("deleting old/deleting page.html"), std::string("old/page.html"));
    }

    // The two ways of comparing agree on every row, whatever the direction.
    void bothModesListTheSame_data()
    {
        QTest::addColumn<bool>("isUpload");
        QTest::addColumn<bool>("deletes");
        for (const bool isUpload : {true, false}) {
            for (const bool deletes : {true, false})
                QTest::addRow("%s%s", isUpload ? "upload" : "download", deletes ? ", deletions" : "")
                    << isUpload << deletes;
        }
    }
    void bothModesListTheSame()
    {
        QFETCH(bool, isUpload);
        QFETCH(bool, deletes);
        const TwoFolders folders;
        putNames(folders, "sending/x");
        putNames(folders, "receiving/y");
        folders.putAll("sending", "core|a.o|s/same|s/.cvsignore");
        folders.putAll("receiving", "core~|old/deep/a.o|s/same");
        folders.put("sending/s/newer", "now", 10);
        folders.put("receiving/s/newer", "old", 20);
        folders.put("sending/s/older", "old", 20);
        folders.put("receiving/s/older", "now", 10);
        folders.put("sending/s/cut", "whole");
        folders.put("receiving/s/cut", "who");
        fs::create_directories(folders.at("receiving/empty/e"));
        fs::create_symlink("b", folders.at("receiving/s/link"));
        fs::create_symlink("a", folders.at("sending/s/link"));
        fs::create_symlink("a", folders.at("sending/s/core"));
        const Deletions deletions = deletes ? Deletions::Listed : Deletions::Ignored;
        const auto direction = isUpload ? Direction::Upload : Direction::Download;
        const ComparisonReport found = compare(folders, "", direction, deletions);
        QVERIFY(found.rows.size() > 40);
        QCOMPARE(text(found), text(walk(folders, deletions)));
    }

    // Half of all names, then the other half: those that a pattern or a shell would take for each other too.
    void exactlyTheTickedRowsAreDone_data()
    {
        const test::Rows<std::string, bool> row("side", "rsync");
        for (const bool rsync : {false, true}) {
            row(rsync ? "sent by rsync" : "sent", std::string("sending"), rsync);
            row(rsync ? "deleted by rsync" : "deleted", std::string("receiving"), rsync);
        }
    }
    void exactlyTheTickedRowsAreDone()
    {
        QFETCH(std::string, side);
        QFETCH(bool, rsync);
        for (const std::size_t remainder : {0U, 1U}) {
            const TwoFolders folders;
            putNames(folders, side);
            ComparisonReport found = rsync ? compare(folders) : walk(folders);
            QCOMPARE(found.rows.size(), test::hostileNames().size() + 1);
            std::vector<SyncRow> left;
            for (std::size_t i = remainder; i < found.rows.size(); i += 2) {
                found.rows[i].select = false;
                left.push_back(found.rows[i]);
            }
            const std::size_t done =
                rsync ? job(folders).transfer(found.rows, found.foldersOnlyThere, {}, {}).done.size()
                      : FileTransfer(found.rows, found.foldersOnlyThere).run(WorkItem()).done.size();
            QCOMPARE(done, found.rows.size() - left.size());
            QCOMPARE(namesOf((rsync ? compare(folders) : walk(folders)).rows), namesOf(left));
            for (const auto& place :
                 {folders.root(), fs::current_path(), fs::path(qgetenv("HOME").toStdString())})
                QVERIFY(!itemExists(place / "evil"));
        }
    }

    void emptiedFoldersAreDeleted_othersStay()
    {
        const TwoFolders folders;
        folders.putAll("receiving", "old/a/b/1.html|old/a/b/2.html|kept/x.html|kept/y.html");
        fs::create_directories(folders.at("receiving/empty/e"));
        ComparisonReport found = compare(folders);
        QCOMPARE(namesOf(found.rows),
                 std::string("deleting empty/e/|deleting kept/x.html|deleting kept/y.html|"
                             "deleting old/a/b/1.html|deleting old/a/b/2.html|"));
        for (SyncRow& row : found.rows)
            row.select = row.relativePath != "kept/y.html";
        (void)job(folders).transfer(found.rows, found.foldersOnlyThere, {}, {});
        QCOMPARE(folders.listing("receiving"), std::string("kept/y.html\n"));
        QVERIFY(!itemExists(folders.at("receiving/old")) && !itemExists(folders.at("receiving/empty")));
    }

    void pagesComeAfterOtherFiles_deletionsLast()
    {
        const TwoFolders folders;
        folders.putAll("sending", "a.html|b.PHP|c.css|sub/d.png|e.xml");
        folders.putAll("receiving", "gone.html");
        std::string lists;
        const ComparisonReport found = compare(folders);
        const RsyncJob listed =
            job(folders, [&](const auto& words, std::string_view input, const auto& wanted) {
                lists.append(input).append("|");
                return runProgram(words, input, wanted);
            });
        (void)listed.transfer(found.rows, found.foldersOnlyThere, {}, {});
        std::replace(lists.begin(), lists.end(), '\0', ' ');
        QCOMPARE(lists, std::string("./c.css ./sub/d.png |./a.html ./b.PHP ./e.xml |./gone.html |"
                                    "./a.html ./b.PHP ./c.css ./e.xml ./sub/d.png |"));
    }

    void ignoredNamesAreCounted_andNeverDeleted()
    {
        const TwoFolders folders;
        for (const char* side : {"sending", "receiving"})
            folders.putAll(side, std::string(".git/") + side + "|draft 1/" + side + "|s/draft 2|" + side +
                                     "~|keep/notes.txt/" + side + "|Thumbs.db|sub/.x.swp");
        folders.put("sending/sub/notes.txt");
        const ComparisonReport found = compare(folders, "draft*/\n/keep/notes.txt\n");
        QCOMPARE(namesOf(found.rows), std::string("sub/notes.txt|"));
        QCOMPARE(found.ignored, std::size_t{6});
        const ComparisonReport walked = walk(folders, Deletions::Listed, "draft*/\n/keep/notes.txt");
        QCOMPARE(namesOf(walked.rows), std::string("sub/notes.txt|"));
        QCOMPARE(walked.ignored, std::size_t{6});
    }

    void aFailedComparisonGivesTheReason()
    {
        const TwoFolders folders;
        const RsyncJob gone({folders.sending().string() + "/", folders.at("gone/").string()}, &runProgram);
        const auto failed = gone.compare(IgnoredNames(), Deletions::Ignored, WorkItem());
        QVERIFY(!failed);
        QVERIFY2(failed.error().text.find("No such file or directory") != std::string::npos,
                 failed.error().text.c_str());
        QVERIFY(!RsyncJob({}, &runProgram).compare(IgnoredNames(), Deletions::Ignored, WorkItem()));
        const auto refused =
            RsyncJob({folders.sending().string() + "/", "me@127.0.0.1:/x/", Direction::Upload, "1"},
                     &runProgram)
                .compare(IgnoredNames(), Deletions::Ignored, WorkItem());
        QVERIFY2(refused.error().text.find("Connection refused") != std::string::npos,
                 refused.error().text.c_str());
    }

    void whatBecameNewerMeanwhileStays_andIsNamed()
    {
        const TwoFolders folders;
        folders.put("sending/a.html", "mine", 20);
        const ComparisonReport found = compare(folders);
        folders.put("receiving/a.html", "theirs", 10);
        const RsyncReport report = job(folders).transfer(found.rows, {}, {}, {});
        QVERIFY(report.done.empty());
        QCOMPARE(join(report.problems),
                 std::string("a.html: the receiving side has been changed since the comparison|"));
        QCOMPARE(folders.bytesOf("receiving/a.html"), std::string("theirs"));
    }

    void aStoppedTransferIsEnded_andSaysWhatIsDone()
    {
        const TwoFolders folders;
        folders.put("sending/a.txt");
        folders.put("sending/b.bin", std::string(5'000'000, 'x'));
        const RsyncJob slow = job(folders, [](auto words, std::string_view input, const auto& wanted) {
            words.insert(words.end() - 3, {"--bwlimit=50", "--no-compress"});
            return runProgram(words, input, wanted);
        });
        const ComparisonReport found = compare(folders);
        const auto untilTheFirstIsThere = [&] { return !itemExists(folders.at("receiving/a.txt")); };
        const RsyncReport report = slow.transfer(found.rows, {}, untilTheFirstIsThere, {});
        QCOMPARE(report.done, std::vector<std::size_t>{0});
        QCOMPARE(report.received.size(), std::size_t{1});
        QVERIFY(report.received[0].isSameFile(found.rows[0].sent));
        QCOMPARE(join(report.problems), std::string());
        QTRY_COMPARE(folders.listing("receiving"), std::string("a.txt\n"));
    }

    // Those of the user's files that have such a name stay.
    void whatAKilledTransferHasLeftGoes()
    {
        const TwoFolders folders;
        const std::string longName(240, 'n');
        folders.putAll("sending", "a.html|.htaccess|s/" + longName + "|s/page");
        folders.putAll("receiving", ".a.html.backup|a.html.backup|s/.page.backup");
        const auto publish = [&folders](const ProgramRunner& run) {
            const auto lock = lockForPublishing("a site");
            const RsyncJob killed = job(folders, run);
            const auto found = *job(folders).compare(IgnoredNames(".*.AAAAAA"), Deletions::Ignored,
                                                     WorkItem(), PublishedFiles::load("a site"));
            return killed.transfer(found.rows, {}, {}, {}, {}, {}, found.leftovers).problems.empty();
        };
        const ProgramRunner dies = [](const auto&, std::string_view, const auto&) {
            return ProgramResult{12, {}, "rsync: connection unexpectedly closed\n"};
        };
        QVERIFY(!publish(dies));
        folders.putAll("receiving", ".a.html.x1Y2z3|.htaccess.AAAAAA|s/." + longName +
                                        ".abc123|.other.html.x1Y2z3|"
                                        "s/.a.html.x1Y2z3|.a.html.x1Y2z|s/.page.x1_2z3");
        QVERIFY(publish(&runProgram));
        QCOMPARE(folders.listing("receiving"),
                 ".a.html.backup\n.a.html.x1Y2z\n.htaccess\n.other.html.x1Y2z3\na.html\na.html.backup\n"
                 "s/.a.html.x1Y2z3\ns/.page.backup\ns/.page.x1_2z3\ns/" +
                     longName + "\ns/page\n");
        folders.put("receiving/.a.html.x1Y2z3");
        folders.put("sending/a.html", "new", 5);
        QVERIFY(publish(&runProgram));
        QVERIFY(itemExists(folders.at("receiving/.a.html.x1Y2z3")));
    }

    void leftoversOfOneDirectionSayNothingAboutTheOther()
    {
        const std::vector<std::string> temporaries = {".a.html.x1Y2z3"};
        const auto found = [&](Direction direction) {
            return RsyncLeftovers("two ways", direction, temporaries).paths();
        };
        RsyncLeftovers("two ways", Direction::Upload, {}).noteBegin();
        QVERIFY(found(Direction::Download).empty());
        QCOMPARE(found(Direction::Upload), temporaries);
        const RsyncLeftovers next =
            RsyncLeftovers("two ways", Direction::Upload, temporaries).leftToTheNext();
        QVERIFY(next.paths().empty());
        next.noteBegin();
        next.noteEnd();
        QCOMPARE(found(Direction::Upload), temporaries);
    }

    void whatFailedIsNamed_theRestIsDone()
    {
        const TwoFolders folders;
        folders.putAll("sending", "a.css|b.css|c.html");
        folders.put("receiving/gone.html");
        const ComparisonReport found = compare(folders);
        folders.put("receiving/a.css/in the way");
        const RsyncReport report = job(folders).transfer(found.rows, {}, {}, {});
        QCOMPARE(found.rows.size(), std::size_t{4});
        QCOMPARE(report.done, (std::vector<std::size_t>{1, 2}));
        QVERIFY2(join(report.problems).find("a.css") != std::string::npos, join(report.problems).c_str());
        QCOMPARE(folders.listing("receiving"), std::string("a.css/in the way\nb.css\nc.html\ngone.html\n"));
    }
};

LUMA_TEST(tst_rsynccommand)
#include "tst_rsynccommand.moc"
