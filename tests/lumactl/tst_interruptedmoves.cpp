// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/lumactl/killedlumactl.h"
#include "tests/support/registry.h"
#include "tests/support/site.h"

#include <QTest>

#include <sys/stat.h>
#include <sys/xattr.h>

#include <array>
#include <memory>

using luma::test::Files;
using luma::test::LumactlEnd;
using luma::test::Site;
namespace fs = std::filesystem;

namespace {

const Files someSite = {{"a/x.html", "<a href=y.html><a href=../o.html>"},
                        {"a/d/y.html", "<a href=../x.html><img src='../../p.png'>"},
                        {"o.html", "<a href=a/x.html><img src=p.png>"},
                        {"q.html", "<a href=a/d/y.html><img src=/p.png>"},
                        {"s.css", "b{background:url(p.png)}"},
                        {"p.png", "image"},
                        {"b/z.html", "<a href=../a/>"}};

LumactlEnd lumactl(const Site& site, const QString& arguments, int killAt = 0)
{
    return luma::test::runLumactl(site, arguments.split(QLatin1Char(' ')), killAt);
}

// Time to the nanosecond, mode, names and label of each file.
Files factsOf(const Site& site, bool hasLabels)
{
    Files facts;
    for (const auto& [path, bytes] : site.contents()) {
        const fs::path file = site.at(path);
        struct stat status = {};
        (void)::stat(file.c_str(), &status);
        std::array<char, 8> label = {};
        if (hasLabels)
            (void)::getxattr(file.c_str(), "user.xdg.tags", label.data(), label.size());
        facts[path] = std::to_string(status.st_mtim.tv_sec) + '.' + std::to_string(status.st_mtim.tv_nsec) +
                      " mode " + std::to_string(status.st_mode) + " names " +
                      std::to_string(status.st_nlink) + " label " + label.data();
    }
    return facts;
}

// Those that differ, for a message.
std::string differences(const Files& before, const Files& now)
{
    std::string text;
    for (const auto& [path, fact] : before) {
        const auto found = now.find(path);
        if (found == now.end() || found->second != fact)
            text += path + ": " + fact + " -> " + (found == now.end() ? "gone" : found->second) + '\n';
    }
    return text;
}

} // namespace

/// lumactl, killed at each call that changes a file: the next command leaves the site as it was before or as it is after the
/// move, without temporary files.
class tst_interruptedmoves final : public QObject
{
    Q_OBJECT

private:
    bool useOtherFileSystem()
    {
        std::string folder = "/dev/shm/luma-test-XXXXXX";
        if (!::mkdtemp(folder.data()))
            return false;
        m_other = folder;
        struct stat here = {};
        struct stat there = {};
        return ::stat(fs::temp_directory_path().c_str(), &here) == 0 && ::stat(folder.c_str(), &there) == 0 &&
               here.st_dev != there.st_dev;
    }

    [[nodiscard]] std::unique_ptr<Site> freshSite(bool isFar) const
    {
        auto site = std::make_unique<Site>(someSite);
        fs::create_symlink("../p.png", site->at("a/logo"));
        fs::create_symlink("a/x.html", site->at("first"));
        fs::create_hard_link(site->at("q.html"), site->at("r.html"));
        double age = 0;
        for (const auto& [path, bytes] : someSite) {
            site->setAge(path, age += 1000.25);
            (void)::setxattr(site->at(path).c_str(), "user.xdg.tags", "Red", 3, 0);
        }
        fs::permissions(site->at("a/x.html"), fs::perms(0604));
        fs::permissions(site->at("o.html"), fs::perms(0640));
        if (isFar)
            fs::create_directory_symlink(m_other, site->at("far"));
        return site;
    }

    // Also what is behind the link to the other file system, and temporary files.
    [[nodiscard]] Files allFiles(const Site& site, bool isFar) const
    {
        Files files = site.contents();
        if (!isFar)
            return files;
        for (const auto& [path, bytes] : site.contents("far/"))
            files["far/" + path] = bytes;
        return files;
    }

    fs::path m_other;

private slots:
    void killedAnywhere_isFinishedOrTakenBack_data()
    {
        QTest::addColumn<QString>("arguments");
        QTest::addColumn<bool>("isUndo");
        QTest::addColumn<bool>("isFar");
        QTest::newRow("move") << "move . a p.png b" << false << false;
        QTest::newRow("rename") << "rename . p.png q.png" << false << false;
        QTest::newRow("copy") << "copy . a o.html b" << false << false;
        QTest::newRow("replacement") << "find . html --source --replace htm&" << false << false;
        QTest::newRow("undo of a replacement") << "find . html --source --replace htm&" << true << false;
        QTest::newRow("undo of a move") << "move . a p.png b" << true << false;
        QTest::newRow("undo of a copy") << "copy . a o.html b" << true << false;
        QTest::newRow("move to another file system") << "move . a p.png far" << false << true;
        QTest::newRow("undo of that") << "move . a p.png far" << true << true;
    }
    void killedAnywhere_isFinishedOrTakenBack()
    {
        QFETCH(QString, arguments);
        QFETCH(bool, isUndo);
        QFETCH(bool, isFar);
        if (!luma::test::canKillLumactl())
            QSKIP("a sanitizer's library must come first");
        if (isFar && !useOtherFileSystem())
            QSKIP("needs another file system at /dev/shm");
        const Files before = allFiles(*freshSite(isFar), isFar);
        Files moved;
        int killed = 0;
        for (bool isKilled = true; isKilled; ++killed) {
            const auto site = freshSite(isFar);
            const Files facts = factsOf(*site, !isFar);
            if (moved.empty()) {
                QCOMPARE(lumactl(*site, arguments).code, 0);
                moved = allFiles(*site, isFar);
                QCOMPARE(lumactl(*site, QStringLiteral("undo .")).code, 0);
                QCOMPARE(allFiles(*site, isFar), before);
            }
            if (isUndo)
                QCOMPARE(lumactl(*site, arguments).code, 0);
            isKilled = lumactl(*site, isUndo ? QStringLiteral("undo .") : arguments, killed + 1).isKilled;
            // Sometimes what mends it is killed, too.
            if (isKilled && killed % 3 == 0)
                (void)lumactl(*site, QStringLiteral("check ."), killed % 11 + 1);
            (void)lumactl(*site, QStringLiteral("check ."));
            const Files now = allFiles(*site, isFar);
            QVERIFY2(now == before || now == moved,
                     qPrintable(QStringLiteral("killed at call %1:\n%2")
                                    .arg(killed + 1)
                                    .arg(QString::fromStdString(site->listing()))));
            QVERIFY(site->listing().find(".luma-") == std::string::npos);
            if (!isKilled)
                QVERIFY(now == (isUndo ? before : moved));
            QVERIFY(fs::equivalent(site->at("q.html"), site->at("r.html")));
            if (now == moved)
                QCOMPARE(lumactl(*site, QStringLiteral("undo .")).code, 0);
            QCOMPARE(allFiles(*site, isFar), before);
            QCOMPARE(differences(facts, factsOf(*site, !isFar)), std::string());
        }
        qInfo("killed at %d calls", killed - 1);
        QVERIFY(killed > 20);
    }

    void cleanup()
    {
        if (!m_other.empty())
            fs::remove_all(m_other);
        m_other.clear();
    }
};

LUMA_TEST(tst_interruptedmoves)
#include "tst_interruptedmoves.moc"
