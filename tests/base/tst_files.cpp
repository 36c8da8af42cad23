// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/files.h"
#include "base/pathbelow.h"
#include "tests/support/obstacle.h"
#include "tests/support/registry.h"
#include "tests/support/rows.h"
#include "tests/support/site.h"

#include <QTest>

#include <sys/resource.h>
#include <sys/stat.h>

#include <csignal>

namespace fs = std::filesystem;
using namespace luma;

class tst_files final : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<test::Site> m_site;
    fs::path at(std::string_view name) const { return m_site->at(name); }
    void put(std::string_view name, std::string_view bytes) const { m_site->put(name, bytes); }
    std::string bytesOf(std::string_view name) const { return m_site->bytesOf(name); }
    std::size_t entryCount() const
    {
        return static_cast<std::size_t>(
            std::distance(fs::directory_iterator(m_site->root()), fs::directory_iterator()));
    }

private slots:
    void init() { m_site = std::make_unique<test::Site>(); }

    void writeFile_keepsModeAndLink()
    {
        put("page.html", "old");
        fs::permissions(at("page.html"), fs::perms(0640));
        fs::create_symlink("page.html", at("link"));
        QVERIFY(writeFile(at("link"), "new"));
        QVERIFY(fs::is_symlink(at("link")));
        QCOMPARE(bytesOf("page.html"), std::string("new"));
        QCOMPARE(static_cast<int>(fs::status(at("page.html")).permissions()), 0640);
        QCOMPARE(entryCount(), std::size_t{2});
    }

    void obstacles_areSeenBeforeWriting_data()
    {
        using Kind = test::Obstacle::Kind;
        const test::Rows<Kind> row("kind");
        row("none", Kind::None);
        row("read-only page", Kind::ReadOnlyPage);
        row("read-only folder", Kind::ReadOnlyFolder);
        row("sticky folder", Kind::StickyFolder);
        row("immutable page", Kind::ImmutablePage);
        row("page that may only grow", Kind::GrowingPage);
        row("folder that may only grow", Kind::GrowingFolder);
        row("read-only mount", Kind::ReadOnlyMount);
    }
    void obstacles_areSeenBeforeWriting()
    {
        QFETCH(test::Obstacle::Kind, kind);
        put("f/page.html", "old");
        const test::Obstacle obstacle(*m_site, "f/page.html", kind);
        if (!obstacle.isThere())
            QSKIP("this takes root, or flags of files or mounts that this machine doesn't have");
        const auto before = fs::last_write_time(at("f"));
        const int answer = obstacle.run([&] {
            const bool isFree = bool(checkReplaceable(at("f/page.html")));
            const bool isUntouched = fs::last_write_time(at("f")) == before;
            const bool isWritten = bool(replaceFile(at("f/page.html"), "new", at("f/.way")));
            return (isFree ? 1 : 0) + (isWritten ? 2 : 0) + (isUntouched ? 4 : 0);
        });
        QCOMPARE(answer, kind == test::Obstacle::Kind::None ? 7 : 4);
        QCOMPARE(bytesOf("f/page.html"), std::string(answer == 7 ? "new" : "old"));
    }

    // The file size limit stands for a disk that fills up after some bytes.
    void fullDisk_keepsOldFileAndLeavesNothing_data()
    {
        QTest::addColumn<bool>("copy");
        QTest::newRow("write") << false;
        QTest::newRow("copy") << true;
    }
    void fullDisk_keepsOldFileAndLeavesNothing()
    {
        QFETCH(bool, copy);
        put("big", std::string(300'000, 'x'));
        put("page.html", "old");
        const auto oldHandler = std::signal(SIGXFSZ, SIG_IGN);
        rlimit old = {};
        getrlimit(RLIMIT_FSIZE, &old);
        const rlimit small = {100'000, old.rlim_max};
        setrlimit(RLIMIT_FSIZE, &small);
        const auto done = copy ? copyFile(at("big"), at("page.html"), Existing::Replace)
                               : writeFile(at("page.html"), std::string(300'000, 'y'));
        setrlimit(RLIMIT_FSIZE, &old);
        (void)std::signal(SIGXFSZ, oldHandler);
        QVERIFY(!done);
        QVERIFY(done.error().text.find("page.html") != std::string::npos);
        QCOMPARE(bytesOf("page.html"), std::string("old"));
        QCOMPARE(entryCount(), std::size_t{2});
    }

    void copyFile_keepsTimeAndMode()
    {
        put("a", "a");
        fs::permissions(at("a"), fs::perms(0751));
        fs::last_write_time(at("a"), fs::file_time_type::clock::now() - std::chrono::hours(50));
        QVERIFY(copyFile(at("a"), at("b"), Existing::Keep));
        QCOMPARE(fs::last_write_time(at("b")), fs::last_write_time(at("a")));
        QCOMPARE(static_cast<int>(fs::status(at("b")).permissions()), 0751);
        put("c", "precious");
        QVERIFY(!copyFile(at("a"), at("c"), Existing::Keep));
        QCOMPARE(bytesOf("c"), std::string("precious"));
        QVERIFY(copyFile(at("a"), at("c"), Existing::Replace));
        QCOMPARE(bytesOf("c"), std::string("a"));
    }

    void copyFile_copiesALinkAsALink()
    {
        fs::create_symlink("/nowhere", at("link"));
        put("old", "old");
        QVERIFY(copyFile(at("link"), at("old"), Existing::Replace));
        QCOMPARE(fs::read_symlink(at("old")), fs::path("/nowhere"));
        QCOMPARE(entryCount(), std::size_t{2});
    }

    void copyItem_copiesAFolderWhole()
    {
        fs::create_directories(at("site/sub"));
        put("site/sub/\xff\n page.html", "page");
        fs::create_symlink("..", at("site/sub/circle"));
        fs::permissions(at("site/sub"), fs::perms(0500));
        QVERIFY(copyItem(at("site"), at("copy")));
        QCOMPARE(bytesOf("copy/sub/\xff\n page.html"), std::string("page"));
        QVERIFY(fs::is_symlink(at("copy/sub/circle")));
        QCOMPARE(static_cast<int>(fs::status(at("copy/sub")).permissions()), 0500);
        QVERIFY(!copyItem(at("site"), at("copy")));
        QVERIFY(!copyItem(at("site"), at("site/sub/site")));
        QVERIFY(!itemExists(at("site/sub/site")));
        fs::permissions(at("site/sub"), fs::perms(0700));
        fs::permissions(at("copy/sub"), fs::perms(0700));
    }

    void copyItem_isThereWholeOrNotAtAll_data()
    {
        QTest::addColumn<bool>("stop");
        QTest::newRow("stopped") << true;
        QTest::newRow("a pipe, which can't be copied") << false;
    }
    void copyItem_isThereWholeOrNotAtAll()
    {
        QFETCH(bool, stop);
        fs::create_directories(at("site/sub/read only"));
        put("site/sub/read only/page.html", "page");
        for (int i = 0; i < 20; ++i)
            put("site/" + std::to_string(i), std::string(100'000, 'x'));
        fs::permissions(at("site/sub/read only"), fs::perms(0500));
        if (!stop)
            QCOMPARE(::mkfifo(at("site/sub/pipe").c_str(), 0600), 0);
        int asked = 0;
        const auto copied = copyItem(at("site"), at("copy"), [&] {
            ++asked;
            return !itemExists(at("copy")) && !(stop && asked > 30);
        });
        QVERIFY(!copied);
        QCOMPARE(copied.error().isStopped(), stop);
        QVERIFY(stop || copied.error().text.find("pipe") != std::string::npos);
        QVERIFY(asked > 1);
        QCOMPARE(entryCount(), std::size_t{1});
        fs::permissions(at("site/sub/read only"), fs::perms(0700));
    }

    void copyFile_stops_andLeavesTheOldFile()
    {
        put("large", std::string(50'000'000, 'x'));
        put("old", "old");
        int asked = 0;
        QVERIFY(!copyFile(at("large"), at("old"), Existing::Replace, Durability::Unsynced,
                          [&] { return ++asked < 3; }));
        QCOMPARE(bytesOf("old"), std::string("old"));
        QVERIFY(!copyItem(at("large"), at("new"), [] { return false; }));
        QCOMPARE(entryCount(), std::size_t{2});
    }

    void moveItem_neverReplaces()
    {
        put("a", "a");
        put("b", "b");
        QVERIFY(!moveItem(at("a"), at("b")));
        QCOMPARE(bytesOf("b"), std::string("b"));
        QVERIFY(moveItem(at("a"), at("c")));
        QCOMPARE(bytesOf("c"), std::string("a"));
        fs::create_directories(at("folder"));
        QVERIFY(!moveItem(at("folder"), at("folder/inside")));
        QVERIFY(itemExists(at("folder")));
    }

    void pathBelow_endsAtNames_data()
    {
        const test::Rows<std::string, std::string, std::string> row("path", "folder", "rest");
        row("below", "/v/site/css/main.css", "/v/site", "css/main.css");
        row("slash at the end", "/v/site//a", "/v/site/", "a");
        row("root", "/a", "/", "a");
        row("itself", "/v/site", "/v/site/", "");
        row("relative", "a/b", "a", "b");
        row("neighbour", "/v/site2/a", "/v/site", "outside");
        row("above", "/v", "/v/site", "outside");
        row("relative, not in the root", "a", "/", "outside");
        row("no folder", "/v", "", "outside");
        row("no path", "", "/v", "outside");
    }
    void pathBelow_endsAtNames()
    {
        QFETCH(std::string, path);
        QFETCH(std::string, folder);
        QTEST(std::string(pathBelow(path, folder).value_or("outside")), "rest");
    }

    void readFile_refusesAllButRegularFiles()
    {
        QVERIFY(!readFile(at("gone")));
        QVERIFY(!readFile(m_site->root()));
        QCOMPARE(::mkfifo(at("pipe").c_str(), 0600), 0);
        QVERIFY(!readFile(at("pipe")));
    }
};

LUMA_TEST(tst_files)
#include "tst_files.moc"
