// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/sitetemplate.h"
#include "base/propertylist.h"
#include "site/sitearchive.h"
#include "tests/support/registry.h"

#include <QTest>

using namespace luma;

class tst_sitearchive final : public QObject
{
    Q_OBJECT

    static QByteArray binary(const QVariant& value)
    {
        return *writePropertyList(value, PropertyListFormat::Binary);
    }

    static QByteArray holding(const QVariant& sites)
    {
        return binary(QVariantMap{{QStringLiteral("sitesArray"), sites}});
    }

private slots:
    void roundTrip_keepsTypes()
    {
        QVariantMap record = siteTemplate();
        record.insert(QStringLiteral("Upload"),
                      QVariantList{QStringLiteral("a b.html"), QStringLiteral("ü%#\"'.png")});
        QVariantMap odd = siteTemplate();
        odd.insert(
            QStringLiteral("destinationDict"),
            QVariantMap{{QStringLiteral("sshPortNo"), qlonglong{22}}, {QStringLiteral("autoconnect"), true}});
        const auto back = unarchiveSites(archiveSites({record, odd}));
        QVERIFY(back);
        QCOMPARE(*back, (QList<QVariantMap>{record, odd}));
        const QVariantMap endpoint = back->first().value(QStringLiteral("sourceDict")).toMap();
        QCOMPARE(endpoint.value(QStringLiteral("sshPortNo")).typeId(), int{QMetaType::QString});
        QCOMPARE(endpoint.value(QStringLiteral("autoconnect")).typeId(), int{QMetaType::LongLong});
        const QVariantMap oddEndpoint = back->last().value(QStringLiteral("destinationDict")).toMap();
        QCOMPARE(oddEndpoint.value(QStringLiteral("sshPortNo")).typeId(), int{QMetaType::LongLong});
        QCOMPARE(oddEndpoint.value(QStringLiteral("autoconnect")).typeId(), int{QMetaType::Bool});
        const auto none = unarchiveSites(archiveSites({}));
        QVERIFY(none && none->isEmpty());
    }

    // However much is cut off, inside or outside, the bytes are refused.
    void truncatedAnywhere_isRefused()
    {
        const QByteArray whole = archiveSites({siteTemplate(), siteTemplate()});
        for (qsizetype length = 0; length < whole.size(); ++length)
            QVERIFY2(!unarchiveSites(whole.left(length)), qPrintable(QString::number(length)));
        const QByteArray inner = binary(QVariantList{siteTemplate()});
        for (qsizetype length = 0; length < inner.size(); ++length)
            QVERIFY2(!unarchiveSites(holding(inner.left(length))), qPrintable(QString::number(length)));
    }

    void damagedAnywhere_neverCrashes()
    {
        const QByteArray whole = archiveSites({siteTemplate()});
        int refused = 0;
        for (qsizetype at = 0; at < whole.size(); ++at) {
            for (const int flipped : {0x01, 0x10, 0x80, 0xFF}) {
                QByteArray damaged = whole;
                damaged[at] = static_cast<char>(damaged[at] ^ flipped);
                refused += unarchiveSites(damaged) ? 0 : 1;
            }
        }
        QVERIFY(refused > 0);
    }

    void wrongTypes_areRefused_data()
    {
        QTest::addColumn<QByteArray>("archive");
        QTest::newRow("outer is a list") << binary(QVariantList());
        QTest::newRow("no such key") << binary(
            QVariantMap{{QStringLiteral("sites"), binary(QVariantList())}});
        QTest::newRow("value is a list") << holding(QVariantList{siteTemplate()});
        QTest::newRow("value is a string") << holding(QStringLiteral("bplist00"));
        QTest::newRow("inner is no archive") << holding(QByteArray("nonsense"));
        QTest::newRow("root is a record") << holding(binary(siteTemplate()));
        QTest::newRow("a record is a string")
            << holding(binary(QVariantList{siteTemplate(), QStringLiteral("x")}));
    }
    void wrongTypes_areRefused()
    {
        QFETCH(QByteArray, archive);
        QVERIFY(!unarchiveSites(archive));
    }

    void whatCannotBeStored_leavesAnArchiveWithoutList()
    {
        const QByteArray archive =
            archiveSites({{{QStringLiteral("siteID"), QVariant::fromValue(QPoint())}}});
        const auto outer = readPropertyList(archive);
        QVERIFY(outer);
        QCOMPARE(*outer, QVariant(QVariantMap()));
        QVERIFY(!unarchiveSites(archive));
    }
};

LUMA_TEST(tst_sitearchive)
#include "tst_sitearchive.moc"
