// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/files.h"
#include "site/foldercomparison.h"
#include "site/rsyncjob.h"
#include "tests/site/twofolders.h"
#include "tests/support/registry.h"

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
        folders.putAll(folder,
                       "plain.html|My Page.html|sub/plain.html|sub/deep/x_y-z|'single'|\"double\"|$HOME|"
                       "`touch evil`|a;touch evil|(x)|a&b|*|a*b|axb|[a]|a|back\\slash|\\*|-rf|- dash|"
                       "dash|+ plus|;semi|!|\xc3\xbc.html|new\nline|new\\#012line|bad\xff|esc\\#012x|?|q?b|"
                       "{a,b}|a -> b| lead|trail |two  blanks|tab\there|***|sub/*|sub/[x]\\|"
                       "deleting foo|a deleting b|*deleting   x|>f+++++++++ x|:colon|a:b");
        fs::create_symlink("nowhere", folders.at(folder + "/sub/link"));
    }

    static RsyncJob job(const TwoFolders& folders, ProgramRunner run = &runProgram)
    {
        return {{folders.sending().string() + "/", folders.receiving().string() + "/", "22", true},
                std::move(run)};
    }

    static ComparisonReport compare(const TwoFolders& folders, const char* ignored = "")
    {
        auto report = job(folders).compare(IgnoredNames(ignored), {});
        return report ? std::move(*report) : ComparisonReport{{}, {report.error().text}, 0, {}};
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
        const RsyncCommand command({"/home/me/My Site/", "me@host:/var/www/", "2222", true});
        QVERIFY(join(command.comparison(IgnoredNames("drafts/\n/a b/*.bak")))
                    .starts_with("rsync|-e|ssh -p 2222|-az|--out-format=|%i %n|-C|--update|--dry-run|"));
        const std::string words = join(command.comparison(IgnoredNames("drafts/\n/a b/*.bak")));
        QVERIFY(words.ends_with("|--delete|--filter=- .git|--filter=- .svn|--filter=- .hg|--filter=- *~|"
                                "--filter=- .*.swp|--filter=- Thumbs.db|--filter=- .DS_Store|"
                                "--filter=- .luma-??????|--filter=- drafts/|--filter=- /a b/*.bak|"
                                "--|/home/me/My Site/|me@host:/var/www/|"));
        QCOMPARE(RsyncCommand::nameList({"a b", "#x"}), std::string("./a b\0./#x\0", 11));
        QVERIFY(!RsyncCommand({"/x/", "", "22", false}).isComplete());
    }

    void argumentsComeFromTheRecord()
    {
        QVariantMap destination = {
            {"user", "me"}, {"server", "host"}, {"path", "/www"}, {"sshPortNo", "2222"}};
        const SiteRecord whole(
            {{"sourceDict", QVariantMap{{"path", "/home/me/site"}}}, {"destinationDict", destination}});
        const auto up = RsyncArguments::of(whole, Direction::Upload, false);
        QCOMPARE(join({up.source, up.destination, up.port}),
                 std::string("/home/me/site/|me@host:/www/|2222|"));
        const auto down = RsyncArguments::of(whole, Direction::Download, false);
        QCOMPARE(join({down.source, down.destination}), std::string("me@host:/www/|/home/me/site/|"));
        destination.remove("user");
        destination["sshPortNo"] = 2222;
        const auto incomplete =
            RsyncArguments::of(SiteRecord({{"destinationDict", destination}}), Direction::Upload, false);
        QCOMPARE(join({incomplete.source, incomplete.destination, incomplete.port}), std::string("||22|"));
    }

    void output_isReadLineByLine()
    {
        const auto report =
            readRsyncOutput("[sender] hiding directory .git because of pattern .git\n"
                            "|*deleting   old/deep/\n|*deleting   old/a.html\n|cd+++++++++ sub/\n"
                            "|>f.st......  lead\\#012\n|.f...p..... mode.html\n|cL+++++++++ sub/link\n"
                            "cannot delete non-empty directory: x\n\n");
        QCOMPARE(namesOf(report.rows), std::string(" lead\\#012|deleting old/a.html|sub/link|"));
        QCOMPARE(report.rows[1].relativePath, std::string(" lead\n"));
        QCOMPARE(join(report.deletedFolders), std::string("old/deep|"));
        QCOMPARE(report.ignored, std::size_t{1});
        QCOMPARE(nameWithoutDeleting("deleting old/deleting page.html"), std::string("old/page.html"));
    }

    // Half of all names, then the other half: those that a pattern or a shell would take for each other too.
    void exactlyTheTickedRowsAreDone_data()
    {
        QTest::addColumn<std::string>("side");
        QTest::newRow("sent") << std::string("sending");
        QTest::newRow("deleted") << std::string("receiving");
    }
    void exactlyTheTickedRowsAreDone()
    {
        QFETCH(std::string, side);
        for (const std::size_t remainder : {0U, 1U}) {
            const TwoFolders folders;
            putNames(folders, side);
            ComparisonReport found = compare(folders);
            QVERIFY(found.rows.size() > 40);
            std::vector<SyncRow> left;
            for (std::size_t i = remainder; i < found.rows.size(); i += 2) {
                found.rows[i].select = false;
                left.push_back(found.rows[i]);
            }
            const RsyncReport report = job(folders).transfer(found.rows, found.deletedFolders, {}, {});
            QCOMPARE(join(report.problems), std::string());
            QCOMPARE(report.done.size(), found.rows.size() - left.size());
            QCOMPARE(namesOf(compare(folders).rows), namesOf(left));
            QVERIFY(!itemExists(folders.at("evil")));
        }
    }

    void emptiedFoldersAreDeleted_othersStay()
    {
        const TwoFolders folders;
        folders.putAll("receiving", "old/a/b/1.html|old/a/b/2.html|kept/x.html|kept/y.html");
        ComparisonReport found = compare(folders);
        QCOMPARE(namesOf(found.rows), std::string("deleting kept/x.html|deleting kept/y.html|"
                                                  "deleting old/a/b/1.html|deleting old/a/b/2.html|"));
        for (SyncRow& row : found.rows)
            row.select = row.relativePath != "kept/y.html";
        (void)job(folders).transfer(found.rows, found.deletedFolders, {}, {});
        QCOMPARE(folders.listing("receiving"), std::string("kept/y.html\n"));
        QVERIFY(!itemExists(folders.at("receiving/old")));
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
        (void)listed.transfer(found.rows, found.deletedFolders, {}, {});
        std::replace(lists.begin(), lists.end(), '\0', ' ');
        QCOMPARE(lists, std::string("./c.css ./sub/d.png |./a.html ./b.PHP ./e.xml |./gone.html |"));
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
        const auto walked =
            FolderComparison(folders.sending(), folders.receiving(), IgnoredNames("draft*/\n/keep/notes.txt"))
                .run(WorkItem());
        QCOMPARE(namesOf(walked->rows), std::string("sub/notes.txt|"));
        QCOMPARE(walked->ignored, std::size_t{6});
    }

    void aFailedComparisonGivesTheReason()
    {
        const TwoFolders folders;
        const RsyncJob gone({folders.at("gone/").string(), folders.receiving().string() + "/", "22", true},
                            &runProgram);
        const auto failed = gone.compare(IgnoredNames(), {});
        QVERIFY(!failed);
        QVERIFY2(failed.error().text.find("No such file or directory") != std::string::npos,
                 failed.error().text.c_str());
        QVERIFY(!RsyncJob({}, &runProgram).compare(IgnoredNames(), {}));
        const auto refused =
            RsyncJob({folders.sending().string() + "/", "me@127.0.0.1:/x/", "1", true}, &runProgram)
                .compare(IgnoredNames(), {});
        QVERIFY2(refused.error().text.find("Connection refused") != std::string::npos,
                 refused.error().text.c_str());
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
        QCOMPARE(join(report.problems), std::string());
        QTRY_COMPARE(folders.listing("receiving"), std::string("a.txt\n"));
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
        QCOMPARE(report.done, (std::vector<std::size_t>{2, 3}));
        QVERIFY2(join(report.problems).find("a.css") != std::string::npos, join(report.problems).c_str());
        QCOMPARE(folders.listing("receiving"), std::string("a.css/in the way\nb.css\nc.html\ngone.html\n"));
    }
};

LUMA_TEST(tst_rsynccommand)
#include "tst_rsynccommand.moc"
