// SPDX-License-Identifier: GPL-3.0-or-later
#include "site/rsyncjob.h"
#include "tests/lumactl/killedlumactl.h"
#include "tests/support/registry.h"
#include "tests/support/site.h"

#include <QTest>

using namespace luma;
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

// With rsync, whose other end is on this computer, too; each of its processes counts its own calls.
bool publishesByRsync(const Site& site, Deletions deletions, int killAt = 0)
{
    const std::string identity = site.root();
    const auto lock = lockForPublishing(identity);
    const RsyncJob job(
        {site.at("from").native() + '/', site.at("to").native() + '/'},
        [killAt](std::vector<std::string> words, std::string_view input, const StillWanted& wanted) {
            if (killAt > 0 && words.front() == "rsync")
                words.insert(words.begin(), {"env", "LD_PRELOAD=" LUMA_KILLATCALL,
                                             "LUMA_KILL_AT=" + std::to_string(killAt)});
            return runProgram(words, input, wanted);
        });
    const auto report = job.compare(IgnoredNames(), deletions, WorkItem(), PublishedFiles::load(identity));
    return report && job.transfer(report->rows, report->foldersOnlyThere, {}, {}, {}, {}, report->leftovers)
                         .problems.empty();
}

void putFiles(const Site& site)
{
    for (const char* path : {"from/a.css", "from/new/b.html", "from/c.html"})
        site.put(path, "new");
    for (const char* path : {"to/a.css", "to/c.html", "to/old/gone"})
        site.put(path, "old");
    for (const char* path : {"from/same", "to/same"})
        site.put(path, "same");
    for (const char* path : {"from/a.css", "from/c.html"})
        site.setAge(path, 10);
    for (const char* path : {"to/a.css", "to/c.html", "from/same", "to/same"})
        site.setAge(path, 20);
}

// No file holds anything but its old or its new bytes.
bool isOldOrNew(const Site& site)
{
    const auto isEither = [&site](const char* path) {
        const std::string bytes = std::filesystem::exists(site.at(path)) ? site.bytesOf(path) : "old";
        return bytes == "old" || bytes == "new";
    };
    return isEither("to/a.css") && isEither("to/c.html") && isEither("to/new/b.html");
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
            const Site site;
            putFiles(site);
            isOver = publishes(site, kills + 1);
            QVERIFY(isOldOrNew(site));
            leftovers += site.listing("to").find(".luma-") != std::string::npos ? 1 : 0;
            QVERIFY(publishes(site));
            QCOMPARE(site.listing("to"), std::string("a.css\nc.html\nnew/b.html\nsame\n"));
            QCOMPARE(site.bytesOf("to/a.css") + site.bytesOf("to/c.html"), std::string("newnew"));
        }
        QVERIFY2(kills > 15 && leftovers > 3, qPrintable(QString::number(kills)));
    }

    void byRsync_everyFileIsOldOrNew_andTheNextRunFinishes()
    {
        if (!luma::test::canKillLumactl())
            QSKIP("no build folder, or a sanitizer that can't be preloaded over");
        int kills = 0;
        int leftovers = 0;
        for (bool isOver = false; !isOver; ++kills) {
            const Site site;
            putFiles(site);
            isOver = publishesByRsync(site, Deletions::Listed, kills + 1);
            QVERIFY(isOldOrNew(site));
            leftovers += site.listing("to").find('.') == 0 ? 1 : 0;
            QVERIFY(publishesByRsync(site, Deletions::Ignored));
            const std::string listing = site.listing("to");
            QVERIFY2(!listing.starts_with('.') && listing.find("/.") == std::string::npos, listing.c_str());
            QVERIFY(publishesByRsync(site, Deletions::Listed));
            QCOMPARE(site.listing("to"), std::string("a.css\nc.html\nnew/b.html\nsame\n"));
            QCOMPARE(site.bytesOf("to/a.css") + site.bytesOf("to/c.html"), std::string("newnew"));
        }
        qInfo("%d points, temporary files after %d of them", kills - 1, leftovers);
        QVERIFY2(kills > 10 && leftovers > 1, qPrintable(QString::number(kills)));
    }
};

LUMA_TEST(tst_interruptedpublish)
#include "tst_interruptedpublish.moc"
