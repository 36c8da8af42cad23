// SPDX-License-Identifier: GPL-3.0-or-later
#include "html/htmlscanner.h"
#include "html/pagecodec.h"
#include "html/pagelanguage.h"
#include "html/parse.h"
#include "html/treecomparison.h"
#include "tests/html/pages.h"
#include "tests/html/randomedit.h"
#include "tests/support/registry.h"

#include <QTest>

#include <array>
#include <random>
#include <string_view>

using namespace luma;
using namespace luma::html;

namespace {

/// Damages pages; the same seed gives the same pages.
class Mutations final
{
public:
    explicit Mutations(std::uint32_t seed) : m_random(seed) {}

    std::string mutated(std::string page)
    {
        for (std::size_t count = 1 + one(4); count > 0; --count)
            mutate(page);
        return page;
    }

private:
    std::size_t one(std::size_t most) { return m_random() % most; }

    void mutate(std::string& page)
    {
        static constexpr std::array<std::string_view, 33> pieces = {
            "<",          ">",        "</",       "\"",         "'",         "=",       "&",
            "<!--",       "-->",      "<p>",      "</p>",       "<b",        "</b>",    "<table>",
            "<tr>",       "</table>", "<svg>",    "</svg>",     "<![CDATA[", "]]>",     "<?php ",
            "?>",         "{{",       "}}",       "<template>", "\r\n",      "</body>", "</html>",
            "<textarea>", "<script>", "\xC3\xA9", "&amp",       "</form>"};
        const std::size_t at = one(page.size() + 1);
        const std::size_t length = std::min(one(40), page.size() - at);
        const std::string run = page.substr(at, length);
        switch (one(4)) {
        case 0:
            page.insert(at, pieces[one(pieces.size())]);
            break;
        case 1:
            page.erase(at, length);
            break;
        case 2:
            page.insert(one(page.size() + 1), run);
            break;
        default:
            page.erase(at, length);
            page.insert(one(page.size() + 1), run);
        }
    }

    std::mt19937 m_random;
};

/// Tokens come in order, touch neither each other nor the end, and the last one ends the page.
bool areTokensInOrder(std::string_view page)
{
    HtmlScanner scanner(page);
    HtmlToken token;
    std::size_t end = 0;
    for (bool more = true; more;) {
        more = scanner.next(token);
        if (token.begin < end || token.end < token.begin || token.end > page.size() ||
            (more && token.end == end))
            return false;
        end = token.end;
    }
    return end == page.size();
}

} // namespace

/// What holds for any page, however it is damaged.
class tst_mutatedpages final : public QObject
{
    Q_OBJECT

private:
    // Empty when all is right.
    static std::string tryPage(const std::string& page, test::RandomEdits& edits, int kind)
    {
        if (!areTokensInOrder(page))
            return "tokens are not in order";
        const MarkupLanguage language = pageLanguage("page.html", page).markup();
        PageCodec codec;
        const auto parsed = codec.read(page, language);
        if (!parsed)
            return {}; // too deep
        Document& document = **parsed;
        const auto untouched = codec.write(document, language);
        if (!untouched || untouched->bytes != page)
            return "not written as it was";
        const auto edit = edits.make(document, kind);
        if (!edit)
            return {};
        const auto written = codec.write(document, language);
        if (!written)
            return "not written after " + edit->name;
        if (written->parsed && smallestDifferent(document, *written->parsed))
            return "another page after " + edit->name;
        edit->undo();
        const auto back = codec.write(document, language);
        return back && back->bytes == page ? std::string()
                                           : "not as it was after " + edit->name + " and its undo";
    }

private slots:
    void damagedPages_keepTheirBytes()
    {
        Mutations mutations(5);
        test::RandomEdits edits(7);
        std::vector<test::Page> pages = test::writtenPages();
        for (const test::Page& page : test::allPages(40, 8'000))
            pages.push_back(page);
        const int count = std::max(2'000, qEnvironmentVariableIntValue("LUMA_MUTATED_PAGES"));
        std::string failures;
        for (int i = 0; i < count && failures.size() < 4'000; ++i) {
            const test::Page& original = pages[static_cast<std::size_t>(i) % pages.size()];
            const std::string page = mutations.mutated(original.source);
            if (const std::string failure = tryPage(page, edits, i); !failure.empty())
                failures += original.name + ": " + failure + ":\n" + page.substr(0, 600) + "\n";
        }
        QVERIFY2(failures.empty(), failures.c_str());
    }
};

LUMA_TEST(tst_mutatedpages)

#include "tst_mutatedpages.moc"
