// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/files.h"
#include "base/pathbelow.h"
#include "mounts/gvfsmounter.h"
#include "mounts/mountmonitor.h"
#include "mounts/mounts.h"
#include "tests/support/loopback.h"
#include "tests/support/registry.h"
#include "tests/support/sambaserver.h"

#include <QFile>
#include <QProcess>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QThreadPool>

#include <fcntl.h>
#include <sys/mount.h>
#include <sys/stat.h>

#include <algorithm>
#include <atomic>
#include <fstream>
#include <optional>
#include <thread>

namespace fs = std::filesystem;
using namespace luma;

class tst_mounts final : public QObject
{
    Q_OBJECT

private:
    test::SambaServer m_samba;
    static constexpr const char* site = "Web Site";

    std::string siteUrl(const char* path = "") const { return m_samba.address() + "/Web%20Site" + path; }
    std::string archiveUrl() const { return m_samba.address() + "/Archive"; }

    // As a pane does: on a thread of the pool, while the main thread runs its event loop.
    static Result<fs::path> mountInBackground(
        const std::string& url, const std::string& user, const std::string& password,
        const std::function<bool()>& isWanted = [] { return true; })
    {
        std::optional<Result<fs::path>> result;
        std::atomic<bool> isDone = false;
        QThreadPool::globalInstance()->start([&] {
            result = mountShare(url, user, password, isWanted);
            isDone = true;
        });
        while (!QTest::qWaitFor([&] { return isDone.load(); })) {
        }
        return *result;
    }
    Result<fs::path> mount(const std::string& url) const
    {
        return mountInBackground(url, test::SambaServer::user(), m_samba.password());
    }

    static void unmountAndWait(const fs::path& folder)
    {
        unmount(folder);
        QThreadPool::globalInstance()->waitForDone();
    }

    // Another program of the session.
    static bool runGio(const QStringList& arguments, const std::string& input = {})
    {
        QProcess gio;
        gio.start(QStringLiteral("gio"), arguments);
        gio.write(QByteArray::fromStdString(input));
        gio.closeWriteChannel();
        return gio.waitForFinished() && gio.exitCode() == 0;
    }

    static void put(const fs::path& path, std::string_view bytes) { std::ofstream(path) << bytes; }

    static std::string bytesOf(const fs::path& path)
    {
        const auto bytes = readFile(path);
        return bytes ? *bytes : "unreadable: " + bytes.error().text;
    }

    static std::string failure(const Result<void>& done) { return done ? "" : done.error().text; }
    static const char* text(const Result<fs::path>& result)
    {
        return result ? result->c_str() : result.error().text.c_str();
    }

private slots:
    void initTestCase()
    {
        if (!qEnvironmentVariableIsSet("LUMA_PRIVATE_SESSION"))
            QSKIP("not in a session of its own (scripts/private-session)");
        if (QFile device(QStringLiteral("/dev/fuse")); !device.open(QIODevice::ReadWrite))
            QSKIP("no FUSE here");
        if (const QString reason = test::SambaServer::whyNot(); !reason.isEmpty())
            QSKIP(qPrintable(reason));
        QVERIFY(m_samba.start());
        put(m_samba.folder(site) / "index.html", "home");
        fs::create_directories(m_samba.folder(site) / "docs of mine");
        put(m_samba.folder(site) / "docs of mine/page.html", "page");
    }

    void mountShare_givesTheFolderOnTheShare()
    {
        const auto root = mount(siteUrl("/"));
        QVERIFY2(root, text(root));
        QCOMPARE(bytesOf(*root / "index.html"), std::string("home"));
        const auto folder = mount(siteUrl("/docs%20of%20mine"));
        QVERIFY2(folder, text(folder));
        QCOMPARE(bytesOf(*folder / "page.html"), std::string("page"));
        QVERIFY(isAtOrBelow(folder->native(), root->native()));

        // The share stays while one of its folders is in use.
        unmountAndWait(*root);
        QVERIFY(fs::exists(*folder));
        unmountAndWait(*folder);
        QTRY_VERIFY(!fs::exists(*folder));
    }

    void mountShare_afterUnmountWithoutWaiting()
    {
        auto folder = mount(siteUrl());
        for (int i = 0; i < 5; ++i) {
            QVERIFY2(folder, text(folder));
            unmount(*folder);
            folder = mount(siteUrl());
        }
        QVERIFY2(folder, text(folder));
        const std::string bytes = bytesOf(*folder / "index.html");
        unmountAndWait(*folder);
        QVERIFY2(bytes == "home", bytes.c_str());
    }

    void mountShare_refusesWithoutAsking_data()
    {
        QTest::addColumn<std::string>("url");
        QTest::addColumn<std::string>("user");
        QTest::addColumn<std::string>("password");
        QTest::addColumn<std::string>("reason");
        const auto row = [](const char* name, const std::string& url, const std::string& user,
                            const std::string& password, const std::string& reason) {
            QTest::newRow(name) << url << user << password << reason;
        };
        const std::string user = test::SambaServer::user();
        const std::string password = m_samba.password();
        const std::string wrong = "No Secret 7";
        const std::string refused = "refused the user or the password";
        row("wrong password", siteUrl(), user, wrong, refused);
        row("unknown user", siteUrl(), "nobody-here", password, refused);
        row("guest", siteUrl(), "", "", "smb://");
        row("no such share", m_samba.address() + "/Nowhere", user, password, "Nowhere");
        row("no such folder", siteUrl("/gone"), user, password, "gone");
        row("nobody listens", "smb://127.0.0.1:1/share", "bob", wrong, "");
        row("unknown host", "smb://no-such-host.invalid/share", "bob", wrong, "");
        row("blank in the host", "smb://example%20host/Web%20Site/docs", "bob", wrong, "");
        row("no host", "smb:///Web%20Site", "bob", wrong, "");
        row("unknown protocol", "gopher://127.0.0.1/share", "bob", wrong, "");
        row("no protocol", "127.0.0.1/share", "bob", wrong, "");
        row("empty", "", "bob", wrong, "");
    }
    void mountShare_refusesWithoutAsking()
    {
        QFETCH(std::string, url);
        QFETCH(std::string, user);
        QFETCH(std::string, password);
        QFETCH(std::string, reason);
        const auto folder = mountInBackground(url, user, password);
        QVERIFY(!folder);
        const std::string& error = folder.error().text;
        QVERIFY(!error.empty());
        QVERIFY2(error.find(reason) != std::string::npos, error.c_str());
        QVERIFY2(password.empty() || error.find(password) == std::string::npos,
                 "the password is in the error");
        QThreadPool::globalInstance()->waitForDone();
        QVERIFY(!findExistingMount(siteUrl(), user));
    }

    void mountShare_endsWhenNotWanted()
    {
        const test::SilentServer silent;
        QVERIFY(silent.port() != 0);
        const std::string port = std::to_string(silent.port());
        for (const char* protocol : {"smb://127.0.0.1:", "ftp://127.0.0.1:", "sftp://127.0.0.1:"}) {
            int asked = 0;
            const auto folder = mountInBackground(protocol + port + "/share", "bob", "No Secret 7",
                                                  [&] { return ++asked < 5; });
            QVERIFY2(!folder && folder.error().isStopped(), text(folder));
        }
    }

    void mountShare_findsWhatTheDesktopMounted()
    {
        const std::string answers = test::SambaServer::user() + "\nWORKGROUP\n" + m_samba.password() + "\n";
        const QString address = QString::fromStdString(archiveUrl());
        QVERIFY(!findExistingMount(archiveUrl(), ""));
        QVERIFY(runGio({QStringLiteral("mount"), address}, answers));
        put(m_samba.folder("Archive") / "old.html", "old");

        const auto folder = mountInBackground(archiveUrl(), test::SambaServer::user(), "No Secret 7");
        QVERIFY2(folder, text(folder));
        QCOMPARE(bytesOf(*folder / "old.html"), std::string("old"));
        QCOMPARE(findExistingMount(archiveUrl() + "/sub", "").value_or(""), *folder / "sub");
        // The desktop's own mount stays mounted.
        unmountAndWait(*folder);
        QCOMPARE(findExistingMount(archiveUrl(), "").value_or(""), *folder);
        QVERIFY(runGio({QStringLiteral("mount"), QStringLiteral("-u"), address}));
        QTRY_VERIFY(!findExistingMount(archiveUrl(), ""));
    }

    void findExistingMount_keepsAccountsApart()
    {
        const auto folder = mount(archiveUrl());
        QVERIFY2(folder, text(folder));
        QCOMPARE(findExistingMount(archiveUrl(), test::SambaServer::user()).value_or(""), *folder);
        // No user matches any account's mount; another user matches none.
        QCOMPARE(findExistingMount(archiveUrl(), "").value_or(""), *folder);
        QVERIFY(!findExistingMount(archiveUrl(), "somebody-else"));
        unmountAndWait(*folder);
    }

    void monitor_reportsWhatOthersUnmount()
    {
        const MountMonitor monitor;
        QSignalSpy spy(&monitor, &MountMonitor::unmounted);
        const auto folder = mount(siteUrl("/docs%20of%20mine"));
        QVERIFY2(folder, text(folder));
        const auto other = mount(archiveUrl());
        QVERIFY2(other, text(other));
        const std::string address = "smb://" + test::SambaServer::user() + "@" + archiveUrl().substr(6);
        QVERIFY(runGio({QStringLiteral("mount"), QStringLiteral("-u"), QString::fromStdString(address)}));
        // Others may unmount something else meanwhile.
        const auto tellsOf = [](const QSignalSpy& told, const fs::path& mounted) {
            return std::any_of(told.begin(), told.end(), [&](const QVariantList& each) {
                return isAtOrBelow(mounted.native(), each[0].value<fs::path>().native());
            });
        };
        QTRY_VERIFY(tellsOf(spy, *other));
        QVERIFY(!tellsOf(spy, *folder));

        const MountMonitor late;
        QSignalSpy lateSpy(&late, &MountMonitor::unmounted);
        unmountAndWait(*folder);
        QTRY_VERIFY(tellsOf(lateSpy, *folder));
        QTRY_VERIFY(tellsOf(spy, *folder));
    }

    void sharedMounter_endsOnTheMainThread()
    {
        auto mounter = GvfsMounter::shared();
        QCOMPARE(GvfsMounter::shared(), mounter);
        std::atomic<QThread*> endedOn = nullptr;
        connect(mounter.get(), &QObject::destroyed, [&endedOn] { endedOn = QThread::currentThread(); });
        std::thread([last = std::move(mounter)] {}).join();
        QTRY_VERIFY(endedOn.load() != nullptr);
        QCOMPARE(endedOn.load(), QThread::currentThread());
        QVERIFY(GvfsMounter::shared());
    }

    void mounter_reportsEachFolderItReturned()
    {
        GvfsMounter mounter;
        QSignalSpy spy(&mounter, &GvfsMounter::unmounted);
        const QString url = QString::fromStdString(siteUrl("/docs%20of%20mine"));
        const QString user = QString::fromStdString(test::SambaServer::user());
        QVERIFY(!mounter.mount(url, user, QStringLiteral("No Secret 7"), [] { return true; }));
        QVERIFY(!mounter.existingMount(url));
        const auto folder =
            mounter.mount(url, user, QString::fromStdString(m_samba.password()), [] { return true; });
        QVERIFY(folder);
        QCOMPARE(mounter.existingMount(url).value_or(""), *folder);
        mounter.unmount(*folder);
        const auto isReported = [&](const auto& told) {
            return told[0].template value<fs::path>() == *folder;
        };
        QTRY_VERIFY(std::any_of(spy.begin(), spy.end(), isReported));
    }

    void monitor_reportsTheKernelsUnmounts()
    {
        const QTemporaryDir point;
        const QByteArray path = QFile::encodeName(point.path());
        if (::mount("luma-test", path.constData(), "tmpfs", 0, nullptr) != 0)
            QSKIP("no right to mount here");
        const MountMonitor monitor;
        QSignalSpy spy(&monitor, &MountMonitor::unmounted);
        QCOMPARE(::umount(path.constData()), 0);
        QTRY_COMPARE(spy.size(), 1);
        QCOMPARE(spy[0][0].value<fs::path>(), fs::path(path.toStdString()));
    }

    void files_workOnTheVolume()
    {
        const auto folder = mount(siteUrl());
        QVERIFY2(folder, text(folder));
        const QTemporaryDir local;
        const fs::path source = fs::path(local.path().toStdString()) / "page.html";
        const std::string bytes(3'000'000, 'x');
        put(source, bytes);
        fs::permissions(source, fs::perms(0640));
        const timespec times[2] = {{1'500'000'000, 0}, {1'500'000'001, 0}};
        QCOMPARE(::utimensat(AT_FDCWD, source.c_str(), times, 0), 0);

        const fs::path copy = *folder / "copy \xc3\xa4 #1%.html";
        const fs::path behind = m_samba.folder(site) / copy.filename();
        QCOMPARE(failure(copyFile(source, copy, Existing::Keep)), std::string());
        QCOMPARE(bytesOf(behind), bytes);
        QVERIFY2(!copyFile(source, copy, Existing::Keep), "an existing file was replaced");
        struct stat status = {};
        QCOMPARE(::stat(copy.c_str(), &status), 0);
        QCOMPARE(status.st_mtim.tv_sec, 1'500'000'001);

        put(source, "second");
        QCOMPARE(::utimensat(AT_FDCWD, source.c_str(), times, 0), 0);
        QCOMPARE(failure(copyFile(source, copy, Existing::Replace)), std::string());
        QCOMPARE(bytesOf(behind), std::string("second"));
        QCOMPARE(::stat(behind.c_str(), &status), 0);
        QCOMPARE(status.st_mtim.tv_sec, 1'500'000'001);

        QCOMPARE(failure(writeFile(copy, "third")), std::string());
        QCOMPARE(bytesOf(behind), std::string("third"));
        QCOMPARE(failure(moveItem(copy, *folder / "docs of mine/moved.html")), std::string());
        QVERIFY(!moveItem(*folder / "index.html", *folder / "docs of mine/moved.html"));
        QCOMPARE(bytesOf(*folder / "docs of mine/moved.html"), std::string("third"));
        QCOMPARE(failure(copyItem(*folder / "docs of mine", *folder / "whole")), std::string());
        QVERIFY(moveItem(*folder / "whole", source.parent_path() / "whole"));
        QCOMPARE(bytesOf(source.parent_path() / "whole/moved.html"), std::string("third"));
        QVERIFY(removeItem(*folder / "docs of mine/moved.html"));
        // No temporary file is left, on either side.
        const auto count =
            std::distance(fs::directory_iterator(m_samba.folder(site)), fs::directory_iterator());
        QCOMPARE(count, 2);
        unmountAndWait(*folder);
    }
};

LUMA_TEST(tst_mounts)
#include "tst_mounts.moc"
