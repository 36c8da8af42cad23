// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/propertylist.h"
#include "tests/support/registry.h"

#include <QDateTime>
#include <QTest>

using namespace luma;

class tst_propertylist final : public QObject
{
    Q_OBJECT

    // Object i is an array of two references to object i + 1: the values double at each level.
    static QByteArray doubling(int levels)
    {
        QByteArray bytes("bplist00");
        QByteArray table;
        for (int i = 0; i < levels; ++i) {
            table += static_cast<char>(bytes.size());
            bytes += QByteArray("\xA2", 1) + static_cast<char>(i + 1) + static_cast<char>(i + 1);
        }
        table += static_cast<char>(bytes.size());
        bytes += '\x09';
        QByteArray trailer(32, '\0');
        trailer[6] = trailer[7] = 1;
        trailer[15] = static_cast<char>(levels + 1);
        trailer[31] = static_cast<char>(bytes.size());
        return bytes + table + trailer;
    }

private slots:
    void roundTrip_keepsEveryType_data()
    {
        QTest::addColumn<PropertyListFormat>("format");
        QTest::newRow("binary") << PropertyListFormat::Binary;
        QTest::newRow("XML") << PropertyListFormat::Xml;
    }
    void roundTrip_keepsEveryType()
    {
        QFETCH(PropertyListFormat, format);
        const QDateTime date(QDate(2024, 2, 29), QTime(12, 30, 1), Qt::UTC);
        const QVariantMap values = {{QStringLiteral("string"), QStringLiteral("a <b> & \"ü\" 🌍")},
                                    {QStringLiteral("empty"), QString()},
                                    {QStringLiteral("number"), qlonglong{1}},
                                    {QStringLiteral("negative"), qlonglong{-5}},
                                    {QStringLiteral("large"), qlonglong{1} << 62},
                                    {QStringLiteral("true"), true},
                                    {QStringLiteral("real"), 1.25},
                                    {QStringLiteral("date"), date},
                                    {QStringLiteral("data"), QByteArray("\0\xff\n", 3)},
                                    {QStringLiteral("list"), QVariantList{QStringLiteral("x"), qlonglong{2}}},
                                    {QStringLiteral("map"), QVariantMap{{QStringLiteral("a % b"), false}}}};
        const auto bytes = writePropertyList(values, format);
        QVERIFY(bytes);
        const auto back = readPropertyList(*bytes);
        QVERIFY(back);
        QCOMPARE(back->toMap(), values);
        for (auto entry = values.begin(); entry != values.end(); ++entry)
            QCOMPARE(back->toMap().value(entry.key()).typeId(), entry->typeId());
    }

    void write_refusesOtherTypes()
    {
        const QVariantMap values = {{QStringLiteral("a"), QVariantList{QVariant()}}};
        QVERIFY(!writePropertyList(values, PropertyListFormat::Binary));
    }

    void read_refusesHostileShapes_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        const QByteArray deep = QByteArray("<array>").repeated(100'000);
        QTest::newRow("nothing") << QByteArray();
        QTest::newRow("text") << QByteArray("sitesArray");
        QTest::newRow("header alone") << QByteArray("bplist00");
        QTest::newRow("a trillion values") << doubling(40);
        QTest::newRow("deep XML") << QByteArray("<plist>" + deep + QByteArray(deep).replace("<", "</") +
                                                "</plist>");
        QTest::newRow("not a property list") << QByteArray("<html><body>404</body></html>");
    }
    void read_refusesHostileShapes()
    {
        QFETCH(QByteArray, bytes);
        QVERIFY(!readPropertyList(bytes));
    }

    void read_followsSharedObjects()
    {
        const auto value = readPropertyList(doubling(3));
        QVERIFY(value);
        QCOMPARE(value->toList().size(), 2);
        QCOMPARE(value->toList()[1].toList()[1].toList()[1], QVariant(true));
    }

    void read_survivesEveryChangedByte()
    {
        QVariantList many;
        for (int i = 0; i < 20; ++i)
            many += QString::number(i);
        const auto whole = writePropertyList(
            QVariantMap{{QStringLiteral("many"), many}, {QStringLiteral("one"), qlonglong{70'000}}},
            PropertyListFormat::Binary);
        QVERIFY(whole);
        int readable = 0;
        for (qsizetype at = 8; at < whole->size(); ++at) {
            for (const int flipped : {0x01, 0x0F, 0x80, 0xFF}) {
                QByteArray damaged = *whole;
                damaged[at] = static_cast<char>(damaged[at] ^ flipped);
                readable += readPropertyList(damaged) ? 1 : 0;
            }
        }
        QVERIFY(readable > 0);
    }
};

LUMA_TEST(tst_propertylist)
#include "tst_propertylist.moc"
