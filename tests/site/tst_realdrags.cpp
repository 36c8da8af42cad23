// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/site/twofolders.h"
#include "tests/support/registry.h"

#include <QProcess>
#include <QStandardPaths>

namespace fs = std::filesystem;
using luma::test::TwoFolders;

namespace {

/// A program that answers a line with a line.
class Helper final
{
public:
    Helper(const QString& display, const QStringList& arguments)
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("QT_QPA_PLATFORM", "xcb");
        environment.insert("DISPLAY", display);
        m_process.setProcessEnvironment(environment);
        m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        m_process.start(qEnvironmentVariable("LUMA_BUILD_DIR") + "/bin/drag_helper", arguments);
    }
    ~Helper()
    {
        m_process.closeWriteChannel();
        if (!m_process.waitForFinished())
            m_process.kill();
        m_process.waitForFinished();
    }
    Helper(const Helper&) = delete;
    Helper& operator=(const Helper&) = delete;

    QString ask(const QStringList& command)
    {
        m_process.write(command.join(QLatin1Char('\t')).toUtf8() + '\n');
        // The folder watcher prints to the same output.
        for (;;) {
            while (!m_process.canReadLine()) {
                if (!m_process.waitForReadyRead(-1))
                    return "gone";
            }
            const QString line = QString::fromUtf8(m_process.readLine()).trimmed();
            if (!line.startsWith("folderChanged"))
                return line;
        }
    }
    bool waitFor(const QStringList& command, const QString& answer)
    {
        return QTest::qWaitFor([&] { return ask(command) == answer; }, patience);
    }

    static constexpr int patience = 60'000;

private:
    QProcess m_process;
};

using Place = QString; // "X Y"

} // namespace

/// Drags by a real mouse on a separate display; the offscreen platform has none.
class tst_realdrags final : public QObject
{
    Q_OBJECT

private:
    QProcess m_server;
    QString m_display;

    void xdotool(const QString& arguments) const
    {
        QProcess process;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("DISPLAY", m_display);
        process.setProcessEnvironment(environment);
        process.start("xdotool", arguments.split(QLatin1Char(' ')));
        QVERIFY(process.waitForFinished(-1) && process.exitCode() == 0);
    }
    void moveTo(const Place& place) const { xdotool(QLatin1String("mousemove ") + place); }
    // The other program has answered the first position by the time it sees the second.
    void nudge() const { xdotool("mousemove_relative -- 2 1"); }
    void press(const Place& place) const
    {
        moveTo(place);
        xdotool("mousedown 1");
        // Far enough to be a drag, in several steps.
        for (int i = 0; i < 4; ++i)
            xdotool("mousemove_relative -- 6 2");
    }
    void release() const { xdotool("mouseup 1"); }

    static void makeSite(const TwoFolders& folders)
    {
        folders.putAll(".", "sending/a/p.png|sending/b/y.html|receiving/c/z.html|outside/a b%.txt");
        folders.put("sending/index.html", "<a href=a/x.html>");
        folders.put("sending/a/x.html", "<img src=p.png>");
    }
    static QString path(const TwoFolders& folders, const char* name)
    {
        return QString::fromStdString(folders.at(name).native());
    }

private slots:
    void initTestCase()
    {
        if (qEnvironmentVariableIsEmpty("LUMA_BUILD_DIR"))
            QSKIP("LUMA_BUILD_DIR names no build folder");
        for (const char* const program : {"Xvfb", "xdotool"}) {
            if (QStandardPaths::findExecutable(QLatin1String(program)).isEmpty())
                QSKIP(program);
        }
        m_server.start("Xvfb", {"-displayfd", "1", "-screen", "0", "1500x900x24", "-nolisten", "tcp"});
        while (!m_server.canReadLine()) {
            if (!m_server.waitForReadyRead(-1))
                QSKIP("Xvfb gives no display");
        }
        m_display = QLatin1Char(':') + QString::fromUtf8(m_server.readLine()).trimmed();
    }
    void cleanupTestCase()
    {
        m_server.terminate();
        m_server.waitForFinished();
    }

    void drag_withinAndBetweenPanes_data()
    {
        QTest::addColumn<QStringList>("target");
        QTest::addColumn<bool>("control");
        QTest::addColumn<QString>("left"); // what "sending" and "receiving" hold then
        const QStringList folder{"source", "0", "b"};
        const QStringList other{"destination", "0", QString()};
        const QStringList file{"source", "0", "index.html"};
        const QStringList here{"source", "1", QString()};
        const char* const as = "a/p.png|a/x.html|b/y.html|index.html|/c/z.html|";
        QTest::newRow("within a pane: moves")
            << folder << false << "a/p.png|b/x.html|b/y.html|index.html|/c/z.html|";
        QTest::newRow("within a pane, Control: copies")
            << folder << true << "a/p.png|a/x.html|b/x.html|b/y.html|index.html|/c/z.html|";
        QTest::newRow("to the other pane: copies")
            << other << false << "a/p.png|a/x.html|b/y.html|index.html|/c/z.html|x.html|";
        QTest::newRow("on a file: refused") << file << false << as;
        QTest::newRow("to where it is: refused") << here << false << as;
    }
    void drag_withinAndBetweenPanes()
    {
        QFETCH(QStringList, target);
        QFETCH(bool, control);
        QFETCH(QString, left);
        const TwoFolders folders;
        makeSite(folders);
        Helper site(m_display, {"site", QString::fromStdString(folders.root().native())});
        QVERIFY(site.waitFor({"open", "source", "a", "x.html"}, "ok"));
        press(site.ask({"place", "source", "1", "x.html"}));
        if (control)
            xdotool("keydown Control_L");
        moveTo(site.ask(QStringList{"place"} + target));
        const bool seen = site.waitFor(QStringList{"over"} + target, "yes");
        nudge();
        release();
        if (control)
            xdotool("keyup Control_L");
        QVERIFY(seen);
        const bool isRefused = QByteArray(QTest::currentDataTag()).contains("refused");
        if (isRefused)
            QCOMPARE(site.ask({"log"}), QString());
        else
            QVERIFY(site.waitFor({"log"}, "Updating links to: x.html|||Done"));
        QString found =
            QString::fromStdString(folders.listing("sending") + '/' + folders.listing("receiving"));
        QCOMPARE(found.replace(QLatin1Char('\n'), QLatin1Char('|')), left);
        if (!isRefused && target.constFirst() == "source")
            QCOMPARE(folders.bytesOf("sending/index.html"), std::string("<a href=b/x.html>"));
    }

    void drag_fromAnotherProgram_copies()
    {
        const TwoFolders folders;
        makeSite(folders);
        Helper site(m_display, {"site", QString::fromStdString(folders.root().native())});
        Helper peer(m_display, {"peer", path(folders, "outside/a b%.txt")});
        QVERIFY(site.waitFor({"open", "source", "b"}, "ok"));
        const QStringList target{"source", "0", "b"};
        press(peer.ask({"place"}));
        moveTo(site.ask(QStringList{"place"} + target));
        const bool seen = site.waitFor(QStringList{"over"} + target, "yes");
        nudge();
        release();
        QVERIFY(seen);
        QVERIFY(site.waitFor({"log"}, "Updating links to: a b%.txt|||Done"));
        QVERIFY(fs::exists(folders.at("sending/b/a b%.txt")));
        QVERIFY(fs::exists(folders.at("outside/a b%.txt")));
    }

    void drag_toAnotherProgram_givesItsFiles()
    {
        const TwoFolders folders;
        makeSite(folders);
        Helper site(m_display, {"site", QString::fromStdString(folders.root().native())});
        Helper peer(m_display, {"peer", path(folders, "outside/a b%.txt")});
        QVERIFY(site.waitFor({"open", "source", "a", "x.html"}, "ok"));
        press(site.ask({"place", "source", "1", "x.html"}));
        moveTo(peer.ask({"place"}));
        const bool seen = QTest::qWaitFor([&] { return peer.ask({"moves"}).toInt() > 0; }, Helper::patience);
        const int moves = peer.ask({"moves"}).toInt();
        nudge();
        const bool answered =
            QTest::qWaitFor([&] { return peer.ask({"moves"}).toInt() > moves; }, Helper::patience);
        release();
        QVERIFY(seen && answered);
        QVERIFY(peer.waitFor({"taken"}, QLatin1String("file://") + path(folders, "sending/a/x.html") +
                                            QLatin1Char('|')));
        QVERIFY(fs::exists(folders.at("sending/a/x.html")));
    }
};

LUMA_TEST(tst_realdrags)
#include "tst_realdrags.moc"
