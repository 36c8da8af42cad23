// SPDX-License-Identifier: GPL-3.0-or-later
#include "desktop/singleinstance.h"
#include "tests/support/registry.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <unistd.h>

using namespace luma;

/// The test holds the name on its private session bus and so is the first process; the real program is the
/// second, in a process namespace of its own, for a first start ends every folder watcher it sees.
class tst_secondstart final : public QObject
{
    Q_OBJECT

    QTemporaryDir m_folder;
    QList<QByteArray> m_arguments;
    int m_calls = 0;
    std::string m_error;

    QByteArray at(const char* name) const { return m_folder.path().toUtf8() + '/' + name; }

    std::unique_ptr<SingleInstance> holder()
    {
        return std::make_unique<SingleInstance>([this](const QList<QByteArray>& arguments) -> Result<void> {
            ++m_calls;
            m_arguments = arguments;
            return m_error.empty() ? Result<void>() : Error{m_error};
        });
    }

    // Starts the program beside a process with the watcher's name; answers both their fates, and what the
    // program wrote to standard error.
    QByteArray startSecond(const QStringList& arguments) const
    {
        QProcess process;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
        process.setProcessEnvironment(environment);
        process.setWorkingDirectory(m_folder.path());
        process.setProcessChannelMode(QProcess::MergedChannels);
        const auto* const script = "bash -c 'exec -a LUMAWatcher tail -f /dev/null' & watcher=$!\n"
                                   "\"$@\"; echo \"status $?\"\n"
                                   "kill $watcher && echo 'watcher alive'";
        process.start(QStringLiteral("unshare"),
                      QStringList{QStringLiteral("-pf"), QStringLiteral("--mount-proc"),
                                  QStringLiteral("--kill-child"), QStringLiteral("sh"), QStringLiteral("-c"),
                                  QLatin1StringView(script), QStringLiteral("sh"),
                                  qEnvironmentVariable("LUMA_BUILD_DIR") + QStringLiteral("/bin/luma")} +
                          arguments);
        // The event loop answers the call.
        const bool ended =
            QTest::qWaitFor([&process] { return process.state() == QProcess::NotRunning; }, 120'000);
        return ended ? process.readAll() : QByteArray("does not end");
    }

private slots:
    void initTestCase()
    {
        for (const char* folder : {"source", "destination"})
            QVERIFY(QDir(m_folder.path()).mkdir(QLatin1StringView(folder)));
        for (const char* name : {"page \xc3\xbc.html", "photo.png"}) {
            QFile file(QFile::decodeName(at(name)));
            QVERIFY(file.open(QFile::WriteOnly));
        }
    }

    void secondStart_handsItsArgumentsOver_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QList<QByteArray>>("received");
        QTest::addColumn<QByteArray>("error");
        QTest::newRow("the list") << QStringList() << QList<QByteArray>() << QByteArray();
        QTest::newRow("a page") << QStringList{QStringLiteral("page ü.html")}
                                << QList<QByteArray>{at("page \xc3\xbc.html")} << QByteArray();
        QTest::newRow("two folders") << QStringList{QStringLiteral("source"), QStringLiteral("./destination")}
                                     << QList<QByteArray>{at("source"), at("destination")} << QByteArray();
        QTest::newRow("what can't be opened") << QStringList{QStringLiteral("photo.png")}
                                              << QList<QByteArray>{at("photo.png")} << QByteArray("no luck");
    }
    void secondStart_handsItsArgumentsOver()
    {
        if (::geteuid() != 0)
            QSKIP("only root gets a process namespace of its own");
        QFETCH(QStringList, arguments);
        QFETCH(QList<QByteArray>, received);
        QFETCH(QByteArray, error);
        m_error = error.toStdString();
        const auto first = holder();
        const auto start = first->begin({});
        QVERIFY(start);
        QVERIFY(*start == SingleInstance::Start::First);
        // A first start elsewhere on the machine ends all watchers, this one included; then it is tried again.
        QByteArray said;
        for (int tries = 0; tries < 5 && !said.contains("watcher alive"); ++tries) {
            m_calls = 0;
            said = startSecond(arguments);
        }
        QVERIFY2(said.contains(error.isEmpty() ? "status 0\n" : "status 2\n"), said.constData());
        QVERIFY2(error.isEmpty() || said.contains("luma: no luck\n"), said.constData());
        QVERIFY2(said.contains("watcher alive"), said.constData());
        QCOMPARE(m_calls, 1);
        QCOMPARE(m_arguments, received);
    }

    void name_isFreeOnceTheFirstHasEnded()
    {
        for (int time = 0; time < 2; ++time) {
            const auto start = holder()->begin({});
            QVERIFY(start);
            QVERIFY(*start == SingleInstance::Start::First);
        }
    }
};

LUMA_TEST(tst_secondstart)
#include "tst_secondstart.moc"
