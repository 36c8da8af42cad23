// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/files.h"
#include "links/sitemoves.h"
#include "links/sitesearch.h"
#include "tests/links/hostilesite.h"
#include "tests/support/registry.h"
#include "tests/support/rows.h"
#include "tests/support/site.h"

#include <QRandomGenerator>
#include <QTest>

#include <algorithm>

using namespace luma;
using test::Files;
using test::Site;
namespace fs = std::filesystem;

namespace {

// Options: e for an expression, c for letter case, w for whole words, s for the source.
SiteQuery queryOf(const QString& text, const QString& options)
{
    SiteQuery query;
    query.text = {text, options.contains('e'), options.contains('c'), options.contains('w')};
    query.searched = options.contains('s') ? SearchedText::Source : SearchedText::Shown;
    return query;
}

std::vector<SearchedFile> found(const Site& site, const SiteQuery& query)
{
    std::vector<SearchedFile> files;
    (void)searchSite(site.root(), query, [&files](SearchedFile&& file) { files.push_back(std::move(file)); });
    return files;
}

std::vector<WantedPlaces> all(const std::vector<SearchedFile>& files)
{
    std::vector<WantedPlaces> places;
    for (const SearchedFile& file : files) {
        if (file.problem.empty())
            places.push_back({file.path, file.hash, std::vector<bool>(file.found.size(), true)});
    }
    return places;
}

LinkPlan planned(const Site& site, const SiteQuery& query, const QString& replacement)
{
    return *planReplacement(site.root(), query, replacement, all(found(site, query)));
}

MoveReport carryOut(const Site& site, const LinkPlan& plan)
{
    return SiteMoves::open(site.root())->carryOut(plan);
}

void copyPages(const fs::path& folder, const Site& site, int step)
{
    int count = 0;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(folder)) {
        const fs::path target = site.root() / entry.path().lexically_relative(folder);
        if (entry.is_regular_file() && count++ % step == 0) {
            fs::create_directories(target.parent_path());
            fs::copy_file(entry.path(), target);
        }
    }
}

// What stands in the file is `before` with the edits made, and at each of them what is said.
bool isOutsideKept(const std::string& before, const std::string& after, const std::vector<LinkEdit>& edits)
{
    std::size_t from = 0;
    std::size_t to = 0;
    for (const LinkEdit& edit : edits) {
        const std::string_view kept = std::string_view(before).substr(from, edit.begin - from);
        if (after.compare(to, kept.size(), kept) != 0 ||
            before.compare(edit.begin, edit.before.size(), edit.before) != 0)
            return false;
        to += kept.size() + edit.after.size();
        from = edit.begin + edit.before.size();
    }
    return std::string_view(before).substr(from) == std::string_view(after).substr(to);
}

} // namespace

/// Text that is found in the files of a site, and replaced there as a plan.
class tst_sitesearch final : public QObject
{
    Q_OBJECT

private slots:
    void text_isReplaced_data()
    {
        const test::Rows<std::string, std::string, QString, QString, QString, std::string> row(
            "name", "bytes", "options", "text", "replacement", "result");
        row("text only", "p.html", "<p title=one>One <!--one--><script>one</script>", "", "one", "two",
            "<p title=one>two <!--one--><script>one</script>");
        row("references", "p.html", "<p>caf&eacute; &amp; caf&#233; caf\u00e9", "", "caf\u00e9", "tea",
            "<p>tea &amp; tea tea");
        row("markup is escaped", "p.html", "<p>x y", "", "x", "a<b & c", "<p>a&lt;b &amp; c y");
        row("across elements", "p.html", "<P >a<B\n>b</B>c d", "", "abc", "x", "<P >x<B\n></B> d");
        row("white space stays", "p.html", "<p>a \r\n b  c\r\n  d", "", "b c", "x", "<p>a \r\n x\r\n  d");
        row("behind pre", "p.html", "<pre>\r\na\r\nb</pre>", "e", "^b", "x", "<pre>\r\na\r\nx</pre>");
        row("groups", "p.html", "<p>12-34 5-6", "e", "(\\d+)-(\\d+)", "$2/$1", "<p>34/12 6/5");
        row("server code stays", "p.php", "<p>a <?php a ?> a", "", "a", "b", "<p>b <?php a ?> b");
        row("latin 1", "p.html", "<meta charset=latin1>\xE4 x \xF6", "", "x", "\u20ac\u00fc\u03a9",
            "<meta charset=latin1>\xE4 \x80\xFC&#937; \xF6");
        row("source of it", "p.html", "<meta charset=latin1><a title=\"\xE4\">", "s", "\u00e4", "\u03a9",
            "<meta charset=latin1><a title=\"&#937;\">");
        row("UTF-16", "p.html", std::string("\xFF\xFE<\0p\0>\0a\0x\0", 12), "", "x", "\u03a9",
            std::string("\xFF\xFE<\0p\0>\0a\0\xA9\x03", 12));
        row("byte-order mark", "p.html", "\xEF\xBB\xBF<p>x", "", "x", "y", "\xEF\xBB\xBF<p>y");
        row("damaged bytes", "p.html", "<meta charset=utf-8><p>\xFF x \xC3", "", "x", "y",
            "<meta charset=utf-8><p>\xFF y \xC3");
        row("xml knows five names", "p.xhtml", "<html><body><p>x</p></body></html>", "", "x", "\u00a0",
            "<html><body><p>&#160;</p></body></html>");
        row("misplaced text", "p.html", "<table>x<tr><td>x</table>x", "", "x", "y",
            "<table>y<tr><td>y</table>y");
        row("source", "p.html", "<p class=a>a</p>", "sc", "a", "b", "<p clbss=b>b</p>");
        row("lines of the source", "p.html", "a\nb\n", "es", "^", "x", "a\nb\n");
        row("sheet", "s.css", "a{color:red}", "s", "red", "blue", "a{color:blue}");
        row("sheet's encoding", "s.css", "@charset \"latin1\";a::before{content:\"x\"}", "s", "x", "\u03a9",
            "@charset \"latin1\";a::before{content:\"\\3a9 \"}");
        row("no shown text", "s.css", "a{color:red}", "", "red", "blue", "a{color:red}");
        row("script", "s.mjs", "let a = 'a'", "sw", "a", "b", "let b = 'b'");
        row("no text file", "s.txt", "a", "s", "a", "b", "a");
    }
    void text_isReplaced()
    {
        QFETCH(std::string, name);
        QFETCH(std::string, bytes);
        QFETCH(QString, options);
        QFETCH(QString, text);
        QFETCH(QString, replacement);
        const Site site(Files{{name, bytes}});
        const LinkPlan plan = planned(site, queryOf(text, options), replacement);
        QVERIFY2(plan.problems.empty(), plan.problems.empty() ? "" : plan.problems.front().text.c_str());
        (void)carryOut(site, plan);
        QFETCH(std::string, result);
        QCOMPARE(site.bytesOf(name), result);
        if (result == bytes)
            return;
        auto moves = SiteMoves::open(site.root());
        QCOMPARE(*moves->undoTitle(),
                 "Replace \"" + text.toStdString() + "\" by \"" + replacement.toStdString() + "\"");
        QVERIFY(moves->undo().isDone);
        QCOMPARE(site.bytesOf(name), bytes);
        QVERIFY(!moves->undoTitle());
    }

    void places_areKnown()
    {
        const Site site({{"a/p.html", "<p>\n \u00e4 <b>on</b>e two"}, {"q.html", "one"}, {"s.css", "one"}});
        const auto files = found(site, queryOf("one", {}));
        QCOMPARE(files.size(), 2U);
        QCOMPARE(files[0].path, std::string("a/p.html"));
        const FoundText& place = files[0].found.front();
        QCOMPARE(place.line, 2U);
        QCOMPARE(place.column, 7U);
        QCOMPARE(place.before + u'|' + place.captured.front() + u'|' + place.after,
                 QString::fromUtf8("\u00e4 |one| two"));
        SiteQuery query = queryOf("one", "s");
        query.inPages = false;
        QCOMPARE(found(site, query).size(), 1U);
        query.inPages = true;
        query.folder = "a";
        QCOMPARE(found(site, query).size(), 0U);
    }

    void wantedPlaces_areReplacedAlone()
    {
        const Site site({{"p.html", "x x x"}, {"q.html", "x"}, {"r.html", "x"}});
        auto places = all(found(site, queryOf("x", {})));
        places[0].isWanted = {true, false, true};
        site.put("q.html", "x y");
        const auto plan = planReplacement(site.root(), queryOf("x", {}), "z", places);
        QCOMPARE(plan->problems.size(), 1U);
        QCOMPARE(plan->text->places, 3U);
        QVERIFY(carryOut(site, *plan).isDone);
        QCOMPARE(site.contents(), (Files{{"p.html", "z x z"}, {"q.html", "x y"}, {"r.html", "z"}}));
        // What has changed since stays, and is named.
        site.put("r.html", "other");
        const MoveReport report = SiteMoves::open(site.root())->undo();
        QCOMPARE(report.problems.size(), 1U);
        QCOMPARE(site.contents(), (Files{{"p.html", "x x x"}, {"q.html", "x y"}, {"r.html", "other"}}));
    }

    void openPages_getTheirTextReplaced()
    {
        const Site site({{"p.html", "x"}, {"q.html", "x"}});
        const LinkPlan plan = planned(site, queryOf("x", {}), "&");
        const MoveReport report = carryOut(site, plan);
        QVERIFY(report.links && report.links->updated);
        QCOMPARE(*report.links->updated("<p>\u00e4 x</p>", site.at("p.html"), site.at("p.html")),
                 std::string("<p>\u00e4 &amp;</p>"));
        QCOMPARE(*report.links->updated("x", site.at("o.html"), site.at("o.html")), std::string("x"));
    }

    // The text has unsaved edits: ticks are 1 for wanted, and the result is empty where nobody can tell the places apart.
    void openPages_getTickedPlacesReplaced_data()
    {
        const test::Rows<std::string, QByteArray, std::string, std::string> row("saved", "ticks", "unsaved",
                                                                                "result");
        const std::string saved = "<p>one x<p>two x<p>three x";
        row("edit elsewhere", saved, "101", "<p>new<p>one x<p>two x<p>three x",
            "<p>new<p>one y<p>two x<p>three y");
        row("edit beside each", saved, "010", "<p>1 x<p>2 x<p>3 x", "<p>1 x<p>2 y<p>3 x");
        row("edit beside one", saved, "010", "<p>one x<p>2 x<p>three x", "<p>one x<p>2 y<p>three x");
        row("new ones stay", saved, "110", "<p>x new<p>one x<p>two x<p>three x",
            "<p>x new<p>one y<p>two y<p>three x");
        row("a wanted one is gone", saved, "110", "<p>one x<p>three x", "<p>one y<p>three x");
        row("another is gone", saved, "110", "<p>one x<p>two x", "<p>one y<p>two y");
        row("all gone", saved, "110", "<p>none", "<p>none");
        row("all wanted ones are gone", saved, "111", "<p>none", "<p>none");
        row("none known any more", saved, "100", "<p>1 x<p>2 x", "");
        row("moved, as if deleted and new", saved, "100", "<p>two x<p>three x<p>one x",
            "<p>two x<p>three x<p>one x");
        row("many alike", "<p>x<p>x<p>x<p>x", "1000", "<p>x<p>x<p>x<p>x<p>", "<p>y<p>x<p>x<p>x<p>");
    }
    void openPages_getTickedPlacesReplaced()
    {
        QFETCH(std::string, saved);
        const Site site({{"p.html", saved}});
        auto places = all(found(site, queryOf("x", "c")));
        QFETCH(QByteArray, ticks);
        for (qsizetype i = 0; i < ticks.size(); ++i)
            places[0].isWanted[static_cast<std::size_t>(i)] = ticks[i] == '1';
        const auto plan = planReplacement(site.root(), queryOf("x", "c"), "y", places);
        const MoveReport report = carryOut(site, *plan);
        QCOMPARE(report.links->action, std::string("Replace"));
        QFETCH(std::string, unsaved);
        const auto updated = report.links->updated(unsaved, site.at("p.html"), site.at("p.html"));
        QTEST(updated ? *updated : std::string(), "result");
    }

    // A text is looked for in the tags' company first, an expression is not.
    void text_isFoundWhereTheSameExpressionIs()
    {
        Site site;
        test::HostileSite(3).fill(site);
        site.put("a.html",
                 "<p>a<b>n</b>&#100; <i>the</i>\u00a0o<!-- -->ther <?php if (a > '<!--') ?>and the other");
        site.put("b.svg", "<svg><text>and <![CDATA[the oth]]>er</text></svg>");
        if (fs::exists("/usr/share/doc/postgresql-doc-15/html"))
            copyPages("/usr/share/doc/postgresql-doc-15/html", site, 60);
        for (const char* const sought : {"and the other", "AND THE", "e t", "vacuum", "<", "ing a"}) {
            const QString text = QString::fromUtf8(sought);
            std::size_t counts[2] = {};
            for (const bool isExpression : {false, true}) {
                SiteQuery query = queryOf(text, {});
                if (isExpression)
                    query.text = {QRegularExpression::escape(text).replace("\\ ", "[ \u00a0]"), true};
                for (const SearchedFile& file : found(site, query))
                    counts[isExpression] += file.found.size();
            }
            QCOMPARE(counts[0], counts[1]);
        }
    }

    void expressionsThatTryTooMuch_areGivenUp()
    {
        const Site site({{"p.html", "<p>" + std::string(5000, 'a')}, {"q.html", "<p>aab"}});
        const auto files = found(site, queryOf("(a|aa)+(?=b)(?<!c)", "e"));
        QCOMPARE(files.size(), 2U);
        QVERIFY(files[0].problem.starts_with("The expression takes too long"));
        QCOMPARE(files[1].found.size(), 1U);
        const auto broken = searchSite(site.root(), queryOf("a(b", "ew"), {});
        QVERIFY(!broken && broken.error().text.find("at character 4") != std::string::npos);
    }

    void randomReplacements_changeNothingElse_data()
    {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<int>("step");
        QTest::newRow("hostile") << "" << 1;
        QTest::newRow("postgresql-doc-15") << "/usr/share/doc/postgresql-doc-15/html" << 20;
        QTest::newRow("python3-doc") << "/usr/share/doc/python3.11/html" << 15;
        for (const QString& folder :
             qEnvironmentVariable("LUMA_SITES").split(QLatin1Char(':'), Qt::SkipEmptyParts))
            QTest::newRow(qPrintable(folder)) << folder << 1;
    }
    void randomReplacements_changeNothingElse()
    {
        QFETCH(QString, kind);
        QFETCH(int, step);
        const Site site;
        if (kind.isEmpty())
            test::HostileSite(7).fill(site);
        else if (fs::exists(kind.toStdString()))
            copyPages(kind.toStdString(), site, step);
        else
            QSKIP("the package is not installed");
        const Files before = site.contents();
        const std::vector<QString> texts = {
            "e", "the ", "\\b(\\w)(\\w+)\\b", "[a-z]+\\s+[a-z]+", ".", "&", "<", "[^a-z]{3}", "\u00e9"};
        const std::vector<QString> anews = {"",        "X",        "<b>&\u20ac\u0416",
                                            "$2$1 $0", " \u00a0 ", "longer than it was"};
        QRandomGenerator random(3);
        std::size_t changed = 0;
        for (int i = 0; i < 12; ++i) {
            const QString& text = texts[random.bounded(quint32(texts.size()))];
            const QString options = QStringLiteral("ec").first(text.size() > 1 ? 2 : 0) +
                                    (random.bounded(3) == 0 ? QStringLiteral("s") : QString());
            const SiteQuery query = queryOf(text, options);
            auto places = all(found(site, query));
            for (WantedPlaces& file : places) {
                for (std::size_t at = 0; at < file.isWanted.size(); ++at)
                    file.isWanted[at] = random.bounded(4) == 0;
            }
            const Files files = site.contents();
            const auto plan =
                planReplacement(site.root(), query, anews[random.bounded(quint32(anews.size()))], places);
            QVERIFY(plan);
            QVERIFY(carryOut(site, *plan).problems.empty());
            Files now = site.contents();
            for (const PageRewrite& page : plan->pages) {
                const std::string path = page.page.lexically_relative(site.root()).native();
                QVERIFY2(isOutsideKept(files.at(path), now[path], page.edits), path.c_str());
                changed += page.edits.size();
                now[path] = files.at(path);
            }
            QVERIFY(now == files);
        }
        qInfo("%zu places changed", changed);
        QVERIFY(changed > 10);
        for (auto moves = SiteMoves::open(site.root()); moves->undoTitle();)
            QVERIFY(moves->undo().problems.empty());
        QVERIFY(site.contents() == before);
    }
};

LUMA_TEST(tst_sitesearch)
#include "tst_sitesearch.moc"
