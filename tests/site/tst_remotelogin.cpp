// SPDX-License-Identifier: GPL-3.0-or-later
#include "browser/endpoint.h"
#include "site/remotelogin.h"
#include "tests/support/registry.h"
#include "tests/support/rows.h"

#include <QSignalSpy>
#include <QTest>

#include <atomic>
#include <thread>

using namespace luma;

class tst_remotelogin final : public QObject
{
    Q_OBJECT

private slots:
    void check_asksWithLoginAndPort_data()
    {
        const test::Rows<QVariantMap, QString> row("destination", "expectedCall");
        const QVariantMap whole = {
            {endpoint::user, "anna"}, {endpoint::server, "web.example"}, {endpoint::sshPortNo, "2222"}};
        row("all there", whole, "anna@web.example 2222");
        QVariantMap numberedPort = whole;
        numberedPort[endpoint::sshPortNo] = 2222;
        row("a port that is no string", numberedPort, "anna@web.example 22");
        QVariantMap withoutUser = whole;
        withoutUser.remove(endpoint::user);
        row("no user: not checked, does not work", withoutUser, QString());
    }
    void check_asksWithLoginAndPort()
    {
        QFETCH(QVariantMap, destination);
        QFETCH(QString, expectedCall);
        QString call;
        RemoteLogin login(std::make_shared<ObservedDictionary>(destination),
                          {[&](const QString& name, const QString& port) {
                               call = name + QLatin1Char(' ') + port;
                               return QString();
                           },
                           {}});
        QSignalSpy checked(&login, &RemoteLogin::checked);
        login.check();
        QTRY_COMPARE(checked.size(), 1);
        QCOMPARE(call, expectedCall);
        QCOMPARE(checked[0][0].toBool(), !expectedCall.isEmpty());
    }

    void closing_whileTheCheckRuns()
    {
        std::atomic<bool> release = false;
        std::atomic<bool> ended = false;
        auto login = std::make_unique<RemoteLogin>(
            std::make_shared<ObservedDictionary>(QVariantMap{{endpoint::user, "a"}, {endpoint::server, "b"}}),
            RemoteLogin::Calls{[&](const QString&, const QString&) {
                                   while (!release)
                                       std::this_thread::yield();
                                   ended = true;
                                   return QString();
                               },
                               {}});
        login->check();
        login.reset();
        release = true;
        QTRY_VERIFY(ended);
    }
};

LUMA_TEST(tst_remotelogin)
#include "tst_remotelogin.moc"
