// SPDX-License-Identifier: GPL-3.0-or-later
#include "browser/folderwatcher.h"
#include "desktop/notifications.h"
#include "tests/support/registry.h"
#include "tests/support/site.h"

#include <QProcess>
#include <QSignalSpy>
#include <QTest>

#include <csignal>
#include <filesystem>
#include <fstream>

namespace fs = std::filesystem;
using namespace luma;

Q_DECLARE_METATYPE(std::function<void(const fs::path&)>)

/// The real watcher program over the test's own session bus.
class tst_folderwatcher final : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<test::Site> m_site;
    std::unique_ptr<FolderWatcher> m_watcher;

    fs::path at(std::string_view name) const { return m_site->at(name); }
    void put(std::string_view name) const { m_site->put(name); }

    /// Starts the watcher and waits until it hears of changes.
    void watch(QSignalSpy& spy)
    {
        m_watcher->start(QStringLiteral("Source & \"caption\""), at(""));
        QVERIFY(m_watcher->processId() > 0);
        int attempt = 0;
        QTRY_VERIFY_WITH_TIMEOUT((put("probe" + std::to_string(++attempt)), !spy.isEmpty()), 20000);
        settle(spy);
    }
    /// The watcher's process; fails the test if there is none, as a signal to 0 would reach the test itself.
    [[nodiscard]] pid_t process() const
    {
        const auto id = static_cast<pid_t>(m_watcher->processId());
        if (id <= 0)
            qFatal("the watcher has ended");
        return id;
    }
    /// Until nothing more is told.
    static void settle(QSignalSpy& spy)
    {
        while (spy.wait(400))
            spy.clear();
        spy.clear();
    }

private slots:
    void init()
    {
        m_site = std::make_unique<test::Site>();
        m_watcher = std::make_unique<FolderWatcher>();
    }
    void cleanup() { m_watcher.reset(); }

    void change_isTold_data()
    {
        QTest::addColumn<std::function<void(const fs::path&)>>("change");
        using Change = std::function<void(const fs::path&)>;
        QTest::newRow("new file") << Change(
            [](const fs::path& root) { std::ofstream(root / "new.html") << 1; });
        QTest::newRow("odd name") << Change(
            [](const fs::path& root) { std::ofstream(root / "\xff\n") << 1; });
        QTest::newRow("removed") << Change([](const fs::path& root) { fs::remove(root / "there.html"); });
        QTest::newRow("renamed") << Change(
            [](const fs::path& r) { fs::rename(r / "there.html", r / "b.html"); });
        QTest::newRow("rewritten") << Change(
            [](const fs::path& root) { std::ofstream(root / "deep/a/b/f") << 2; });
        QTest::newRow("deep") << Change(
            [](const fs::path& root) { std::ofstream(root / "deep/a/b/new") << 1; });
    }
    void change_isTold()
    {
        QFETCH(std::function<void(const fs::path&)>, change);
        fs::create_directories(at("deep/a/b"));
        put("deep/a/b/f");
        put("there.html");
        QSignalSpy spy(m_watcher.get(), &FolderWatcher::changed);
        watch(spy);
        change(at(""));
        QTRY_VERIFY(!spy.isEmpty());
    }

    void changedFolders_areNamed()
    {
        fs::create_directories(at("deep/a"));
        QSignalSpy spy(m_watcher.get(), &FolderWatcher::changed);
        watch(spy);
        (void)m_watcher->takeChangedFolders();
        put("deep/a/new.html");
        QTRY_VERIFY(!spy.isEmpty());
        settle(spy);
        std::set<fs::path> named;
        for (const std::string& folder : m_watcher->takeChangedFolders().value_or(std::set<std::string>()))
            named.insert(fs::path(folder).lexically_normal());
        QCOMPARE(named, std::set<fs::path>{at("deep/a")});
        // Too many to name.
        for (int i = 0; i < 100; ++i)
            fs::create_directories(at("deep/" + std::string(100, 'x') + std::to_string(i) + "/y"));
        QTRY_VERIFY(!spy.isEmpty());
        settle(spy);
        QVERIFY(!m_watcher->takeChangedFolders());
    }

    void question_isAnsweredWithAllUntilThen()
    {
        fs::create_directories(at("deep/a"));
        fs::create_directories(at("deep/b"));
        m_watcher->start(QStringLiteral("Source"), at(""));
        const auto asked = [this] {
            std::optional<std::string> named;
            m_watcher->askForChanges([&named](bool isWatching, const FolderWatcher::Folders& folders) {
                named = isWatching ? "" : "not watching";
                if (isWatching && !folders)
                    named = "any";
                for (const std::string& folder : folders.value_or(std::set<std::string>()))
                    *named += fs::path(folder).filename().native() + " ";
            });
            (void)QTest::qWaitFor([&named] { return named.has_value(); }, 20000);
            return named.value_or("no answer");
        };
        QCOMPARE(asked(), std::string("any"));
        // Until it has seen that the new folders are older than it.
        QTRY_COMPARE(asked(), std::string());
        put("deep/b/new.html");
        QCOMPARE(asked(), std::string("b "));
        // While it is being written.
        std::ofstream open(at("deep/b/new.html"));
        open << "<a href=" << std::flush;
        put("deep/a/new.html");
        QCOMPARE(asked(), std::string("a b "));
        open << "x>" << std::flush;
        QCOMPARE(asked(), std::string("b "));
        m_watcher->stop();
        QCOMPARE(asked(), std::string("not watching"));
    }

    void watcherThatEnds_isTold()
    {
        QSignalSpy spy(m_watcher.get(), &FolderWatcher::changed);
        watch(spy);
        QSignalSpy ended(m_watcher.get(), &FolderWatcher::ended);
        ::kill(process(), SIGKILL);
        QTRY_COMPARE(ended.size(), 1);
    }

    void foldersThatComeAndGo_areFollowed()
    {
        QSignalSpy spy(m_watcher.get(), &FolderWatcher::changed);
        watch(spy);
        fs::create_directories(at("new/below"));
        settle(spy);
        put("new/below/page.html");
        QTRY_VERIFY(!spy.isEmpty());
        settle(spy);
        fs::rename(at("new"), at("moved"));
        settle(spy);
        put("moved/below/page2.html");
        QTRY_VERIFY(!spy.isEmpty());
        settle(spy);
        fs::remove_all(at("moved"));
        QTRY_VERIFY(!spy.isEmpty());
    }

    void linkOut_isNotFollowed()
    {
        const test::Site outside;
        fs::create_directory_symlink(outside.root(), at("link"));
        fs::create_directory_symlink(at(""), at("circle"));
        QSignalSpy spy(m_watcher.get(), &FolderWatcher::changed);
        watch(spy);
        outside.put("file");
        QVERIFY(!spy.wait(500));
    }

    // The queue of the kernel holds 16,384 events by default; this is more, and made while the watcher is
    // stopped.
    void overflowAndBurst_loseNothing()
    {
        QSignalSpy spy(m_watcher.get(), &FolderWatcher::changed);
        watch(spy);
        ::kill(process(), SIGSTOP);
        for (int i = 0; i < 9000; ++i)
            put("burst" + std::to_string(i));
        fs::create_directory(at("late"));
        ::kill(process(), SIGCONT);
        QTRY_VERIFY(!spy.isEmpty());
        settle(spy);
        put("late/page.html");
        QTRY_VERIFY(!spy.isEmpty());
    }

    void rootThatReturns_isWatchedAgain()
    {
        QSignalSpy spy(m_watcher.get(), &FolderWatcher::changed);
        watch(spy);
        fs::remove_all(at(""));
        QTRY_VERIFY(!spy.isEmpty());
        settle(spy);
        fs::create_directory(at(""));
        QTRY_VERIFY(!spy.isEmpty());
        settle(spy);
        put("page.html");
        QTRY_VERIFY(!spy.isEmpty());
    }

    void anotherPanesNotification_isIgnored()
    {
        QSignalSpy spy(m_watcher.get(), &FolderWatcher::changed);
        watch(spy);
        postNotification(QStringLiteral("folderChangedSource & \"caption\""), QStringLiteral("1"));
        postNotification(QStringLiteral("folderChangedOther"), QString::number(m_watcher->processId()));
        QVERIFY(!spy.wait(300));
    }

    void watcher_endsWithStopAndWithItsParent()
    {
        QSignalSpy spy(m_watcher.get(), &FolderWatcher::changed);
        watch(spy);
        const pid_t stopped = process();
        m_watcher->stop();
        QTRY_COMPARE(::kill(stopped, 0), -1);
        // A parent that crashes closes the pipe and sends no signal.
        QProcess alone;
        alone.start(QStringLiteral(LUMA_WATCHER),
                    {QStringLiteral("x"), QString::fromStdString(m_site->root())});
        QVERIFY(alone.waitForStarted());
        alone.closeWriteChannel();
        QVERIFY(alone.waitForFinished());
        QCOMPARE(alone.exitStatus(), QProcess::NormalExit);
    }
};

LUMA_TEST(tst_folderwatcher)
#include "tst_folderwatcher.moc"
