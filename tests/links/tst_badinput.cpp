// SPDX-License-Identifier: GPL-3.0-or-later
#include "links/browserreports.h"
#include "links/linkplan.h"
#include "links/linkreports.h"
#include "links/linkupdatingmove.h"
#include "links/rewritepage.h"
#include "links/sitelinks.h"
#include "links/sitemoves.h"
#include "links/unlinkeditems.h"
#include "tests/support/obstacle.h"
#include "tests/support/registry.h"
#include "tests/support/rows.h"
#include "tests/support/site.h"

#include <QTest>

#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

using namespace luma;
using test::asOrdinaryUser;
using test::giveToOrdinaryUser;
using test::Site;

namespace {

std::string repeated(const char* text, qsizetype times)
{
    return QByteArray(text).repeated(times).toStdString();
}

MoveOutcome movePicture(const Site& site)
{
    return LinkUpdatingMove(site.root(), {}).run(MoveOperation::Move, {site.at("x.png")}, site.at("b"));
}

// In a child of its own: the user's state folder is another one from now on.
Result<SiteMoves> movesOf(const Site& site, const Site& state)
{
    ::setenv("XDG_STATE_HOME", state.root().c_str(), 1);
    return SiteMoves::open(site.root());
}

} // namespace

class tst_badinput final : public QObject
{
    Q_OBJECT

private slots:
    void hostilePages_areReadAndRewritten_data()
    {
        QTest::addColumn<std::string>("page");
        QTest::addColumn<bool>("isPage");
        QTest::newRow("deep") << repeated("<div>", 100'000) + repeated("<svg><desc>", 50'000) +
                                     repeated("</x>", 100'000)
                              << true;
        QTest::newRow("50 MB") << repeated("<p title='x'>text &amp; more</p>\n", 1'700'000) << true;
        QTest::newRow("attribute of 1 MB")
            << "<a href='" + repeated("x/", 500'000) + "'><a title='" + repeated("&amp;", 200'000) + "'>"
            << true;
        QTest::newRow("many attributes") << "<a " + repeated("href=x ", 200'000) + ">" << true;
        QTest::newRow("unended") << repeated("<a href=\"", 50'000) + repeated("<!--", 50'000) << true;
        QTest::newRow("brackets") << repeated("<", 1'000'000) + repeated("</", 100'000) << true;
        QTest::newRow("climbing") << "<a href='" + repeated("../", 300'000) + "x'>" << true;
        QTest::newRow("odd values")
            << std::string("<a href='%'><a href='\\'><a href='a\nb'><a href='a\0b'><a href=`\"'>", 54)
            << true;
        QTest::newRow("binary") << std::string("\x89PNG\r\n\x1A\n\0\0<a href=x.png>", 24) << false;
        QTest::newRow("truncated UTF-8") << std::string("<a href=x.png>\xE2\x82") << false;
    }
    void hostilePages_areReadAndRewritten()
    {
        QFETCH(std::string, page);
        QFETCH(bool, isPage);
        const std::string tail = "<!-- \"' --><a href=x.png>";
        const Site site({{"a/page.html", isPage ? page : page + tail}, {"x.png", ""}, {"b/z", ""}});
        const Site inFront({{"page.html", "<a href=x.png>" + page}, {"x.png", ""}, {"b/z", ""}});
        QVERIFY(findMissingLinks(site.root(), FindingsKept::All, [](const PageFindings&) {}));
        QVERIFY(findUnlinkedItems(site.root(), "", {}));
        movePicture(inFront);
        QVERIFY(inFront.bytesOf("page.html") == (isPage ? "<a href=b/x.png>" : "<a href=x.png>") + page);
        const std::string before = site.bytesOf("a/page.html");
        LinkUpdatingMove(site.root(), {}).run(MoveOperation::Move, {site.at("a/page.html")}, site.at("b"));
        if (!isPage)
            QVERIFY(site.bytesOf("b/page.html") == before);
    }

    void namesOfAllKinds_areKept()
    {
        for (const std::string name :
             {"a\nb.png", "a\"b'.png", "100%.png", "a&amp;b.png", "\xFF.png", "a b#c?.png", "\\.png"}) {
            const bool text = name != "\xFF.png";
            std::string value;
            for (const char c : name)
                value += c == '&'   ? std::string("&amp;")
                         : c == '"' ? std::string("&quot;")
                                    : std::string(1, c);
            const Site site(
                {{name, ""}, {"b/z", ""}, {"o.html", text ? "<img src=\"" + value + "\">" : "<img src=x>"}});
            const MoveOutcome outcome =
                LinkUpdatingMove(site.root(), {}).run(MoveOperation::Move, {site.at(name)}, site.at("b"));
            QVERIFY(outcome.problems.empty());
            QVERIFY(site.contents().count("b/" + name));
            QCOMPARE(QByteArray::fromStdString(site.bytesOf("o.html")),
                     QByteArray::fromStdString(text ? "<img src=\"b/" + value + "\">" : "<img src=x>"));
        }
    }

    void pageChangedMeanwhile_isReadAgainOrStaysGone()
    {
        const Site site({{"changed.html", "old"}, {"gone.html", "old"}});
        int reads = 0;
        const auto changed = rewritePage(site.at("changed.html"), [&](std::string source) {
            if (++reads == 1)
                site.put("changed.html", "another program's");
            return source + "!";
        });
        QVERIFY(changed && *changed);
        QCOMPARE(site.bytesOf("changed.html"), std::string("another program's!"));
        const auto gone = rewritePage(site.at("gone.html"), [&](std::string source) {
            std::filesystem::remove(site.at("gone.html"));
            return source + "!";
        });
        QVERIFY(gone && !*gone);
        QCOMPARE(site.listing(), std::string("changed.html\n"));
    }

    // A limit on file sizes stands in for a full disk.
    void fullDisk_leavesThePageAndIsNamed()
    {
        const std::string page = "<img src=x.png>" + std::string(200'000, 'y');
        const Site site({{"x.png", ""}, {"b/z", ""}, {"big.html", page}, {"small.html", "<img src=x.png>"}});
        const auto oldHandler = std::signal(SIGXFSZ, SIG_IGN);
        rlimit old = {};
        getrlimit(RLIMIT_FSIZE, &old);
        const rlimit small = {100'000, old.rlim_max};
        setrlimit(RLIMIT_FSIZE, &small);
        const MoveOutcome outcome = movePicture(site);
        setrlimit(RLIMIT_FSIZE, &old);
        (void)std::signal(SIGXFSZ, oldHandler);
        QCOMPARE(outcome.problems.size(), std::size_t{1});
        QVERIFY(outcome.problems.front().text.find("big.html") != std::string::npos);
        QVERIFY(outcome.problems.front().kind == MoveProblem::Kind::NotRewritten);
        QVERIFY(site.bytesOf("big.html") == page);
        QCOMPARE(site.bytesOf("small.html"), std::string("<img src=b/x.png>"));
        QCOMPARE(site.contents().size(), std::size_t{4});
    }

    void readOnlyPagesAndFolders_stayAndAreNamed()
    {
        const Site site({{"x.png", ""},
                         {"b/z", ""},
                         {"o.html", "<img src=x.png>"},
                         {"r.html", "<img src=x.png>"},
                         {"f/o.html", "<img src=../x.png>"}});
        QVERIFY(giveToOrdinaryUser(site));
        std::filesystem::permissions(site.at("r.html"), std::filesystem::perms(0444));
        std::filesystem::permissions(site.at("f"), std::filesystem::perms(0555));
        const int problems = asOrdinaryUser([&] {
            const MoveOutcome outcome = movePicture(site);
            bool named = outcome.problems.size() == 2;
            for (const MoveProblem& problem : outcome.problems)
                named = named && problem.text.find(problem.path.filename().native()) != std::string::npos;
            return named ? 2 : 50;
        });
        std::filesystem::permissions(site.at("f"), std::filesystem::perms(0755));
        QCOMPARE(problems, 2);
        QCOMPARE(site.bytesOf("o.html"), std::string("<img src=b/x.png>"));
        QCOMPARE(site.bytesOf("r.html"), std::string("<img src=x.png>"));
        QCOMPARE(site.bytesOf("f/o.html"), std::string("<img src=../x.png>"));
        QCOMPARE(site.contents().size(), std::size_t{5});
    }

    void planNamesWhatStays_data()
    {
        const test::Rows<test::Obstacle::Kind, bool, std::string> row("kind", "isCopied", "names");
        using Kind = test::Obstacle::Kind;
        row("free", Kind::None, false, "");
        row("page", Kind::ReadOnlyPage, false, "f/o.html ");
        row("folder", Kind::ReadOnlyFolder, false, "f/o.html f/l ");
        row("copied page", Kind::ReadOnlyPage, true, "");
    }
    // What is named would break; without it, everything is done and comes back.
    void planNamesWhatStays()
    {
        QFETCH(test::Obstacle::Kind, kind);
        QFETCH(bool, isCopied);
        QFETCH(std::string, names);
        const Site site({{"x.png", ""}, {"b/z", ""}, {"f/o.html", "<img src=../x.png>"}});
        std::filesystem::create_symlink("../x.png", site.at("f/l"));
        const auto before = site.contents();
        const Site state;
        QVERIFY(giveToOrdinaryUser(state));
        const test::Obstacle obstacle(site, "f/o.html", kind);
        const int done = obstacle.run([&] {
            MoveRequest request{site.root(), {}, MoveOperation::Move, {}, {}};
            request.operation = isCopied ? MoveOperation::Copy : MoveOperation::Move;
            const char* const item = isCopied ? "f/o.html" : "x.png";
            request.items = {{site.at(item), site.at(isCopied ? "b/o.html" : "b/x.png")}};
            const auto plan = planMove(request);
            std::string found;
            for (const auto& page : plan->stayingPages())
                found += page.lexically_relative(site.root()).native() + ' ';
            auto moves = movesOf(site, state);
            return found != names || !moves         ? 1
                   : !names.empty()                 ? 0
                   : !moves->carryOut(*plan).isDone ? 2
                   : !moves->undo().isDone          ? 3
                                                    : 0;
        });
        QCOMPARE(done, 0);
        QCOMPARE(site.contents(), before);
    }

    void failureInTheMiddle_takesEverythingBack_data()
    {
        const test::Rows<test::Obstacle::Kind> row("kind");
        row("page", test::Obstacle::Kind::ReadOnlyPage);
        row("folder", test::Obstacle::Kind::ReadOnlyFolder);
        row("mount", test::Obstacle::Kind::ReadOnlyMount);
    }
    // The obstacle comes after the plan.
    void failureInTheMiddle_takesEverythingBack()
    {
        QFETCH(test::Obstacle::Kind, kind);
        const Site site({{"x.png", ""},
                         {"b/z", ""},
                         {"a.html", "<img src=x.png>"},
                         {"f/o.html", "<img src=../x.png>"},
                         {"z.html", "<img src=x.png>"}});
        const auto before = site.contents();
        site.setAge("a.html", 5000);
        const auto age = std::filesystem::last_write_time(site.at("a.html"));
        const auto plan =
            planMove({site.root(), {}, MoveOperation::Move, {{site.at("x.png"), site.at("b/x.png")}}, {}});
        QVERIFY(plan && plan->stayingPages().empty());
        const Site state;
        QVERIFY(giveToOrdinaryUser(state));
        const test::Obstacle obstacle(site, "f/o.html", kind);
        if (!obstacle.isThere())
            QSKIP("this machine has no mounts for tests");
        QCOMPARE(obstacle.run([&] {
            auto moves = movesOf(site, state);
            if (!moves)
                return 2;
            const MoveReport report = moves->carryOut(*plan);
            return report.isDone || report.problems.empty() ? 1 : 0;
        }),
                 0);
        QCOMPARE(site.contents(), before);
        QVERIFY(std::filesystem::last_write_time(site.at("a.html")) == age);
    }

    void unreadablePagesAndFolders_areNamed()
    {
        const Site site({{"x.png", ""},
                         {"b/z", ""},
                         {"o.html", "<img src=x.png><a href=f/o.html><a href=f/><a href=gone.html>"},
                         {"r.html", "<img src=x.png>"},
                         {"f/o.html", "<img src=../x.png>"}});
        QVERIFY(giveToOrdinaryUser(site));
        std::filesystem::permissions(site.at("r.html"), std::filesystem::perms(0));
        std::filesystem::permissions(site.at("f"), std::filesystem::perms(0));
        const int named = asOrdinaryUser([&] {
            const auto plan = planMove(
                {site.root(), {}, MoveOperation::Move, {{site.at("x.png"), site.at("b/x.png")}}, {}});
            std::string found;
            if (plan) {
                for (const MoveProblem& problem : plan->problems)
                    found += problem.path.filename().native() + ' ';
            }
            const auto sink = [&found](const WebPage& page) {
                found += page.path + (page.unreadable.empty() ? "" : "!") +
                         std::to_string(page.links.size()) + ' ';
            };
            (void)checkWebLinks(site.root(), {}, FindingsKept::Missing, sink);
            (void)SiteLinks(site.root(), SiteLinks::Keeping::InMemory).findMissing({}, sink);
            return found == "r.html f o.html1 r.html!0 f!0 o.html1 r.html!0 f!0 " ? 1 : 0;
        });
        std::filesystem::permissions(site.at("f"), std::filesystem::perms(0755));
        QCOMPARE(named, 1);
    }

    void specialFiles_areNotOpened()
    {
        const Site site({{"x.png", ""}, {"b/z", ""}});
        QCOMPARE(::mkfifo(site.at("pipe.html").c_str(), 0600), 0);
        std::filesystem::create_symlink("loop.html", site.at("loop.html"));
        QVERIFY(findMissingLinks(site.root(), FindingsKept::All, [](const PageFindings&) {}));
        QVERIFY(findUnlinkedItems(site.root(), "", {}));
        QVERIFY(movePicture(site).problems.empty());
    }
};

LUMA_TEST(tst_badinput)
#include "tst_badinput.moc"
