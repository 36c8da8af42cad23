#include "app/makerhosts.h"
#include "app/versioncheck.h"
#include "tests/support/registry.h"

#include <QTest>

using namespace luma;

class tst_versioncheck final : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { qunsetenv(maker::updateServerVariable); }

    void command_isTheFixedOne()
    {
        QCOMPARE(VersionCheck::command(),
                 QStringLiteral(
                     "/usr/bin/curl -s 'http://update.luma.example/software/version.php?item_number=4010'"));
    }

    void command_takesAnotherServerFromTheEnvironment()
    {
        qputenv(maker::updateServerVariable, "127.0.0.1:8080");
        QCOMPARE(
            VersionCheck::command(),
            QStringLiteral("/usr/bin/curl -s 'http://127.0.0.1:8080/software/version.php?item_number=4010'"));
        qputenv(maker::updateServerVariable, "x'; touch /tmp/owned; '");
        QVERIFY(VersionCheck::command().contains(maker::updateServer));
    }

    void notice_comparesTexts_data()
    {
        QTest::addColumn<std::optional<QString>>("answer");
        QTest::addColumn<QString>("own");
        QTest::addColumn<QString>("message");
        const QString update = QStringLiteral("An update for Postwick is available");
        const QString none = QStringLiteral("There are no newer versions available");
        QTest::newRow("no answer") << std::optional<QString>() << "1.0" << QString();
        QTest::newRow("same") << std::optional(QStringLiteral("1.0")) << "1.0" << none;
        QTest::newRow("newer") << std::optional(QStringLiteral("1.1")) << "1.0" << update;
        QTest::newRow("older") << std::optional(QStringLiteral("1.0")) << "1.1" << update;
        QTest::newRow("same but for a blank") << std::optional(QStringLiteral("1.0 ")) << "1.0" << update;
        QTest::newRow("own unknown") << std::optional(QStringLiteral("1.0")) << "" << update;
    }
    void notice_comparesTexts()
    {
        QFETCH(std::optional<QString>, answer);
        QFETCH(QString, own);
        QFETCH(QString, message);
        const auto notice = VersionCheck::notice(answer, own);
        QCOMPARE(notice.has_value(), !message.isEmpty());
        if (notice)
            QCOMPARE(notice->message, message);
    }

    void notice_namesTheVersion()
    {
        const auto notice = VersionCheck::notice(QStringLiteral("2.0"), QStringLiteral("1.0"));
        QVERIFY(notice);
        QCOMPARE(notice->information,
                 QStringLiteral(
                     "\nThere is a newer version available (version 2.0).\nClick OK to go to the LUMA for "
                     "Ventura web site.\n"));
        QVERIFY(notice->offer == VersionCheck::Offer::ProductPage);
    }
};

LUMA_TEST(tst_versioncheck)
#include "tst_versioncheck.moc"
