// SPDX-License-Identifier: GPL-3.0-or-later
#include "links/linkrules.h"
#include "links/namesearch.h"
#include "links/unlinkeditems.h"
#include "tests/links/literalloops.h"
#include "tests/support/registry.h"
#include "tests/support/site.h"

#include <QTest>

#include <atomic>
#include <random>
#include <set>

using namespace luma;
using test::Site;

namespace {

QByteArray lines(const std::vector<std::string>& rows)
{
    QByteArray text;
    for (const std::string& row : rows)
        text += QByteArray::fromStdString(row) + '\n';
    return text;
}

QByteArray unlinkedIn(const std::filesystem::path& root, const char* excluded = "")
{
    std::vector<std::string> rows;
    UnlinkedItemsCallbacks callbacks;
    callbacks.row = [&rows](const std::string& subpath) { rows.push_back(subpath); };
    return findUnlinkedItems(root, excluded, callbacks) ? lines(rows) : "error";
}

// A small site with names and links that are easy to get wrong.
class RandomSite final
{
public:
    explicit RandomSite(unsigned seed) : m_random(seed)
    {
        for (int i = 0; i < 14; ++i)
            m_paths.push_back(path());
        for (const std::string& path : m_paths) {
            try {
                m_site.put(path, content(path));
            } catch (const std::filesystem::filesystem_error&) {
                // Below a file; a folder's name is left alone, too.
            }
        }
    }

    [[nodiscard]] const Site& site() const { return m_site; }

private:
    std::size_t upTo(std::size_t limit)
    {
        return std::uniform_int_distribution<std::size_t>(0, limit - 1)(m_random);
    }
    template <class List>
    auto pick(const List& list)
    {
        return list[upTo(std::size(list))];
    }

    std::string path()
    {
        static constexpr const char* folders[] = {"a",       "ab",  "A",   "sub",
                                                  "index.d", "a b", "x+y", "index.html.d"};
        static constexpr const char* names[] = {
            "a",   "ab", "abc",      "index",    "Index", "a.b", "a b", " a",      "a+b", "a(b", "a|b",
            "[a]", "a*", "\xC3\x84", "\xC3\xA4", "x?y",   "x#y", "axb", "index.x", "..a", "a$",  "html"};
        static constexpr const char* extensions[] = {".html", ".html", ".css", ".js",    ".txt",
                                                     ".png",  "",      ".xml", ".html5", ".xhtml"};
        std::string path;
        for (std::size_t depth = upTo(4); depth > 0; --depth)
            path += std::string(pick(folders)) + "/";
        return path + pick(names) + pick(extensions);
    }

    // A path to some file, not always a right one.
    std::string link(const std::string& from)
    {
        const std::filesystem::path target = pick(m_paths);
        std::string text = target.lexically_relative(std::filesystem::path(from).parent_path()).native();
        static constexpr const char* endings[] = {"", "", "", "#x", "?y", "x", "/"};
        if (upTo(4) == 0 && text.size() > 1)
            text.resize(text.size() - 1 - upTo(text.size() - 1));
        if (upTo(4) == 0)
            std::transform(text.begin(), text.end(), text.begin(),
                           [](char c) { return static_cast<char>(std::toupper(c)); });
        if (upTo(5) == 0)
            std::replace(text.begin(), text.end(), '.', upTo(2) == 0 ? 'x' : '/');
        return text + pick(endings);
    }

    std::string content(const std::string& path)
    {
        std::string text;
        const std::string extension = std::filesystem::path(path).extension();
        const bool page = extension == ".html" || extension == ".xml" || extension == ".xhtml";
        for (std::size_t count = upTo(4); count > 0; --count) {
            if (page && upTo(3) > 0)
                text += "<a " + std::string(pick(linkAttributes)) + "=\"" + link(path) + "\">";
            else if (page)
                text += "<style>a{b: URL( " + link(path) + std::string(upTo(3), ' ') + ")}</style>";
            else if (extension == ".css")
                text += "url(" + std::string(upTo(2), ' ') +
                        std::filesystem::path(link(path)).filename().native() + ")\n";
            else
                text += link(path) + "\n";
        }
        return text;
    }

    std::mt19937 m_random;
    std::vector<std::string> m_paths;
    Site m_site;
};

} // namespace

class tst_unlinkeditems final : public QObject
{
    Q_OBJECT

private slots:
    void index_answersAsTheLiteralLoops()
    {
        int compared = 0;
        int unlinked = 0;
        bool chosen = false;
        const int count = qEnvironmentVariableIntValue("LUMA_RANDOM_SITES", &chosen);
        for (unsigned seed = 0; seed < (chosen ? static_cast<unsigned>(count) : 150U); ++seed) {
            const RandomSite random(seed);
            const auto expected = test::unlinkedByLiteralLoops(random.site().root());
            const auto found = unlinkedIn(random.site().root());
            compared += static_cast<int>(random.site().contents().size());
            unlinked += static_cast<int>(expected.size());
            if (found == lines(expected))
                continue;
            for (const auto& [subpath, bytes] : random.site().contents())
                qInfo("%s: %s", subpath.c_str(), bytes.c_str());
            qInfo("seed %u", seed);
            QCOMPARE(found, lines(expected));
        }
        qInfo("%d files compared, %d of them unlinked", compared, unlinked);
        QVERIFY(unlinked > 100 && unlinked < compared - 100);
    }

    // The example that the contract of LinkIndex explains.
    void index_findsTheExample()
    {
        const Site site(
            {{"index.html", "<a href='Docs/#top'><style>p { background: url( img/a-png ) }</style>"},
             {"docs/index.html", "<img src='../img/B.PNG?v=2'>"},
             {"docs/style.css", "h1 { background: url(c.png) }"},
             {"img/a.png", ""},
             {"img/b.png", ""},
             {"img/c.png", ""},
             {"img/d.png", ""}});
        QCOMPARE(unlinkedIn(site.root()), QByteArray("docs/style.css\nimg/d.png\n"));
    }

    // Links in excluded folders count; so does a page's link to itself. A name that is no valid pattern is taken
    // literally.
    void excludedFolders_areNotReported()
    {
        const Site site({{"index.html", "<a href=sub>"},
                         {"sub/index.html", "<link href=../style.css><a href=../index.html>"},
                         {"style.css", "a{b:url(a.png)}"},
                         {"Images/a.png", ""},
                         {"Images/b.png", ""},
                         {"Images/self.html", "<a href=self.html>"},
                         {"docs/images/c.png", ""},
                         {"lonely.html", ""},
                         {".DS_Store", ""}});
        const QByteArray all = "Images/b.png\ndocs/images/c.png\nlonely.html\n";
        QCOMPARE(unlinkedIn(site.root()), all);
        QCOMPARE(unlinkedIn(site.root(), "images("), all);
        QCOMPARE(unlinkedIn(site.root(), " images ,, x"), QByteArray("docs/images/c.png\nlonely.html\n"));
        QCOMPARE(unlinkedIn(site.root(), "docs|I.*s"), QByteArray("lonely.html\n"));
    }

    void withoutPages_everyFileIsUnlinked()
    {
        const Site site({{"a.png", ""}, {"a/b.png", ""}});
        QCOMPARE(unlinkedIn(site.root()), QByteArray("a.png\na/b.png\n"));
    }

    // Files whose names are patterns are examined a second time, after the first rows: "c(.png" is.
    void stopped_keepsTheRowsDelivered()
    {
        const Site site({{"a.png", ""}, {"b(.png", ""}, {"c(.png", ""}, {"p.html", "<style>x{}</style>"}});
        for (const auto& [stopAt, expected] :
             std::vector<std::pair<std::string, QByteArray>>{{"a.png", ""}, {"c(.png", "a.png\nb(.png\n"}}) {
            std::vector<std::string> rows;
            std::atomic<bool> stop = false; // asked on several threads
            UnlinkedItemsCallbacks callbacks;
            callbacks.row = [&rows](const std::string& subpath) { rows.push_back(subpath); };
            callbacks.examining = [&](const std::string& subpath) {
                stop = stop || (subpath == stopAt && (rows.size() == 2 || stopAt == "a.png"));
            };
            callbacks.stillWanted = [&stop] { return !stop; };
            const auto done = findUnlinkedItems(site.root(), "", callbacks);
            QVERIFY(done && !*done);
            QCOMPARE(lines(rows), expected);
        }
        QVERIFY(!findUnlinkedItems(site.at("gone"), "", {}));
    }

    void nameSearch_findsEveryNameAnywhere()
    {
        std::mt19937 random(7);
        const auto word = [&random](std::size_t longest) {
            std::string text(1 + random() % longest, 'a');
            std::generate(text.begin(), text.end(), [&] { return random() % 2 == 0 ? 'a' : 'b'; });
            return text;
        };
        for (int round = 0; round < 200; ++round) {
            std::vector<std::string> names(20);
            std::generate(names.begin(), names.end(), [&] { return word(20); });
            const std::string text = word(60);
            std::set<std::string> found;
            NameSearch(names).search(text, [&](std::size_t i) { return found.insert(names[i]), true; });
            for (const std::string& name : names)
                QCOMPARE(found.contains(name), text.find(name) != std::string::npos);
        }
    }
};

LUMA_TEST(tst_unlinkeditems)
#include "tst_unlinkeditems.moc"
