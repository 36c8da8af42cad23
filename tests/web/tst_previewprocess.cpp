// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/support/registry.h"
#include "tests/support/rows.h"
#include "tests/support/site.h"
#include "web/previewpipe.h"
#include "web/previewprocess.h"
#include "web/previewprogram.h"
#include "web/previewsource.h"
#include "web/scriptpreview.h"

#include <QApplication>
#include <QDirIterator>
#include <QFile>
#include <QProcess>
#include <QSignalSpy>
#include <QTest>

#include <fcntl.h>

#include <array>
#include <csignal>

using namespace luma;

/// The process of a preview, the real one and some that aren't well, and what LUMA and it tell each other.
class tst_previewprocess final : public QObject
{
    Q_OBJECT

private:
    [[nodiscard]] PreviewSource page(const QByteArray& markup) const
    {
        return {markup, SiteFolder(m_site.at("page.html"), m_site.root())};
    }
    PreviewProcess& opened(const QString& program)
    {
        m_preview = std::make_unique<PreviewProcess>(
            [this](const PreviewProcess::Take& take) {
                ++m_asked;
                take(page(m_markup));
            },
            nullptr, program);
        m_preview->show();
        return *m_preview;
    }
    // A program in place of ours, as a script.
    QString program(const QByteArray& script)
    {
        m_site.put("program", "#!/bin/sh\n" + script.toStdString());
        const QString path = QString::fromStdString(m_site.at("program").string());
        QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        return path;
    }
    // Of a process: its children's children, too, in any order.
    static QList<qint64> descendants(qint64 process)
    {
        QList<qint64> all;
        const QStringList names = QDir("/proc").entryList(QDir::Dirs);
        for (const QString& name : names) {
            QFile file("/proc/" + name + "/stat");
            if (!name.toLongLong() || !file.open(QFile::ReadOnly))
                continue;
            const QList<QByteArray> fields = file.readAll().split(')').last().split(' ');
            if (fields.value(2).toLongLong() == process)
                all += QList{name.toLongLong()} + descendants(name.toLongLong());
        }
        return all;
    }
    static bool isAlive(qint64 process)
    {
        QFile file("/proc/" + QString::number(process) + "/stat");
        return file.open(QFile::ReadOnly) && !file.readAll().split(')').last().startsWith(" Z");
    }

    static QStringList filesAtHome()
    {
        QStringList all;
        QDirIterator home(QDir::homePath(), QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
        while (home.hasNext())
            all.append(home.next());
        all.sort();
        return all;
    }

    test::Site m_site;
    QByteArray m_markup;
    int m_asked = 0;
    std::unique_ptr<PreviewProcess> m_preview;

private slots:
    void init()
    {
        m_asked = 0;
        m_markup = "<title>one</title><p>text";
    }
    void cleanup() { m_preview.reset(); }

    // Its processes end with it, also where a script of the page runs for ever; nothing is left on disk.
    void preview_endsWithLuma()
    {
        const QStringList before = filesAtHome();
        m_markup = "<title>one</title><script>setTimeout(() => { for (;;); }, 10)</script>";
        PreviewProcess& preview = opened(PreviewProcess::ownProgram());
        QSignalSpy shown(&preview, &PreviewProcess::shown);
        QTRY_COMPARE(shown.count(), 1);
        preview.show();
        QTRY_COMPARE(shown.count(), 2);
        const qint64 process = preview.processId();
        const QList<qint64> engines = descendants(process);
        QVERIFY(isAlive(process) && !engines.isEmpty());
        m_preview.reset();
        QVERIFY(!isAlive(process));
        for (const qint64 engine : engines)
            QTRY_VERIFY(!isAlive(engine));
        QCOMPARE(filesAtHome(), before);
    }

    void crash_isToldAndAnotherOpens()
    {
        PreviewProcess& preview = opened(PreviewProcess::ownProgram());
        QSignalSpy shown(&preview, &PreviewProcess::shown);
        QSignalSpy failed(&preview, &PreviewProcess::failed);
        QTRY_COMPARE(shown.count(), 1);
        ::kill(static_cast<pid_t>(preview.processId()), SIGKILL);
        QTRY_COMPARE(failed.count(), 1);
        QCOMPARE(preview.processId(), 0);
        preview.show();
        QTRY_COMPARE(shown.count(), 2);
        QCOMPARE(m_asked, 2);
    }

    void brokenProcess_isTold_data()
    {
        const test::Rows<QByteArray, QString> row("script", "told");
        row("ends", "exit 0", "ended by itself");
        row("fails", "exit 1", "ended by itself");
        row("is killed", "kill -9 $$", "ended by itself");
        row("talks", "echo 'xyz nonsense'; yes 2>&- | head -c 1000000; exit 1", "ended by itself");
        row("is not there", "", "can't be started");
    }
    void brokenProcess_isTold()
    {
        QFETCH(QByteArray, script);
        QFETCH(QString, told);
        m_markup.fill('x', 10'000'000);
        QString reason;
        const QString path = script.isEmpty() ? QString("/nowhere/luma") : program(script);
        PreviewProcess& preview = opened(path);
        connect(&preview, &PreviewProcess::failed, this, [&](const QString& text) { reason = text; });
        QTRY_VERIFY2(reason.contains(told), qPrintable(reason));
        QCOMPARE(preview.processId(), 0);
    }

    // The window waits for no process, and keeps the last page alone for one that does not read.
    void processThatDoesNotRead_isNotWaitedFor()
    {
        m_markup.fill('x', 10'000'000);
        PreviewProcess& preview = opened(program("exec sleep 100000"));
        QSignalSpy delayed(&preview, &PreviewProcess::delayed);
        for (int i = 0; i < 100; ++i)
            preview.reload();
        QCOMPARE(m_asked, 1);
        QTRY_COMPARE(delayed.count(), 1);
        QVERIFY(preview.processId() != 0);
    }

    void words_areHeard()
    {
        PreviewProcess& preview = opened(program("printf sqp; cat >/dev/null"));
        QSignalSpy quits(&preview, &PreviewProcess::quitRequested);
        QSignalSpy shown(&preview, &PreviewProcess::shown);
        QTRY_COMPARE(quits.count(), 1);
        QCOMPARE(shown.count(), 1);
        QTRY_COMPARE(m_asked, 2);
    }

    // A page is shown once it has loaded, and finds itself shown from the start.
    void pagesArrive_andKeysAreTold()
    {
        std::array<int, 2> toProgram = {};
        std::array<int, 2> fromProgram = {};
        QCOMPARE(::pipe2(toProgram.data(), O_CLOEXEC), 0);
        QCOMPARE(::pipe2(fromProgram.data(), O_CLOEXEC | O_NONBLOCK), 0);
        FileDescriptor to(toProgram[1]);
        const FileDescriptor from(fromProgram[0]);
        PreviewProgram program(FileDescriptor{toProgram[0]}, FileDescriptor{fromProgram[1]});
        QSignalSpy ended(&program, &PreviewProgram::ended);
        QByteArray said;
        const auto hear = [&] {
            char byte = 0;
            while (::read(from.get(), &byte, 1) == 1)
                said += byte;
            return said;
        };
        const auto window = [] {
            for (QWidget* const each : QApplication::topLevelWidgets()) {
                if (each->objectName() == "scriptPreview")
                    return each;
            }
            return static_cast<QWidget*>(nullptr);
        };
        const auto send = [&](QByteArray message) {
            while (!message.isEmpty()) {
                const QByteArray part = message.left(40'000);
                QCOMPARE(::write(to.get(), part.constData(), static_cast<size_t>(part.size())), part.size());
                message.remove(0, part.size());
                QCoreApplication::processEvents();
            }
        };
        send(previewpipe::message(
            page("<script>document.title = document.visibilityState + innerWidth</script>").toBytes()));
        QTRY_COMPARE(hear(), "s");
        QTRY_VERIFY(window()->windowTitle().startsWith("visible1000"));
        QTest::keyClick(window(), Qt::Key_F5);
        QTRY_COMPARE(hear(), "sp");
        send(previewpipe::message(page("<title>two</title>" + QByteArray(1'000'000, 'x')).toBytes()) +
             previewpipe::message({}));
        QTRY_VERIFY(window()->windowTitle().startsWith("two"));
        QTRY_COMPARE(hear(), "sps");
        QTest::keyClick(window(), Qt::Key_Q, Qt::ControlModifier);
        QTRY_COMPARE(hear(), "spsq");
        QCOMPARE(ended.count(), 0);
        to.reset();
        QTRY_COMPARE(ended.count(), 1);
        QCOMPARE(ended.constFirst().constFirst().toInt(), EXIT_SUCCESS);
    }

    void damagedMessages_endIt_data()
    {
        const test::Rows<QByteArray> row("message");
        row("a length that can't be", QByteArray(8, '\xff'));
        row("no page", previewpipe::message("page"));
        row("half a page", previewpipe::message(page("<p>").toBytes().chopped(2)));
        row("more than a page", previewpipe::message(page("<p>").toBytes() + "x"));
    }
    void damagedMessages_endIt()
    {
        QFETCH(QByteArray, message);
        QProcess process;
        process.start(PreviewProcess::ownProgram(), {PreviewProcess::option});
        process.write(message);
        QTRY_COMPARE(process.state(), QProcess::NotRunning);
        QCOMPARE(process.exitStatus(), QProcess::NormalExit);
        QCOMPARE(process.exitCode(), EXIT_FAILURE);
    }
};

LUMA_TEST(tst_previewprocess)
#include "tst_previewprocess.moc"
