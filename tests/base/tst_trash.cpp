// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/trash.h"
#include "tests/support/registry.h"
#include "tests/support/site.h"

#include <QTest>

#include <algorithm>

namespace fs = std::filesystem;
using namespace luma;

class tst_trash final : public QObject
{
    Q_OBJECT

private slots:
    void items_goToTheTrashAndBack()
    {
        const std::string odd = "a b%20#\n\xff.txt";
        const test::Site site({{odd, "odd"}, {"x/same", "1"}, {"y/same", "2"}, {"folder/in/it", "3"}});
        std::vector<TrashedItem> trashed;
        for (const std::string& name :
             {odd, std::string("x/same"), std::string("y/same"), std::string("folder")}) {
            const auto moved = moveToTrash(site.at(name));
            QVERIFY2(moved, moved ? "" : moved.error().text.c_str());
            trashed.push_back(*moved);
        }
        QCOMPARE(site.listing(), std::string("x/\ny/\n"));
        QCOMPARE(trashed[1].file.filename().native(), std::string("same"));
        QCOMPARE(trashed[2].file.filename().native(), std::string("same 2"));
        const std::string record = site.bytesOf(trashed[0].info.native());
        QVERIFY(record.starts_with("[Trash Info]\nPath=" + site.root().native() +
                                   "/a%20b%2520%23%0A%FF.txt\n"
                                   "DeletionDate=2"));
        fs::remove(site.at("x"));
        site.put("y/same", "another");
        QVERIFY(!putBack(trashed[2]));
        for (const std::size_t number : {0U, 1U, 3U})
            QVERIFY(putBack(trashed[number]));
        QVERIFY(!putBack(trashed[0]));
        QCOMPARE(site.contents(),
                 (test::Files{{odd, "odd"}, {"x/same", "1"}, {"y/same", "another"}, {"folder/in/it", "3"}}));
        QCOMPARE(site.bytesOf(trashed[2].file.native()), std::string("2"));
    }

    void whatCannotBeMoved_staysAndLeavesNoRecord()
    {
        const test::Site site;
        site.put("page.html", "x");
        QVERIFY(!moveToTrash(site.at("gone")));
        const QByteArray data = qgetenv("XDG_DATA_HOME");
        qputenv("XDG_DATA_HOME", QByteArray::fromStdString(site.at("data").native()));
        site.put("data/Trash", "no folder");
        const auto moved = moveToTrash(site.at("page.html"));
        qputenv("XDG_DATA_HOME", data);
        QVERIFY(!moved);
        QVERIFY(moved.error().text.ends_with("This volume has no trash"));
        QCOMPARE(site.bytesOf("page.html"), std::string("x"));
    }
};

LUMA_TEST(tst_trash)
#include "tst_trash.moc"
