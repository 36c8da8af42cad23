// SPDX-License-Identifier: GPL-3.0-or-later
#include "html/pagewriter.h"
#include "tests/html/pages.h"
#include "tests/html/randomedit.h"
#include "tests/support/registry.h"

#include <QTest>

#include <map>

using namespace luma;
using namespace luma::html;

namespace {

using Documents = std::unique_ptr<Document>;

// Pages that browsers forgive, each in a way of its own.
std::vector<test::Page> uglyPages()
{
    return {
        {"no tags at all", "just text"},
        {"implied elements", "<title>t</title><p>one<p>two <b>three"},
        {"line ends", "<!DOCTYPE html>\r\n<html>\r\n<body>\r\n<p>a\r\nb</p>\r\n</body>\r\n</html>\r\n"},
        {"upper case", "<HTML><BODY BGCOLOR=#FFFFFF><P ALIGN=center>A<BR>B</P></BODY></HTML>"},
        {"behind the end", "<html><body><p>a</p></body>\n</html>\n<!-- x -->\nlate <b>bold</b>"},
        {"mis-nested", "<p><b>one <i>two</b> three</i> four</p><a href=x><div>a</div></a>"},
        {"foster parents", "<table>stray<tr><td>a</td></tr><b>bold</b></table><p>b</p>"},
        {"open lists", "<ul><li>a<li>b<ul><li>c</ul><li>d</ul><dl><dt>x<dd>y</dl>"},
        {"open tables", "<table border><tr><td>1<td>2<tr><th>3</table>after"},
        {"repeated attributes", "<p class=a id=b class=c x>t</p><img src=a.png alt/><a x=\"1\"y=\"2\">z</a>"},
        {"references",
         "<p>a &amp b &lt; c&nbsp;d &copy &#65; &notanentity; R&D</p><a href='?a=1&b=2&amp;c'>l</a>"},
        {"forms",
         "<form action=a>Name: <input> required</form>after<form><p>x</p>\n</form>\n<form>\n y </form>"},
        {"stray end tags", "<div>a</span>b</p>c</div></div></section><p>d"},
        {"conditional comments", "<!--[if IE]><p>x</p><![endif]--><![if !IE]><p>y</p><![endif]>"},
        {"noscript in the head",
         "<head><noscript><link rel=stylesheet href=a></noscript><meta name=b></head><p>c"},
        {"svg and math",
         "<svg viewBox='0 0 1 1'><path d='M0'/><title>t</title></svg><math><mi>x</mi></math><p>y</p>"},
        {"raw text",
         "<pre>\n\n a\n</pre><textarea>\nb &amp; c</textarea><script>if (a < b) '<p>'</script><p>d</p>"},
        {"templates", "<template><tr><td>a</td></tr></template><p>b</p>"},
        {"frames", "<frameset cols=*><frame src=a><noframes>x</noframes></frameset>"},
        {"doctypes", "<!-- c -->\n<!DOCTYPE HTML PUBLIC \"-//W3C//DTD HTML 3.2//EN\">\n<p>a</p>"},
        {"strange characters", "<p>a\x01 b\xC2\x85 c</p>\x7F<p title='\x02x'>d</p>"},
        {"second body", "<html a=1><body b=1><p>x</p><body c=2><html d=2><p>y</p>"},
        {"quirks of tables", "<table><td>a<table><td>b</table>c</table><select><option>a<option>b</select>"},
        {"blank", "  \n\n "},
    };
}

Documents parsedWithSource(const std::string& source)
{
    auto parsed = parseWithSource(source);
    return parsed ? *std::move(parsed) : nullptr;
}

} // namespace

class tst_pagewriter final : public QObject
{
    Q_OBJECT

private:
    std::map<std::string, std::map<WritingWay, int>> m_ways;
    int m_strange = 0;

    // Empty when all is right.
    std::string tryEdits(const test::Page& page, int count, test::RandomEdits& edits)
    {
        const Documents document = parsedWithSource(page.source);
        if (!document)
            return {};
        auto untouched = writePage(*document);
        if (!untouched || untouched->text != page.source || untouched->way != WritingWay::Unchanged)
            return page.name + ": not written as it was";
        for (int i = 0; i < count; ++i) {
            const std::optional<test::Edit> edit = edits.make(*document, i);
            if (!edit)
                continue;
            auto written = writePage(*document);
            if (!written)
                return page.name + ": not written after " + edit->name;
            if (!written->isSame)
                ++m_strange;
            else
                ++m_ways[edit->name][written->way];
            const std::string difference = written->isSame && written->way == WritingWay::Patched
                                               ? differenceOutside(*edit, *written, page.source)
                                               : std::string();
            if (!difference.empty())
                return page.name + ": " + difference + ": " + written->text.substr(0, 300);
            edit->undo();
            auto back = writePage(*document);
            if (!back || back->text != page.source)
                return page.name + ": not as it was after " + edit->name + " and its undo";
        }
        return {};
    }

private slots:
    void edits_changeWhatTheyEdit()
    {
        test::RandomEdits edits(11);
        std::vector<std::pair<test::Page, int>> pages;
        for (const test::Page& page : uglyPages())
            pages.emplace_back(page, 54);
        for (const test::Page& page : test::allPages(40, 100'000))
            pages.emplace_back(page, 9);
        std::string failures;
        for (const auto& [page, count] : pages) {
            const std::string failure = tryEdits(page, count, edits);
            if (!failure.empty())
                failures += failure + "\n";
        }
        QVERIFY2(failures.empty(), failures.c_str());
        int patched = 0;
        int all = 0;
        for (const auto& [name, ways] : m_ways) {
            std::string line = name + ":";
            for (const auto& [way, count] : ways) {
                line += " " + std::to_string(int(way)) + "=" + std::to_string(count);
                patched += way <= WritingWay::TagsWritten ? count : 0;
                all += count;
            }
            qInfo("%s", line.c_str());
        }
        qInfo("trees that no markup gives: %d", m_strange);
        QVERIFY2(patched * 100 >= all * 97, "too many pages were printed");
    }
};

LUMA_TEST(tst_pagewriter)

#include "tst_pagewriter.moc"
