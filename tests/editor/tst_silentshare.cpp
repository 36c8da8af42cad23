// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/files.h"
#include "tests/editor/pagewindow.h"
#include "tests/support/registry.h"
#include "tests/support/sambaserver.h"

#include <QFile>
#include <QProcess>
#include <QTest>

#include <csignal>
#include <utility>

using namespace luma;
namespace fs = std::filesystem;

/// A page on a real share whose server falls silent.
class tst_silentshare final : public QObject, private test::PageWindow
{
    Q_OBJECT

private:
    test::SambaServer m_samba;

    // As the desktop shows it.
    static fs::path mounted()
    {
        std::error_code error;
        fs::directory_iterator mounts(qgetenv("XDG_RUNTIME_DIR").toStdString() + "/gvfs", error);
        return error || mounts == fs::directory_iterator() ? fs::path() : mounts->path();
    }
    static bool isSilent(const fs::path& file)
    {
        QProcess look;
        look.start("stat", {QString::fromStdString(file)});
        const bool isAnswered = look.waitForFinished(300);
        look.kill();
        return !isAnswered;
    }

    /// Stops the share's process, and waits until the file can't be looked at: the kernel answers for a moment.
    class Silence final
    {
    public:
        explicit Silence(const fs::path& file) : m_daemon(test::SambaServer::fuseDaemon())
        {
            QVERIFY(m_daemon > 0);
            QCOMPARE(::kill(m_daemon, SIGSTOP), 0);
            QTRY_VERIFY(isSilent(file));
        }
        ~Silence() { end(); }
        Silence(const Silence&) = delete;
        Silence& operator=(const Silence&) = delete;
        void end()
        {
            if (const pid_t daemon = std::exchange(m_daemon, 0); daemon > 0)
                ::kill(daemon, SIGCONT);
        }

    private:
        pid_t m_daemon;
    };

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
        QProcess gio;
        gio.start("gio", {"mount", QString::fromStdString(m_samba.address() + "/Web Site")});
        QVERIFY(gio.waitForStarted());
        gio.write(QByteArray::fromStdString(test::SambaServer::user() + "\nWORKGROUP\n" + m_samba.password() +
                                            "\n"));
        QTRY_COMPARE(gio.state(), QProcess::NotRunning);
        QTRY_VERIFY2(!mounted().empty(), gio.readAllStandardError());
    }
    void cleanup() { close(); }

    // While it is stopped, each call on the share's folder waits: none of these lines would be left.
    void silentShare_leavesTheWindowAlive()
    {
        const fs::path page = m_samba.folder("Web Site") / "page.html";
        QVERIFY(writeFile(page, "<title>T</title><p>one</p><p>two</p>"));
        const fs::path share = mounted();
        open(share / "page.html", share);
        Silence silence(share / "page.html");
        window->checkFile();
        click("<p");
        trigger("deleteTagAction");
        QTRY_COMPARE(body(), QByteArray("<p>two</p>"));
        click("<p");
        trigger("duplicateAction");
        QTRY_COMPARE(answer("document.body.innerHTML"), "<p>two</p><p>two</p>");
        trigger("saveAction");
        QTRY_VERIFY2(the<QWidget>("noticeBar")->isVisible(), "the user is told that the save is late");
        QVERIFY(writeFile(page, "<title>T</title><p>four</p>"));

        silence.end();
        answerQuestion("overwriteQuestion", "Cancel");
        QTRY_VERIFY((window->checkFile(), the<QWidget>("noticeBar")->isVisible()));
        QCOMPARE(body(), QByteArray("<p>two</p><p>two</p>"));
    }

    void pageOfASilentShare_opensWhenItAnswers()
    {
        QVERIFY(writeFile(m_samba.folder("Web Site") / "late.html", "<title>T</title><p>one</p>"));
        const fs::path share = mounted();
        Silence silence(share / "late.html");
        openWindow(share / "late.html", share);
        QVERIFY(the<QWidget>("noticeBar")->isVisible());
        silence.end();
        waitUntilShown();
        QCOMPARE(body(), QByteArray("<p>one</p>"));
        QVERIFY(!the<QWidget>("noticeBar")->isVisible());
    }

    void windowClosesAfterALateSave()
    {
        const fs::path page = m_samba.folder("Web Site") / "saved.html";
        QVERIFY(writeFile(page, "<title>T</title><p>one</p><p>two</p>"));
        const fs::path share = mounted();
        open(share / "saved.html", share);
        click("<p");
        trigger("deleteTagAction");
        QTRY_COMPARE(body(), QByteArray("<p>two</p>"));
        Silence silence(share / "saved.html");
        window->writeToURL(share / "saved.html", {});
        window->close();
        QVERIFY(window && the<QWidget>("noticeBar")->isVisible());
        silence.end();
        QTRY_VERIFY(!window);
        QCOMPARE(*readFile(page), std::string("<title>T</title><p>two</p>"));
    }
};

LUMA_TEST(tst_silentshare)
#include "tst_silentshare.moc"
