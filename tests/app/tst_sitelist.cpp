// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/sitelist.h"
#include "app/sitetemplate.h"
#include "browser/endpoint.h"
#include "tests/support/registry.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <QTest>

using namespace luma;

class tst_sitelist final : public QObject
{
    Q_OBJECT

    static QVariantMap named(const char* name)
    {
        QVariantMap record = siteTemplate();
        record.insert(QStringLiteral("siteID"), QString::fromLatin1(name));
        return record;
    }

    static void fill(SiteList& list, const char* names)
    {
        QList<QVariantMap> records;
        for (const char* name = names; *name != '\0'; ++name)
            records += named(QByteArray(name, 1));
        list.setRecords(records);
    }

    static QString namesIn(const SiteList& list)
    {
        QString names;
        for (int row = 0; row < list.rowCount(); ++row)
            names += list.index(row).data().toString();
        return names;
    }

private slots:
    void add_givesEveryRecordEndpointsOfItsOwn()
    {
        SiteList list;
        const QAbstractItemModelTester tester(&list);
        const QVariantMap values = siteTemplate();
        QCOMPARE(list.add(values), 0);
        QCOMPARE(list.add(values), 1);
        list.record(1)->destinationDict()->setValue(endpoint::server, QStringLiteral("other"));
        QCOMPARE(list.records().first(), values);
        QCOMPARE(list.record(1)->destinationDict()->string(endpoint::server), QStringLiteral("other"));
    }

    void remove_givesTheRowToSelect_data()
    {
        QTest::addColumn<QByteArray>("before");
        QTest::addColumn<int>("row");
        QTest::addColumn<int>("selected");
        QTest::addColumn<QString>("after");
        QTest::newRow("the only one stays") << QByteArray("a") << 0 << -1 << "a";
        QTest::newRow("last of several") << QByteArray("abc") << 2 << 1 << "ab";
        QTest::newRow("middle") << QByteArray("abc") << 1 << 1 << "ac";
        QTest::newRow("first") << QByteArray("ab") << 0 << 0 << "b";
        QTest::newRow("no such row") << QByteArray("ab") << 2 << -1 << "ab";
        QTest::newRow("none selected") << QByteArray("ab") << -1 << -1 << "ab";
        QTest::newRow("empty list") << QByteArray() << 0 << -1 << "";
    }
    void remove_givesTheRowToSelect()
    {
        QFETCH(QByteArray, before);
        QFETCH(int, row);
        QFETCH(int, selected);
        QFETCH(QString, after);
        SiteList list;
        const QAbstractItemModelTester tester(&list);
        fill(list, before);
        QCOMPARE(list.remove(row).value_or(-1), selected);
        QCOMPARE(namesIn(list), after);
    }

    void removedRecord_livesWithItsWindow()
    {
        SiteList list;
        fill(list, "ab");
        const SiteList::Record shared = list.record(0);
        QVERIFY(list.remove(0));
        shared->setSiteID(QStringLiteral("still here"));
        QCOMPARE(namesIn(list), QStringLiteral("b"));
    }

    void editedRecord_showsInItsRow()
    {
        SiteList list;
        fill(list, "abc");
        const QSignalSpy changes(&list, &SiteList::dataChanged);
        list.record(1)->sourceDict()->setValue(endpoint::path, QStringLiteral("/srv/site"));
        QCOMPARE(changes.size(), 1);
        QCOMPARE(changes[0][0].toModelIndex().row(), 1);
        QVERIFY(list.index(1).data(SiteList::SearchRole).toString().contains(QStringLiteral("/srv/site")));
    }
};

LUMA_TEST(tst_sitelist)
#include "tst_sitelist.moc"
