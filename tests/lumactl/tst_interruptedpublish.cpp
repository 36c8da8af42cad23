// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/lumactl/killedlumactl.h"
#include "tests/support/registry.h"
#include "tests/support/site.h"

#include <QTest>

using luma::test::Site;

namespace {

// Whether it ended by itself; killed at the file-changing call of this number, 0: at none.
bool publishes(const Site& site, int killAt = 0)
{
    const QStringList arguments = {QStringLiteral("publish"), QStringLiteral("--delete"),
                                   QStringLiteral("from"), QStringLiteral("to")};
    const luma::test::LumactlEnd end = luma::test::runLumactl(site, arguments, killAt);
    return !end.isKilled && end.code == 0;
}

} // namespace

/// lumactl publish, killed at each call that changes a file.
class tst_interruptedpublish final : public QObject
{
    Q_OBJECT

private slots:
    void everyFileIsOldOrNew_andTheNextRunFinishes()
    {
        if (!luma::test::canKillLumactl())
            QSKIP("no build folder, or a sanitizer that can't be preloaded over");
        int kills = 0;
        int leftovers = 0;
        for (bool isOver = false; !isOver; ++kills) {
            const Site site({{"from/a.css", "new"},
                             {"from/new/b.html", "new"},
                             {"from/c.html", "new"},
                             {"from/same", "same"},
                             {"to/a.css", "old"},
                             {"to/c.html", "old"},
                             {"to/same", "same"},
                             {"to/old/gone", "old"}});
            for (const char* path : {"from/a.css", "from/c.html"})
                site.setAge(path, 10);
            for (const char* path : {"to/a.css", "to/c.html", "from/same", "to/same"})
                site.setAge(path, 20);
            isOver = publishes(site, kills + 1);
            for (const char* path : {"to/a.css", "to/c.html", "to/new/b.html"}) {
                const bool isThere = std::filesystem::exists(site.at(path));
                const std::string bytes = isThere ? site.bytesOf(path) : "old";
                QVERIFY2(bytes == "old" || bytes == "new", path);
            }
            leftovers += site.listing("to").find(".luma-") != std::string::npos ? 1 : 0;
            QVERIFY(publishes(site));
            QCOMPARE(site.listing("to"), std::string("a.css\nc.html\nnew/b.html\nsame\n"));
            QCOMPARE(site.bytesOf("to/a.css") + site.bytesOf("to/c.html"), std::string("newnew"));
        }
        QVERIFY2(kills > 15 && leftovers > 3, qPrintable(QString::number(kills)));
    }
};

LUMA_TEST(tst_interruptedpublish)
#include "tst_interruptedpublish.moc"
