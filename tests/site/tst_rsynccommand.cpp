// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/files.h"
#include "site/rsynccommand.h"
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
    static RsyncArguments localArguments(const TwoFolders& folders, bool deletes = false)
    {
        return {folders.sending().string() + "/", folders.receiving().string() + "/", "22", deletes};
    }

    static std::string inShell(const std::string& commandLine, const char* locale = "C.UTF-8")
    {
        ::setenv("LC_ALL", locale, 1);
        return TwoFolders::run(commandLine);
    }

    static std::vector<SyncRow> list(const RsyncCommand& command, const char* locale = "C.UTF-8")
    {
        std::vector<SyncRow> rows;
        for (const std::string& line : RsyncCommand::listing(inShell(command.dryRun(), locale)))
            rows.push_back({.displayName = line});
        return rows;
    }

    static SyncRow row(bool select, const char* name) { return {.select = select, .displayName = name}; }

    static std::string join(const std::vector<std::string>& lines)
    {
        std::string text;
        for (const std::string& line : lines)
            text += line + "|";
        return text;
    }

    static void putNames(const TwoFolders& folders)
    {
        folders.putAll("sending",
                       "plain.html|My Page.html|sub/plain.html|sub/deep/x_y-z|'single'|\"double\"|$HOME|"
                       "`touch evil`|a;touch evil|(x)|a&b|*|a*b|axb|[a]|a|back\\slash|\\*|-rf|- dash|"
                       "dash|+ plus|#hash|;semi|!|\xc3\xbc.html|new\nline|bad\xff|esc\\#012x|?|q?b|~|"
                       "{a,b}|a -> b| lead|trail |two  blanks|tab\there|***|sub/*|sub/[x]\\|"
                       "deleting foo|a deleting b");
        fs::create_symlink("nowhere", folders.at("sending/sub/link"));
    }

private slots:
    void commandLinesAreTheDescribedOnes()
    {
        RsyncCommand command({"/home/me/My Site/", "me@host:/var/www/", "2222", false});
        QCOMPARE(
            command.dryRun(),
            std::string(
                "rsync -e \"ssh -p 2222\" -avzC --update  --dry-run --exclude=.DS_Store /home/me/My Site/ "
                "me@host:/var/www/ | sed '1d' | sed -n -e :a -e '1,3!{P;N;D;};N;ba' | grep -v .*/$"));
        const auto rules = rsyncRules(
            {row(false, "My Page.html"), row(true, "index.html"), row(false, "deleting old/a_b-1.css")},
            true);
        QCOMPARE(command.transfer(rules),
                 std::string(
                     "rsync -e \"ssh -p 2222\" -avzC --update  --exclude=.DS_Store --exclude=My\\ Page.html "
                     "--exclude=old/a_b-1.css  /home/me/My Site/ me@host:/var/www/"));
        RsyncCommand deleting({"a/", "b/", "22", true});
        QVERIFY(deleting.dryRun().starts_with("rsync -e \"ssh -p 22\" -avzC --update --delete --dry-run "));
        QVERIFY(deleting.transfer({}).starts_with(
            "rsync -e \"ssh -p 22\" -avzC --update --delete --exclude=.DS"));
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

    void listingIsTrimmedAndSplit()
    {
        QCOMPARE(join(RsyncCommand::listing("\n\na\ndeleting b\n c \n\n")), std::string("a|deleting b| c |"));
        QCOMPARE(join(RsyncCommand::listing("\n\n")), std::string());
        QCOMPARE(join(RsyncCommand::listing("")), std::string());
        QCOMPARE(nameWithoutDeleting("deleting old/deleting page.html"), std::string("old/page.html"));
    }

    void theFilterLeavesFilesAlone()
    {
        const TwoFolders folders;
        QCOMPARE(list(RsyncCommand(localArguments(folders))).size(), std::size_t{0});
        fs::create_directories(folders.at("sending/only/folders"));
        QCOMPARE(list(RsyncCommand(localArguments(folders))).size(), std::size_t{0});
        folders.put("sending/only/a.html");
        folders.put("receiving/gone.html");
        std::string names;
        for (const SyncRow& found : list(RsyncCommand(localArguments(folders, true))))
            names += found.displayName + "\n";
        QCOMPARE(names, std::string("deleting gone.html\nonly/a.html\n"));
    }

    // Unticks one listed name at a time: only this one must be left out.
    void anUntickedNameAloneIsLeftOut()
    {
        const TwoFolders folders;
        putNames(folders);
        const RsyncCommand command(localArguments(folders));
        std::vector<SyncRow> rows = list(command);
        const auto listed = folders.listing("sending");
        QVERIFY(rows.size() > 40);
        for (SyncRow& unticked : rows) {
            unticked.select = false;
            inShell("cd '" + folders.root().string() + "' && " + command.transfer(rsyncRules(rows, false)));
            const auto left = list(command);
            QVERIFY2(left.size() == 1, unticked.displayName.c_str());
            QCOMPARE(left.front().displayName, unticked.displayName);
            unticked.select = true;
            fs::remove_all(folders.receiving());
            fs::create_directory(folders.receiving());
        }
        QVERIFY(!itemExists(folders.at("evil")));
        QCOMPARE(folders.listing("sending"), listed);
    }

    void theUntickedHalfIsLeftOut_data()
    {
        QTest::addColumn<QByteArray>("locale");
        QTest::addColumn<bool>("inFile");
        QTest::newRow("on the command line") << QByteArray("C.UTF-8") << false;
        QTest::newRow("in a file") << QByteArray("C.UTF-8") << true;
        QTest::newRow("listed in another locale") << QByteArray("C") << false;
    }
    void theUntickedHalfIsLeftOut()
    {
        QFETCH(QByteArray, locale);
        QFETCH(bool, inFile);
        for (const std::size_t remainder : {0U, 1U}) {
            const TwoFolders folders;
            putNames(folders);
            const RsyncCommand command(localArguments(folders));
            std::vector<SyncRow> rows = list(command, locale);
            std::string expected;
            for (std::size_t i = remainder; i < rows.size(); i += 2) {
                rows[i].select = false;
                expected += rows[i].displayName + "\n";
            }
            const auto rules = rsyncRules(rows, false);
            QVERIFY(writeFile(folders.at("rules"), RsyncCommand::rulesFile(rules)));
            inShell(inFile ? command.transferWithRulesFile(folders.at("rules").string())
                           : command.transfer(rules));
            std::string left;
            for (const SyncRow& row : list(command, locale))
                left += row.displayName + "\n";
            QCOMPARE(left, expected);
        }
    }

    void allUntickedMovesNothing_manyNamesFitAFile()
    {
        const TwoFolders folders;
        putNames(folders);
        std::vector<SyncRow> rows = list(RsyncCommand(localArguments(folders)));
        for (SyncRow& unticked : rows)
            unticked.select = false;
        for (int i = 0; i < 5000; ++i)
            rows.push_back(row(false, ("no such page " + std::to_string(i) + ".html").c_str()));
        const auto rules = rsyncRules(rows, false);
        QVERIFY(!RsyncCommand::fitCommandLine(rules));
        QVERIFY(writeFile(folders.at("rules"), RsyncCommand::rulesFile(rules)));
        inShell(RsyncCommand(localArguments(folders)).transferWithRulesFile(folders.at("rules").string()));
        QCOMPARE(folders.listing("receiving"), std::string("sub/deep/\n"));
    }

    void anUntickedDeletionIsSpared_aTickedOneDone()
    {
        const TwoFolders folders;
        folders.putAll("receiving", "old/a[1].html|old/b.html|c.html");
        const RsyncCommand command(localArguments(folders, true));
        std::vector<SyncRow> rows = list(command);
        QCOMPARE(rows.size(), std::size_t{3});
        for (SyncRow& candidate : rows)
            candidate.select = candidate.displayName != "deleting old/a[1].html";
        inShell(command.transfer(rsyncRules(rows, true)));
        QCOMPARE(folders.listing("receiving"), std::string("old/a[1].html\n"));
    }
};

LUMA_TEST(tst_rsynccommand)
#include "tst_rsynccommand.moc"
