// SPDX-License-Identifier: GPL-3.0-or-later
#include "site/foldercomparison.h"
#include "tests/site/twofolders.h"
#include "tests/support/registry.h"

#include <QTest>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <map>

namespace fs = std::filesystem;
using namespace luma;
using luma::test::TwoFolders;

class tst_foldercomparison final : public QObject
{
    Q_OBJECT

private:
    static ComparisonReport compare(const TwoFolders& folders, Deletions deletions = Deletions::Ignored)
    {
        const WorkItem item;
        auto report =
            FolderComparison({folders.sending(), folders.receiving()}, IgnoredNames(), deletions).run(item);
        return report ? std::move(*report)
                      : ComparisonReport{{}, {"failed: " + report.error().text}, 0, {}, {}};
    }

    static std::string text(const ComparisonReport& report)
    {
        std::string lines;
        static const std::map<SyncKind, const char*> kinds = {{SyncKind::New, "new "},
                                                              {SyncKind::Newer, "newer "},
                                                              {SyncKind::Different, "different "},
                                                              {SyncKind::Delete, ""}};
        for (const SyncRow& row : report.rows)
            lines += kinds.at(row.kind) + row.displayName + "\n";
        for (const std::string& problem : report.problems)
            lines.append("problem ").append(problem).append("\n");
        return lines;
    }

    static std::string shownByRsync(const TwoFolders& folders)
    {
        return TwoFolders::run("cd '" + folders.root().string() +
                               "' && LC_ALL=C.UTF-8 rsync -a --update -n --out-format=%n sending/ receiving/"
                               " | grep -v '/$' | LC_ALL=C sort");
    }

private slots:
    void onlyNewAndOlderFilesAreListed()
    {
        const TwoFolders folders;
        folders.putAll("sending", "new.html|.htaccess|sub/deep/new.html|.DS_Store|sub/.DS_Store|.luma-a1B2c3|"
                                  ".luma-notes");
        for (const char* side : {"sending/same.html", "receiving/same.html"})
            folders.put(side, "same", 50);
        folders.put("sending/cut.html", "whole", 50);
        folders.put("receiving/cut.html", "who", 50);
        folders.put("sending/changed.html", "new", 50);
        folders.put("receiving/changed.html", "old", 51);
        folders.put("sending/older.html", "old", 51);
        folders.put("receiving/older.html", "new", 50);
        folders.put("receiving/only there.html");
        QCOMPARE(text(compare(folders)), std::string("new .htaccess\n"
                                                     "new .luma-notes\n"
                                                     "newer changed.html\n"
                                                     "different cut.html\n"
                                                     "new new.html\n"
                                                     "new sub/deep/new.html\n"));
    }

    void aRowKnowsBothSides()
    {
        const TwoFolders folders;
        folders.put("sending/a.html", "newer", 10);
        folders.put("receiving/a.html", "old", 20);
        const SyncRow row = compare(folders).rows.at(0);
        QCOMPARE(row.sent.size, 5);
        QCOMPARE(row.received.size, 3);
        QCOMPARE(row.sent.time - row.received.time, 10);
        QCOMPARE(std::string(textOf(row.reason)), std::string("Newer than on the receiving side"));
        QVERIFY(row.sent.type == FileFacts::Type::File);
    }

    void deletionsAreFilesAndEmptyFoldersOfTheReceivingSide()
    {
        const TwoFolders folders;
        folders.putAll("sending", "kept/a|now a file");
        folders.putAll("receiving",
                       "kept/a|kept/b|old/deep/x|now a file/y|old/.git/z|.luma-a1B2c3|mine/.svn/x");
        for (const char* path : {"receiving/old/empty/e", "receiving/kept/f"})
            fs::create_directories(folders.at(path));
        fs::create_symlink("nowhere", folders.at("receiving/old/link"));
        const ComparisonReport report = compare(folders, Deletions::Listed);
        QCOMPARE(text(report), std::string("deleting kept/b\ndeleting kept/f/\ndifferent now a file\n"
                                           "deleting old/deep/x\ndeleting old/empty/e/\n"
                                           "deleting old/link\n"));
        QCOMPARE(emptiedFolders(report.rows, {0, 1, 3, 4}, report.foldersOnlyThere),
                 (std::vector<std::string>{"old/empty/e", "old/empty", "old/deep", "old", "kept/f"}));
    }

    void fractionsOfASecondDoNotCount_data()
    {
        QTest::addColumn<double>("sendingAge");
        QTest::addColumn<double>("receivingAge");
        QTest::addColumn<bool>("listed");
        QTest::newRow("same second") << 99.1 << 99.9 << false;
        QTest::newRow("a fraction apart, another second") << 99.9 << 100.1 << true;
        QTest::newRow("equal") << 100.0 << 100.0 << false;
        QTest::newRow("before 1970") << 2e9 << 2e9 + 1 << true;
    }
    void fractionsOfASecondDoNotCount()
    {
        QFETCH(double, sendingAge);
        QFETCH(double, receivingAge);
        QFETCH(bool, listed);
        const TwoFolders folders;
        folders.put("sending/a", "new", sendingAge);
        folders.put("receiving/a", "old", receivingAge);
        QCOMPARE(compare(folders).rows.size(), std::size_t{listed});
    }

    void linksAreComparedAsLinksAndNeverFollowed()
    {
        const TwoFolders folders;
        folders.put("outside/secret.html");
        fs::create_symlink("../outside", folders.at("sending/way out"));
        fs::create_symlink(".", folders.at("sending/circle"));
        fs::create_symlink("one", folders.at("sending/differs"));
        fs::create_symlink("two", folders.at("receiving/differs"));
        fs::create_symlink("same", folders.at("sending/same"));
        fs::create_symlink("same", folders.at("receiving/same"));
        QCOMPARE(text(compare(folders)), std::string("new circle\ndifferent differs\nnew way out\n"));
    }

    void aThingOfAnotherKindOnTheOtherSide()
    {
        const TwoFolders folders;
        folders.put("outside/page.html", "precious", 10);
        folders.put("sending/folder here/a.html");
        folders.put("receiving/folder here");
        folders.put("sending/linked/page.html");
        fs::create_directory_symlink("../outside", folders.at("receiving/linked"));
        folders.put("sending/file here");
        folders.put("receiving/file here/b.html");
        QCOMPARE(::mkfifo(folders.at("sending/pipe").c_str(), 0600), 0);
        QCOMPARE(text(compare(folders)), std::string("different file here\n"
                                                     "new folder here/a.html\n"
                                                     "new linked/page.html\n"));
    }

    void everyNameIsOneLine_asRsyncPrintsIt()
    {
        const TwoFolders folders;
        folders.putAll("sending",
                       "plain|a b|\xc3\xbc\xe2\x82\xac\xf0\x9f\x98\x80|new\nline|tab\there|del\x7f|bad\xff|"
                       "cut\xe2\x82|overlong\xc0\xaf|surrogate\xed\xa0\x80|back\\slash|esc\\#012x|"
                       "esc\\#999|esc\\#01|c1\xc2\x85|\xe2\x80\xa8|bell\a|folder\n/in\xfe|\\#|\\\\#123|"
                       "a\\#123b\\#1");
        std::string shown;
        for (const SyncRow& row : compare(folders).rows) {
            QVERIFY(QString::fromStdString(row.displayName).toStdString() == row.displayName);
            shown += row.displayName + "\n";
        }
        // Rows are sorted by the bytes of the names, rsync's output by the shown names.
        QCOMPARE(TwoFolders::run("printf '%s' \"$(cat <<'end'\n" + shown + "end\n)\" | LC_ALL=C sort"),
                 shownByRsync(folders));
    }

    void threeHundredLevels()
    {
        const TwoFolders folders;
        const std::string name(200, 'n');
        std::string path = folders.sending().string();
        int folder = ::open(path.c_str(), O_RDONLY | O_DIRECTORY);
        std::string expected;
        for (int level = 0; level < 300; ++level) {
            QCOMPARE(::mkdirat(folder, name.c_str(), 0700), 0);
            const int next = ::openat(folder, name.c_str(), O_RDONLY | O_DIRECTORY);
            ::close(folder);
            folder = next;
            expected += name + "/";
        }
        ::close(::openat(folder, "page.html", O_CREAT | O_WRONLY, 0600));
        ::close(folder);
        QCOMPARE(text(compare(folders)), "new " + expected + "page.html\n");
    }

    void anUnreadableFolderIsNamedAndTheRestDone()
    {
        if (::geteuid() == 0 && ::seteuid(65534) != 0)
            QSKIP("cannot act as another user");
        const TwoFolders folders;
        folders.put("sending/closed/a.html");
        folders.put("sending/open/b.html");
        fs::permissions(folders.at("sending/closed"), fs::perms::none);
        const std::string found = text(compare(folders));
        fs::permissions(folders.at("sending/closed"), fs::perms::owner_all);
        (void)::seteuid(::getuid());
        QCOMPARE(found, std::string("new open/b.html\nproblem closed: Permission denied\n"));
    }

    void aMissingRootIsAnError()
    {
        const TwoFolders folders;
        const WorkItem item;
        const auto report = FolderComparison({folders.sending(), folders.at("gone")}).run(item);
        QVERIFY(!report);
        QCOMPARE(report.error().text, folders.at("gone").string() + ": No such file or directory");
    }

    void aCancelledComparisonStops()
    {
        const TwoFolders folders;
        folders.put("sending/a.html");
        WorkItem item;
        item.cancel();
        QVERIFY(FolderComparison({folders.sending(), folders.receiving()}).run(item)->rows.empty());
    }
};

LUMA_TEST(tst_foldercomparison)
#include "tst_foldercomparison.moc"
