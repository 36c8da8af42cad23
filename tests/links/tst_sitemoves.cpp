// SPDX-License-Identifier: GPL-3.0-or-later
#include "links/sitemoves.h"
#include "tests/support/registry.h"
#include "tests/support/site.h"

#include <QTest>

#include <sys/stat.h>
#include <sys/xattr.h>

#include <array>
#include <atomic>

using namespace luma;
using test::Files;
using test::Site;
namespace fs = std::filesystem;

namespace {

const Files someSite = {{"a/x.html", "<a href=y.html><a href=../o.html>\r\n"},
                        {"a/y.html", "<a href='x.html#t'>\xE4"},
                        {"o.html", "<a href=a/x.html><img src=p.png>"},
                        {"p.png", "image"}};

MoveRequest requestOf(const Site& site, MoveOperation operation,
                      std::vector<std::array<const char*, 2>> items)
{
    MoveRequest request{site.root(), {}, operation, {}, {}};
    for (const auto& [from, to] : items) {
        request.items.push_back({site.at(from), site.at(to)});
        fs::create_directories(site.at(to).parent_path());
    }
    return request;
}

MoveReport carryOut(const MoveRequest& request, MoveRunner::Callbacks callbacks = {})
{
    const auto plan = planMove(request);
    auto moves = SiteMoves::open(request.site, std::move(callbacks));
    return plan && moves ? moves->carryOut(*plan) : MoveReport();
}

MoveReport undo(const Site& site)
{
    auto moves = SiteMoves::open(site.root());
    return moves ? moves->undo() : MoveReport();
}

std::string firstProblem(const MoveReport& report)
{
    return report.problems.empty() ? std::string() : report.problems.front().text;
}

} // namespace

/// Moves that are carried out, stopped and taken back. tst_movelaws has the rule that no link breaks.
class tst_sitemoves final : public QObject
{
    Q_OBJECT

private slots:
    void hardLinkedPages_stayOneFileWhereTheyCan_data()
    {
        QTest::addColumn<std::string>("page");
        QTest::addColumn<std::string>("name");
        QTest::addColumn<std::string>("note");
        const auto row = [](const char* what, const char* page, const char* name, const char* others) {
            const std::string note =
                std::string("No longer the same file as ") + others + ", because their links will differ";
            QTest::newRow(what) << std::string(page) << std::string(name)
                                << (*others == '\0' ? std::string() : note);
        };
        row("same links", "<a href=/t.html>", "b/p.html", "");
        row("other links", "<a href=../t.html>", "b/c/p.html", "b/c/p.html");
        row("not a page", "<a href=/t.html>", "b/p.txt", "b/p.txt");
        row("elsewhere", "<a href=/t.html>", "../p.html", "a name elsewhere");
    }
    void hardLinkedPages_stayOneFileWhereTheyCan()
    {
        QFETCH(std::string, page);
        QFETCH(std::string, name);
        QFETCH(std::string, note);
        const Site around;
        around.put("site/a/p.html", page);
        around.put("site/t.html");
        const fs::path first = around.at("site/a/p.html");
        const fs::path second = around.at("site/" + name);
        fs::create_directories(second.parent_path());
        fs::create_hard_link(first, second);
        const Files before = around.contents();
        const fs::path root = around.at("site");
        const auto plan =
            planMove({root, {}, MoveOperation::Move, {{root / "t.html", root / "new.html"}}, {}});
        QVERIFY(plan);
        QCOMPARE(plan->notes.empty() ? std::string() : plan->notes.front().text, note);
        QVERIFY(SiteMoves::open(root)->carryOut(*plan).isDone);
        QVERIFY(fs::equivalent(first, second) == note.empty());
        QVERIFY(around.bytesOf("site/a/p.html").find("new.html") != std::string::npos);
        QVERIFY(SiteMoves::open(root)->undo().isDone);
        QCOMPARE(around.contents(), before);
        QVERIFY(fs::equivalent(first, second) == note.empty());
    }

    // The columns rename an item before the links to it are planned.
    void notedRename_isFinishedOrTakenBack_data()
    {
        QTest::addColumn<bool>("isRenamed");
        QTest::addColumn<bool>("isPlanned");
        QTest::newRow("interrupted before it") << false << false;
        QTest::newRow("interrupted after it") << true << false;
        QTest::newRow("interrupted after its plan") << true << true;
    }
    void notedRename_isFinishedOrTakenBack()
    {
        QFETCH(bool, isRenamed);
        QFETCH(bool, isPlanned);
        const Site site(someSite);
        const Files before = site.contents();
        MoveRequest request = requestOf(site, MoveOperation::Move, {{"a/x.html", "a/z.html"}});
        request.isRenamedAlready = true;
        QVERIFY(SiteMoves::open(site.root())->noteRename(request.items.front()));
        if (isRenamed)
            fs::rename(site.at("a/x.html"), site.at("a/z.html"));
        if (isPlanned)
            QVERIFY(MoveJournal::open(site.root())->begin(jobOf(*planMove(request))));
        QVERIFY(!SiteMoves::recover(site.root()).empty());
        QVERIFY(SiteMoves::recover(site.root()).empty());
        QCOMPARE(site.contents() == before, !isPlanned);
        if (!isPlanned)
            return;
        QCOMPARE(site.bytesOf("o.html"), std::string("<a href=a/z.html><img src=p.png>"));
        QVERIFY(undo(site).isDone);
        QCOMPARE(site.contents(), before);
    }

    void notedRename_endsWithItsPlan()
    {
        const Site site(someSite);
        const Files before = site.contents();
        MoveRequest request = requestOf(site, MoveOperation::Move, {{"a/x.html", "a/z.html"}});
        request.isRenamedAlready = true;
        for (const bool isKept : {false, true}) {
            auto moves = SiteMoves::open(site.root());
            QVERIFY(moves && moves->noteRename(request.items.front()));
            fs::rename(site.at("a/x.html"), site.at("a/z.html"));
            const auto plan = planMove(request);
            QVERIFY(isKept ? moves->carryOut(*plan).isDone : moves->takeRenameBack().problems.empty());
            QCOMPARE(site.contents() == before, !isKept);
            QVERIFY(!MoveJournal::isPending(site.root()));
        }
    }

    void symbolicLinks_followAndComeBack_data()
    {
        QTest::addColumn<bool>("isCopied");
        QTest::addColumn<QString>("move");
        QTest::addColumn<QString>("before");
        QTest::addColumn<QString>("after");
        const auto row = [](const char* name, const char* move, const char* before, const char* after) {
            const bool isCopied = std::string_view(name) == "in a copy";
            QTest::newRow(name) << isCopied << move << before << after;
        };
        row("leads to what moves", "a > b/a", "l > ./a//x.html", "l > b/a/x.html");
        row("moves itself", "a > b/c/a", "a/l > ../p.png", "b/c/a/l > ../../../p.png");
        row("moves alone", "a/l > l", "a/l > x.html", "l > a/x.html");
        row("moves with its target", "a > b/c/a", "a/l > ../a/x.html", "b/c/a/l > ../a/x.html");
        row("is absolute", "a > b", "l > @/a/x.html", "l > @/b/x.html");
        row("leads to a folder", "a > b", "l > a/", "l > b/");
        row("leads nowhere", "a > b", "l > a/gone", "l > a/gone");
        row("is not concerned", "a > b", "l > ./p.png", "l > ./p.png");
        row("in a copy", "a > b/c/a", "a/l > ../p.png", "b/c/a/l > ../../../p.png");
    }
    void symbolicLinks_followAndComeBack()
    {
        QFETCH(bool, isCopied);
        QFETCH(QString, move);
        QFETCH(QString, before);
        QFETCH(QString, after);
        const Site site(someSite);
        const auto pair = [&site](QString text) {
            const QStringList parts =
                text.replace(u'@', QString::fromStdString(site.root().native())).split(QStringLiteral(" > "));
            return std::array{parts[0].toStdString(), parts[1].toStdString()};
        };
        const auto [link, target] = pair(before);
        const auto [newLink, newTarget] = pair(after);
        const auto [from, to] = pair(move);
        fs::create_symlink(target, site.at(link));
        const MoveRequest request = requestOf(site, isCopied ? MoveOperation::Copy : MoveOperation::Move,
                                              {{from.c_str(), to.c_str()}});
        const MoveReport done = carryOut(request);
        QVERIFY2(done.isDone, firstProblem(done).c_str());
        QCOMPARE(fs::read_symlink(site.at(newLink)).native(), newTarget);
        QCOMPARE(fs::exists(site.at(newLink)), !target.ends_with("gone"));
        QVERIFY(undo(site).problems.empty());
        QCOMPARE(fs::read_symlink(site.at(link)).native(), target);
        QVERIFY(!isCopied || !fs::exists(fs::symlink_status(site.at(newLink))));
    }

    void linksOfATarget_changeEverywhereAndBack()
    {
        const Site site(
            {{"d/x.html", "<a href=../gone.html#t><a href='/gone.html?q'><a href=../gone.html/y>"},
             {"d/new.html", ""},
             {"s.css", "a{b:url(gone.html)}"},
             {"o.html", "<a href=d/../gone.html><a href=Gone.html><a href=gone.htm>"}});
        const Files before = site.contents();
        MoveRequest request = requestOf(site, MoveOperation::Move, {{"gone.html", "d/new.html"}});
        request.changesLinksOnly = true;
        const MoveReport done = carryOut(request);
        QVERIFY2(done.isDone, firstProblem(done).c_str());
        QCOMPARE(site.bytesOf("d/x.html"),
                 std::string("<a href=new.html#t><a href='/d/new.html?q'><a href=../gone.html/y>"));
        QCOMPARE(site.bytesOf("s.css"), std::string("a{b:url(d/new.html)}"));
        QCOMPARE(site.bytesOf("o.html"),
                 std::string("<a href=d/new.html><a href=Gone.html><a href=gone.htm>"));
        QVERIFY(undo(site).isDone);
        QCOMPARE(site.contents(), before);
        request.items.front().to = site.at("none.html");
        QVERIFY(!carryOut(request).isDone);
        QCOMPARE(site.contents(), before);
    }

    void undo_restoresBytesTimesAndLabels()
    {
        const Site site(someSite);
        site.setAge("o.html", 5000);
        fs::permissions(site.at("o.html"),
                        fs::perms::owner_read | fs::perms::owner_write | fs::perms::others_read);
        const bool hasLabels = ::setxattr(site.at("o.html").c_str(), "user.xdg.tags", "Red", 3, 0) == 0;
        struct stat before = {};
        QCOMPARE(::stat(site.at("o.html").c_str(), &before), 0);
        const MoveReport done =
            carryOut(requestOf(site, MoveOperation::Move, {{"a", "b/a"}, {"p.png", "b/q.png"}}));
        QVERIFY2(done.isDone, firstProblem(done).c_str());
        QCOMPARE(site.bytesOf("o.html"), std::string("<a href=b/a/x.html><img src=b/q.png>"));
        QCOMPARE(site.bytesOf("b/a/x.html"), std::string("<a href=y.html><a href=../../o.html>\r\n"));
        struct stat after = {};
        QCOMPARE(::stat(site.at("o.html").c_str(), &after), 0);
        QCOMPARE(after.st_mode, before.st_mode);
        QVERIFY(after.st_mtim.tv_sec > before.st_mtim.tv_sec);
        char label[3] = {};
        if (hasLabels)
            QCOMPARE(::getxattr(site.at("o.html").c_str(), "user.xdg.tags", label, 3), ssize_t{3});
        const MoveReport undone = undo(site);
        QVERIFY(undone.isDone && undone.problems.empty());
        QCOMPARE(undone.title, "Move 2 items to " + site.at("b").native());
        fs::remove(site.at("b"));
        QCOMPARE(site.contents(), someSite);
        QCOMPARE(::stat(site.at("o.html").c_str(), &after), 0);
        QCOMPARE(after.st_mtim.tv_nsec, before.st_mtim.tv_nsec);
        QCOMPARE(after.st_mtim.tv_sec, before.st_mtim.tv_sec);
        QCOMPARE(firstProblem(undo(site)), std::string("There is no move to take back"));
    }

    void undo_leavesWhatHasChangedSinceAlone()
    {
        const Site site(someSite);
        QVERIFY(carryOut(requestOf(site, MoveOperation::Move, {{"a/x.html", "b/x.html"}})).isDone);
        site.put("o.html", "new");
        const MoveReport undone = undo(site);
        QVERIFY(undone.isDone);
        QCOMPARE(firstProblem(undone), site.at("o.html").native() + ": has changed since, left as it is");
        QCOMPARE(site.bytesOf("o.html"), std::string("new"));
        QCOMPARE(site.bytesOf("a/x.html"), someSite.at("a/x.html"));
        QCOMPARE(site.bytesOf("a/y.html"), someSite.at("a/y.html"));
        QVERIFY(carryOut(requestOf(site, MoveOperation::Copy, {{"a", "b/a"}})).isDone);
        site.put("b/a/y.html", "new");
        site.put("b/a/z.html", "new");
        QCOMPARE(undo(site).problems.size(), std::size_t{1});
        QCOMPARE(site.listing("b"), std::string("a/y.html\na/z.html\n"));
    }

    void undo_doesNothingWhereAnItemCannotGoBack()
    {
        const Site site(someSite);
        QVERIFY(carryOut(requestOf(site, MoveOperation::Move, {{"p.png", "b/p.png"}, {"a", "b/a"}})).isDone);
        site.put("p.png", "new");
        const Files moved = site.contents();
        const MoveReport undone = undo(site);
        QVERIFY(!undone.isDone);
        QCOMPARE(firstProblem(undone), site.at("p.png").native() + ": File exists");
        QCOMPARE(site.contents(), moved);
        // Jobs before it can be taken back without it.
        site.put("n.txt", "note");
        QVERIFY(carryOut(requestOf(site, MoveOperation::Move, {{"n.txt", "n2.txt"}})).isDone);
        site.put("n.txt", "new");
        QVERIFY(!undo(site).isDone);
        QCOMPARE(SiteMoves::open(site.root())->skipUndo(),
                 std::optional<std::string>("Rename n.txt to n2.txt"));
        for (const char* const file : {"n.txt", "n2.txt", "p.png"})
            fs::remove(site.at(file));
        QVERIFY(undo(site).isDone);
        fs::remove(site.at("b"));
        QCOMPARE(site.contents(), someSite);
    }

    // The last jobs are kept, the youngest is taken back first.
    void undo_takesBackOneJobAfterTheOther()
    {
        const Site site(someSite);
        for (const auto& names :
             {std::array{"a", "b"}, std::array{"b", "c"}, std::array{"c/x.html", "x.html"}})
            QVERIFY(carryOut(requestOf(site, MoveOperation::Move, {names})).isDone);
        for (int i = 0; i < 3; ++i)
            QVERIFY(undo(site).isDone);
        QCOMPARE(site.contents(), someSite);
    }

    void stopped_leavesEverythingAsItWas()
    {
        const Site site(someSite);
        const MoveRequest request =
            requestOf(site, MoveOperation::Copy, {{"a", "b/a"}, {"o.html", "b/o.html"}});
        MoveRequest moved = request;
        moved.operation = MoveOperation::Move;
        for (const MoveRequest& each : {request, moved}) {
            bool wasStopped = true;
            for (int most = 0; wasStopped; ++most) {
                std::atomic<int> asked = 0;
                MoveRunner::Callbacks callbacks;
                callbacks.stillWanted = [&] { return asked++ < most; };
                const MoveReport report = carryOut(each, callbacks);
                QVERIFY(report.problems.empty());
                wasStopped = report.isStopped;
                QCOMPARE(report.isDone, !wasStopped);
                if (wasStopped)
                    QCOMPARE(site.contents(), someSite);
            }
            QVERIFY(site.contents() != someSite);
            QVERIFY(undo(site).isDone);
            QCOMPARE(site.contents(), someSite);
            fs::create_directories(site.at("b"));
        }
    }

    void pageChangedSinceThePlan_isNotOverwritten()
    {
        const Site site(someSite);
        const auto plan = planMove(requestOf(site, MoveOperation::Move, {{"a/x.html", "b/x.html"}}));
        site.put("o.html", "<a href=a/x.html>new");
        Files before = site.contents();
        const MoveReport report = SiteMoves::open(site.root())->carryOut(*plan);
        QVERIFY(!report.isDone && !report.isStopped);
        QCOMPARE(firstProblem(report), site.at("o.html").native() + ": has changed since");
        QCOMPARE(site.contents(), before);
    }

    void moveToAnotherFileSystem_canBeUndone()
    {
        const Site site(someSite);
        std::string other = "/dev/shm/luma-test-XXXXXX";
        struct stat here = {};
        struct stat there = {};
        if (!::mkdtemp(other.data()) || ::stat(other.c_str(), &there) != 0 ||
            ::stat(site.root().c_str(), &here) != 0 || here.st_dev == there.st_dev) {
            fs::remove(other);
            QSKIP("needs another file system at /dev/shm");
        }
        fs::create_directory_symlink(other, site.at("far"));
        const MoveReport done = carryOut(requestOf(site, MoveOperation::Move, {{"a", "far/a"}}));
        QVERIFY2(done.isDone, firstProblem(done).c_str());
        QVERIFY(!fs::exists(site.at("a")) && fs::exists(fs::path(other) / "a/y.html"));
        QCOMPARE(site.bytesOf("o.html"), std::string("<a href=far/a/x.html><img src=p.png>"));
        QVERIFY(undo(site).isDone);
        QVERIFY(fs::is_empty(other));
        fs::remove(site.at("far"));
        fs::remove(other);
        QCOMPARE(site.contents(), someSite);
    }

    void journal_isPrivateAndLocked()
    {
        const Site site(someSite);
        auto first = SiteMoves::open(site.root());
        QVERIFY(first);
        const auto second = SiteMoves::open(site.root() / ".");
        QVERIFY(!second && second.error().code == std::errc::device_or_resource_busy);
        QVERIFY(first->carryOut(*planMove(requestOf(site, MoveOperation::Move, {{"a", "b"}}))).isDone);
        const fs::path state = fs::path(qEnvironmentVariable("XDG_STATE_HOME").toStdString()) / "luma/moves";
        int files = 0;
        for (const fs::directory_entry& entry : fs::recursive_directory_iterator(state)) {
            ++files;
            QVERIFY((entry.status().permissions() & (fs::perms::group_all | fs::perms::others_all)) ==
                    fs::perms::none);
        }
        QVERIFY(files > 0);
    }

    void damagedJournal_isPutAsideAndNamed()
    {
        const Site site(someSite);
        QVERIFY(carryOut(requestOf(site, MoveOperation::Move, {{"a", "b"}})).isDone);
        const fs::path state = fs::path(qEnvironmentVariable("XDG_STATE_HOME").toStdString()) / "luma/moves";
        for (const fs::directory_entry& folder : fs::directory_iterator(state)) {
            std::error_code error;
            fs::rename(folder.path() / "1.done", folder.path() / "1.running", error);
            if (!error)
                fs::resize_file(folder.path() / "1.running", 100);
        }
        const auto recovered = SiteMoves::recover(site.root());
        QCOMPARE(recovered.size(), std::size_t{1});
        QVERIFY(firstProblem(recovered.front())
                    .ends_with("1.running.damaged: the journal of an interrupted move can't be read"));
        QVERIFY(SiteMoves::recover(site.root()).empty());
    }
};

LUMA_TEST(tst_sitemoves)
#include "tst_sitemoves.moc"
