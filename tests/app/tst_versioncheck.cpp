// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/makerhosts.h"
#include "app/versioncheck.h"
#include "base/workitem.h"
#include "shell/taskwrapper.h"
#include "tests/support/registry.h"

#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>
#include <QThreadPool>

#include <atomic>

using namespace luma;

class tst_versioncheck final : public QObject
{
    Q_OBJECT

    // Runs the check in the background, as the application does, while this thread serves.
    static std::optional<VersionCheck::Notice> checkAgainst(quint16 port)
    {
        qputenv(maker::updateServerVariable, "127.0.0.1:" + QByteArray::number(port));
        std::optional<VersionCheck::Notice> notice;
        std::atomic<bool> done = false;
        start(std::make_shared<WorkItem>(), [&](const WorkItem&) {
            notice = VersionCheck::run(shellRunner(), QStringLiteral("1.0"));
            done = true;
        });
        [&done] { QTRY_VERIFY_WITH_TIMEOUT(done, 60'000); }();
        QThreadPool::globalInstance()->waitForDone();
        return notice;
    }

private slots:
    void cleanup() { qunsetenv(maker::updateServerVariable); }

    void command_isFixedButForTheServer()
    {
        const QString command =
            QStringLiteral("/usr/bin/curl -s 'http://%1/software/version.php?item_number=4010'");
        QCOMPARE(VersionCheck::command(), command.arg(QStringLiteral("update.luma.example")));
        qputenv(maker::updateServerVariable, "127.0.0.1:8080");
        QCOMPARE(VersionCheck::command(), command.arg(QStringLiteral("127.0.0.1:8080")));
        qputenv(maker::updateServerVariable, "x'; touch /tmp/owned; '");
        QVERIFY(VersionCheck::command().contains(maker::updateServer));
    }

    void notice_comparesTexts_data()
    {
        QTest::addColumn<QString>("answer");
        QTest::addColumn<QString>("own");
        QTest::addColumn<QString>("message");
        const QString update = QStringLiteral("An update for Postwick is available");
        const QString none = QStringLiteral("There are no newer versions available");
        const auto row = [](const char* name, const char* answer, const char* own, const QString& message) {
            QTest::newRow(name) << QString::fromLatin1(answer) << QString::fromLatin1(own) << message;
        };
        row("no answer", "", "1.0", QString());
        row("same", "1.0", "1.0", none);
        row("newer", "1.1", "1.0", update);
        row("older", "1.0", "1.1", update);
        row("same but for a blank", "1.0 ", "1.0", update);
        row("own unknown", "1.0", "", update);
    }
    void notice_comparesTexts()
    {
        QFETCH(QString, answer);
        QFETCH(QString, own);
        QFETCH(QString, message);
        const auto notice = VersionCheck::notice(answer, own);
        QCOMPARE(notice.has_value(), !message.isEmpty());
        if (notice)
            QCOMPARE(notice->message, message);
    }

    void run_asksAServerWithCurl_data()
    {
        QTest::addColumn<QByteArray>("body");
        QTest::addColumn<QString>("message");
        QTest::newRow("same") << QByteArray("1.0\n") << "There are no newer versions available";
        QTest::newRow("other") << QByteArray("0.9\n") << "An update for Postwick is available";
        QTest::newRow("nothing") << QByteArray() << QString();
    }
    void run_asksAServerWithCurl()
    {
        QFETCH(QByteArray, body);
        QFETCH(QString, message);
        QByteArray request;
        QTcpServer server;
        QVERIFY(server.listen(QHostAddress::LocalHost));
        connect(&server, &QTcpServer::newConnection, &server, [&] {
            QTcpSocket* socket = server.nextPendingConnection();
            connect(socket, &QTcpSocket::readyRead, socket, [&, socket] {
                request += socket->readAll();
                if (!request.contains("\r\n\r\n"))
                    return;
                socket->write("HTTP/1.1 200 OK\r\nConnection: close\r\n\r\n" + body);
                socket->disconnectFromHost();
            });
        });
        const auto notice = checkAgainst(server.serverPort());
        QVERIFY(request.startsWith("GET /software/version.php?item_number=4010 HTTP/1."));
        QCOMPARE(notice ? notice->message : QString(), message);
    }

    void run_withoutAServerIsSilent()
    {
        QTcpServer server;
        QVERIFY(server.listen(QHostAddress::LocalHost));
        const quint16 port = server.serverPort();
        server.close();
        QVERIFY(!checkAgainst(port));
    }
};

LUMA_TEST(tst_versioncheck)
#include "tst_versioncheck.moc"
