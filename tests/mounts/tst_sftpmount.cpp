// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/files.h"
#include "mounts/mounts.h"
#include "mounts/mounttable.h"
#include "tests/support/registry.h"
#include "tests/support/sshserver.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <QThreadPool>

#include <sys/stat.h>

#include <algorithm>
#include <fstream>

namespace fs = std::filesystem;
using namespace luma;

/// Volumes of an ssh server. The throw-away account logs in by password; it has no keys.
class tst_sftpmount final : public QObject
{
    Q_OBJECT

private:
    test::SshServer m_server;

    std::string url(const fs::path& folder) const
    {
        return "sftp://" + m_server.server() + ":" + m_server.port() + "/" + folder.string();
    }
    Result<fs::path> mount(const fs::path& folder, const std::string& password) const
    {
        return mountShare(url(folder), m_server.user(), password, [] { return true; });
    }
    static bool hasFuseFolder()
    {
        const auto mounts = readMountTable();
        const std::string folder = qgetenv("XDG_RUNTIME_DIR").toStdString() + "/gvfs";
        return std::any_of(mounts.begin(), mounts.end(),
                           [&](const auto& entry) { return entry.mountPoint == folder; });
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
        // The server's fixture enters a mount namespace, in which later mounts may be invisible.
        QVERIFY(!findExistingMount("sftp://127.0.0.1:1/", ""));
        QTRY_VERIFY(hasFuseFolder());
        if (!m_server.start())
            QSKIP(qPrintable(m_server.skipReason()));
    }

    void mountShare_refusesAWrongPasswordWithoutAsking()
    {
        const auto folder = mount(m_server.home(), "No Secret 7");
        QVERIFY(!folder);
        QVERIFY2(folder.error().text.find("refused") != std::string::npos, text(folder));
    }

    void files_keepTimeAndModeOnTheVolume()
    {
        const auto folder = mount(m_server.home(), m_server.password());
        QVERIFY2(folder, text(folder));
        const QTemporaryDir local;
        const fs::path source = fs::path(local.path().toStdString()) / "page.html";
        std::ofstream(source) << "page";
        fs::permissions(source, fs::perms(0604));
        fs::last_write_time(source, fs::file_time_type::clock::now() - std::chrono::hours(50));
        QCOMPARE(failure(copyFile(source, *folder / "a page.html", Existing::Keep)), std::string());
        struct stat before = {};
        struct stat after = {};
        QCOMPARE(::stat(source.c_str(), &before), 0);
        QCOMPARE(::stat((m_server.home() / "a page.html").c_str(), &after), 0);
        QCOMPARE(after.st_mtim.tv_sec, before.st_mtim.tv_sec);
        QCOMPARE(after.st_mode, before.st_mode);
        QCOMPARE(failure(writeFile(*folder / "a page.html", "changed")), std::string());
        const auto bytes = readFile(m_server.home() / "a page.html");
        QVERIFY(bytes);
        QCOMPARE(*bytes, std::string("changed"));
        unmount(*folder);
        QThreadPool::globalInstance()->waitForDone();
        QTRY_VERIFY(!fs::exists(*folder));
    }
};

LUMA_TEST(tst_sftpmount)
#include "tst_sftpmount.moc"
