// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/sitelist.h"
#include "app/sitelisttree.h"
#include "app/sitetemplate.h"
#include "browser/endpoint.h"
#include "tests/support/registry.h"
#include "tests/support/rows.h"

#include <QAbstractItemModelTester>
#include <QMimeData>
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

    /// The sites of a folder in parentheses.
    static QString shape(const SiteListTree& tree, const QModelIndex& parent = {})
    {
        QStringList entries;
        for (int row = 0; row < tree.rowCount(parent); ++row) {
            const QModelIndex index = tree.index(row, 0, parent);
            entries += tree.rowCount(index) > 0 ? '(' + shape(tree, index) + ')' : index.data().toString();
        }
        return entries.join(parent.isValid() ? QString() : QStringLiteral(" "));
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

    void dragged_goesWhereItIsDropped_data()
    {
        const test::Rows<QString, QString, int, QString> row("dragged", "onto", "position", "after");
        row("a site between others", "e", "", 0, "e a (bc) d");
        row("to the end", "a", "", -1, "(bc) d e a");
        row("before a folder", "e", "", 1, "a e (bc) d");
        row("onto a folder", "e", "F", -1, "a (bce) d");
        row("into a folder", "a", "F", 1, "(bac) d e");
        row("out of a folder", "b", "", 0, "b a (c) d e");
        row("within its folder", "c", "F", 0, "a (cb) d e");
        row("beside itself", "d", "", 2, "a (bc) d e");
        row("a folder", "F", "", 4, "a d e (bc)");
        row("a folder onto itself", "F", "F", 0, "a (bc) d e");
    }
    void dragged_goesWhereItIsDropped()
    {
        QFETCH(QString, dragged);
        QFETCH(QString, onto);
        QFETCH(int, position);
        QFETCH(QString, after);
        SiteList list;
        fill(list, "abcde");
        SiteListTree tree(list);
        const QAbstractItemModelTester tester(&tree);
        list.move({1, 2}, 3, "F");
        QCOMPARE(shape(tree), "a (bc) d e");
        const QModelIndex item = dragged == "F"
                                     ? tree.indexOfFolder("F")
                                     : tree.indexOfSite(static_cast<int>(namesIn(list).indexOf(dragged)));
        const std::unique_ptr<QMimeData> data(tree.mimeData({item}));
        (void)tree.dropMimeData(data.get(), Qt::MoveAction, position, 0, tree.indexOfFolder(onto));
        QCOMPARE(shape(tree), after);
    }

    void sortedByName_keepsTheOrder()
    {
        SiteList list;
        fill(list, "dbca");
        SiteListTree tree(list);
        const QAbstractItemModelTester tester(&tree);
        list.move({1, 3}, 1, "F");
        QCOMPARE(shape(tree), "d (ba) c");
        tree.setSortedByName(true);
        QCOMPARE(shape(tree), "(ab) c d");
        QVERIFY(tree.setData(tree.indexOfFolder("F"), "G", Qt::EditRole));
        QTRY_COMPARE(list.folders(), QStringList{"G"});
        QVERIFY(!tree.setData(tree.indexOfFolder("G"), " ", Qt::EditRole));
        tree.removeFolder("G");
        tree.setSortedByName(false);
        QCOMPARE(shape(tree), "d b a c");
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
