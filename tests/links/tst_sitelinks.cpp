// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/files.h"
#include "links/linkplan.h"
#include "links/sitelinks.h"
#include "tests/links/hostilesite.h"
#include "tests/support/registry.h"
#include "tests/support/site.h"

#include <QTest>

#include <atomic>
#include <cstdint>
#include <map>
#include <optional>

using namespace luma;
using test::HostileSite;
using test::Site;
namespace fs = std::filesystem;

namespace {

std::string lineOf(const WebPage& page)
{
    std::string text = page.path + " " + page.unreadable + "\n";
    for (const WebLink& link : page.links)
        text += "  " + std::to_string(link.line) + ":" + std::to_string(link.column) + " " +
                std::string(nameOf(link.place)) + " " + link.value + " " +
                std::to_string(static_cast<int>(link.state)) + " " + std::string(textOf(link.why)) + " " +
                link.suggestion + " " + link.target + " " + std::to_string(link.file) + " " +
                std::to_string(link.folder) + "\n";
    return text;
}

/// The answers to all questions about a site, from its files or from what is kept of them.
class Answers final
{
public:
    explicit Answers(const fs::path& site) : m_site(site) {}

    std::string fresh(const WebRules& rules, const std::vector<std::string>& items)
    {
        m_text.clear();
        ended("missing", checkWebLinks(m_site, rules, FindingsKept::Missing, sink()));
        for (const std::string& item : items) {
            ended("to " + item, findWebLinksTo(m_site, m_site / item, rules, sink()));
            from(item, checkWebPage(m_site, m_site / item, rules));
        }
        ended("unlinked", findWebUnlinked(m_site, rules, "e", callbacks()));
        return m_text;
    }

    std::string kept(SiteLinks& links, const WebRules& rules, const std::vector<std::string>& items)
    {
        m_text.clear();
        ended("missing", links.findMissing(rules, sink()));
        for (const std::string& item : items) {
            ended("to " + item, links.findTo(m_site / item, rules, sink()));
            from(item, links.findFrom(m_site / item, rules));
        }
        ended("unlinked", links.findUnlinked(rules, "e", callbacks()));
        return m_text;
    }

private:
    WebPageSink sink()
    {
        return [this](const WebPage& page) { m_text += lineOf(page); };
    }
    UnlinkedItemsCallbacks callbacks()
    {
        UnlinkedItemsCallbacks callbacks;
        callbacks.row = [this](const std::string& subpath) { m_text += subpath + "\n"; };
        return callbacks;
    }
    void ended(const std::string& name, const Result<bool>& done)
    {
        m_text += name + (done ? *done ? " done" : " stopped" : " " + done.error().text) + "\n";
    }
    void from(const std::string& name, const Result<WebPage>& page)
    {
        m_text += name + " " + (page ? lineOf(*page) : page.error().text) + "\n";
    }

    fs::path m_site;
    std::string m_text;
};

/// Changes files of a site at random and tells `links` as the watcher does.
class RandomChanges final
{
public:
    RandomChanges(const Site& site, quint32 seed, bool isWatched)
        : m_site(site), m_random(seed), m_pages(seed), m_isWatched(isWatched)
    {}

    void make(SiteLinks& links)
    {
        const std::string path = anyFile();
        const std::string other = path + std::to_string(m_count++);
        switch (m_random.bounded(8)) {
        case 0:
            fs::remove(m_site.at(path));
            break;
        case 1:
            fs::rename(m_site.at(path), m_site.at(other + ".html"));
            break;
        case 2:
            m_site.put(one({"n/new", "a/new"}) + std::to_string(m_count++) + ".html", m_pages.page());
            break;
        case 3:
            // The places in a page change, not its links.
            m_site.put(path, m_site.bytesOf(path) + "<p id=there" + std::to_string(m_count++) + ">");
            break;
        case 4:
            m_site.put(path,
                       "<p>" + std::string(m_count++, 'x') + m_site.bytesOf(one({"x.png", "a/index.html"})));
            break;
        default:
            m_site.put(path, m_pages.page() + std::string(m_count++, ' '));
        }
        // What the watcher names is also the folder that a new one is in.
        if (!m_isWatched)
            return;
        for (const char* const folder : {"", "a", "a/b", "c d", "e", "n"})
            links.noteChanges(KeptPages::Folders{*folder ? m_site.at(folder) : m_site.root()});
    }

    std::string anyFile()
    {
        const std::vector<fs::path> files = [this] {
            std::vector<fs::path> found;
            for (const auto& [path, bytes] : m_site.contents())
                found.emplace_back(path);
            return found;
        }();
        return files[m_random.bounded(quint32(files.size()))].native();
    }

private:
    std::string one(std::initializer_list<const char*> choices)
    {
        return choices.begin()[m_random.bounded(quint32(choices.size()))];
    }

    const Site& m_site;
    QRandomGenerator m_random;
    HostileSite m_pages;
    bool m_isWatched;
    std::size_t m_count = 1;
};

} // namespace

class tst_sitelinks final : public QObject
{
    Q_OBJECT

    const test::Files twoPages = {{"a.html", "<a href=b.html#x>"}, {"b.html", "<a href=gone#y><p id=x>"}};

    // How many pages are read to answer with what was stored before.
    static std::size_t readByTheNext(const Site& site)
    {
        SiteLinks links(site.root(), SiteLinks::Keeping::Stored, 0);
        Answers answers(site.root());
        if (answers.kept(links, {}, {"b.html"}) != answers.fresh({}, {"b.html"}))
            return SIZE_MAX;
        links.store();
        return links.readCount();
    }

private slots:
    void answers_areThoseOfAFreshScan_data()
    {
        QTest::addColumn<bool>("isWatched");
        QTest::addColumn<bool>("hasLinks");
        QTest::addColumn<bool>("isStored");
        QTest::newRow("each file is looked at") << false << false << false;
        QTest::newRow("a watcher names folders") << true << false << false;
        QTest::newRow("with symbolic links") << true << true << false;
        QTest::newRow("stored between reports") << false << false << true;
    }
    void answers_areThoseOfAFreshScan()
    {
        QFETCH(bool, isWatched);
        QFETCH(bool, hasLinks);
        QFETCH(bool, isStored);
        const quint32 seed = 1;
        const Site site;
        HostileSite(seed).fill(site);
        site.put("mention.html", "<script>'X.png', 'index.html', 'a/page1.html'</script><p data-x=x.png>");
        if (hasLinks) {
            fs::create_directory_symlink("a", site.at("alias"));
            fs::create_symlink("a/index.html", site.at("one.html"));
            fs::create_symlink("gone", site.at("broken.html"));
            site.put("p.html", "<a href=alias/X.png><a href=alias/gone><a href=one.html#there>");
        }
        std::optional<SiteLinks> links;
        RandomChanges changes(site, seed, isWatched);
        Answers answers(site.root());
        WebRules rules;
        for (int round = 0; round < 12; ++round) {
            if (round == 0 || isStored) {
                links.emplace(site.root(), SiteLinks::Keeping::Stored, 0);
                if (isWatched)
                    links->noteChanges({});
            }
            for (int i = round % 3; i > 0; --i)
                changes.make(*links);
            if (round == 6)
                rules = {{"http://example.org/x"}, {"page1.html"}, true, false};
            if (round == 9)
                rules.fragmentsAreChecked = true;
            const std::vector<std::string> items = {round % 2 == 0 ? "a" : changes.anyFile()};
            QCOMPARE(answers.kept(*links, rules, items), answers.fresh(rules, items));
            links->store();
        }
    }

    void onlyChangedPages_areReadAgain()
    {
        const Site site({{"a.html", "<a href=b.html#x>"}, {"b.html", "<p id=x>"}, {"c/d.html", ""}});
        SiteLinks links(site.root(), SiteLinks::Keeping::InMemory, 0);
        std::string found;
        const auto add = [&found](const WebPage& page) { found += page.path + " "; };
        const auto missing = [&] {
            found.clear();
            return *links.findMissing({}, add) ? found : "stopped";
        };
        QCOMPARE(missing(), std::string());
        QCOMPARE(links.readCount(), std::size_t(3));
        site.put("b.html", "<p id=other>");
        QCOMPARE(missing(), std::string("a.html "));
        QCOMPARE(links.readCount(), std::size_t(4));
        site.put("c/e.html", "<a href=gone>");
        QCOMPARE(missing(), std::string("a.html c/e.html "));
        QCOMPARE(links.readCount(), std::size_t(5));
        // With a watcher, what it does not name is not even looked at.
        links.noteChanges({});
        QCOMPARE(missing(), std::string("a.html c/e.html "));
        site.put("a.html", "");
        QCOMPARE(missing(), std::string("a.html c/e.html "));
        links.noteChanges(KeptPages::Folders{site.root()});
        QCOMPARE(missing(), std::string("c/e.html "));
        QCOMPARE(links.readCount(), std::size_t(6));
    }

    void plannedMove_isThatOfAllPages_data()
    {
        QTest::addColumn<std::string>("item");
        QTest::addColumn<std::string>("place");
        const auto row = [](const char* item, const char* place) {
            QTest::newRow(item) << std::string(item) << std::string(place);
        };
        row("x.png", "x y.png");
        row("a/X.png", "a/new.png");
        row("a", "z");
        row("a/b", "a/c");
        row("c d/\xC3\xBC \xE2\x82\xAC.html", "c d/plain.html");
        row("a/index.html", "a/main.html");
    }
    void plannedMove_isThatOfAllPages()
    {
        QFETCH(std::string, item);
        QFETCH(std::string, place);
        const Site site;
        HostileSite(3).fill(site);
        site.put("based.html", "<base href=/a/b/><a href=x.png>");
        MoveRequest request{site.root(), {}, MoveOperation::Move, {{site.at(item), site.at(place)}}, {},
                            false,       {}};
        const auto links = std::make_shared<SiteLinks>(site.root(), SiteLinks::Keeping::InMemory, 0);
        const auto watched = std::make_shared<SiteLinks>(site.root(), SiteLinks::Keeping::InMemory, 0);
        watched->setWatcher([&](const SiteLinks::Told& told) {
            watched->noteChanges(KeptPages::Folders{site.at(item).parent_path()});
            told(true);
        });
        watched->noteChanges({});
        QVERIFY(*links->findMissing({}, [](const WebPage&) {}));
        QVERIFY(*watched->findMissing({}, [](const WebPage&) {}));
        std::map<std::string, std::string> plans[6]; // edits by page
        for (int i = 0; i < 6; ++i) {
            if (i == 3) {
                fs::rename(site.at(item), site.at(place));
                request.isRenamedAlready = true;
            }
            request.keptLinks = i % 3 == 0 ? nullptr : i % 3 == 1 ? links : watched;
            QVERIFY(i % 3 != 2 || watched->knownSite(request.items, request.isRenamedAlready, {}, {}));
            const auto plan = planMove(request);
            QVERIFY(plan && !plan->pages.empty());
            for (const PageRewrite& page : plan->pages) {
                std::string& edits = plans[i][page.oldPage.native()];
                for (const LinkEdit& edit : page.edits)
                    edits += std::to_string(edit.begin) + " " + edit.before + " " + edit.after + "\n";
            }
        }
        QCOMPARE(plans[1], plans[0]);
        QCOMPARE(plans[2], plans[0]);
        QCOMPARE(plans[4], plans[3]);
        QCOMPARE(plans[5], plans[3]);
    }

    void watchedSite_isKnownUntilNow()
    {
        const Site elsewhere(test::Files{{"shared", ""}});
        const Site site({{"a.html", "<a href=docs/>"},
                         {"b.html", ""},
                         {"d.php", "<a href='docs/x.png?<?= $id ?>'>"},
                         {"docs/index.html", ""}});
        fs::create_hard_link(elsewhere.at("shared"), site.at("c.html"));
        SiteLinks links(site.root(), SiteLinks::Keeping::InMemory, 0);
        KeptPages::Folders changed;
        bool isWatching = true;
        const auto known = [&] {
            const auto pages = links.knownSite({{site.at("docs"), site.at("d")}}, false, {}, {});
            std::string names = pages ? "" : "unknown";
            for (std::size_t i = 0; pages && i < pages->pages.size(); ++i)
                names += pages->tree->subpath(pages->pages[i]) + " ";
            return names;
        };
        const auto report = [&] { return links.findMissing({}, [](const WebPage&) {}); };
        QVERIFY(report());
        QCOMPARE(known(), std::string("unknown"));
        links.noteChanges({});
        links.setWatcher([&](const SiteLinks::Told& told) {
            links.noteChanges(std::exchange(changed, {}));
            told(isWatching);
        });
        QCOMPARE(known(), std::string("unknown"));
        QVERIFY(report());
        QCOMPARE(known(), std::string("a.html d.php docs/index.html "));
        // What the watcher tells only now.
        site.put("b.html", "<img src=docs/gone.png>");
        changed = {site.root()};
        QCOMPARE(known(), std::string("a.html b.html d.php docs/index.html "));
        // Changed by its other name, which no watcher sees.
        elsewhere.put("shared", "<a href=/docs/>");
        QCOMPARE(known(), std::string("a.html b.html c.html d.php docs/index.html "));
        site.put("e.html", "");
        changed = {site.root()};
        QCOMPARE(known(), std::string("unknown"));
        QVERIFY(report());
        QCOMPARE(known(), std::string("a.html b.html c.html d.php docs/index.html "));
        isWatching = false;
        QCOMPARE(known(), std::string("unknown"));
        isWatching = true;
        links.endWatch();
        QCOMPARE(known(), std::string("unknown"));
    }

    void pagesLeadingTo_areFew()
    {
        const Site site({{"a.html", "<a href=docs/>"},
                         {"b.html", "<a href=docs/gone.html>"},
                         {"c.html", "<a href=d.html>"},
                         {"d.html", "<base href=/x/>"},
                         {"docs/index.html", ""}});
        SiteLinks links(site.root());
        using Names = std::vector<std::string>;
        const auto leading = [&](const SiteLinks::Wanted& wanted) {
            const auto pages = links.pagesLeadingTo(wanted, *SiteTree::read(site.root()), {}, {});
            return pages && *pages ? Names((*pages)->begin(), (*pages)->end()) : Names{"unknown"};
        };
        // Nothing is kept yet.
        QCOMPARE(leading({{"docs"}, {"docs"}}), Names{"unknown"});
        QVERIFY(*links.findMissing({}, [](const WebPage&) {}));
        QCOMPARE(leading({{"docs"}, {"docs"}}), (Names{"a.html", "b.html", "d.html"}));
        QCOMPARE(leading({{"docs/index.html"}, {""}}), (Names{"a.html", "d.html"}));
        QCOMPARE(leading({{"d.html"}, {"d.html"}}), (Names{"c.html", "d.html"}));
        QCOMPARE(leading({{"gone/index.html"}, {""}}), Names{"unknown"});
        // In any spelling.
        site.put("c.html", "<link href='%64oc%73/\n'><img src='a&amp;&#x62;'>");
        QCOMPARE(leading({{"docs"}, {"docs"}}), (Names{"a.html", "b.html", "c.html", "d.html"}));
        QCOMPARE(leading({{"a&b"}, {"a&b"}}), (Names{"c.html", "d.html"}));
    }

    void store_isReadInThePlaceOfPages()
    {
        const Site site(twoPages);
        QCOMPARE(readByTheNext(site), std::size_t(2));
        QCOMPARE(readByTheNext(site), std::size_t(0));
        site.put("a.html", "<a href=c.html>");
        QCOMPARE(readByTheNext(site), std::size_t(1));
        const fs::path file = LinkStore(site.root()).file();
        QCOMPARE(fs::status(file).permissions(), fs::perms::owner_read | fs::perms::owner_write);
    }

    void damagedStore_isAsNone()
    {
        const Site site(twoPages);
        (void)readByTheNext(site);
        const fs::path file = LinkStore(site.root()).file();
        const std::string good = *readFile(file);
        const auto check = [&](const std::string& bytes, const char* what) {
            QVERIFY(writeFile(file, bytes));
            QVERIFY2(readByTheNext(site) == 2, what);
        };
        for (std::size_t at = 0; at < good.size(); at += 3) {
            std::string damaged = good;
            damaged[at] = static_cast<char>(damaged[at] ^ 4);
            check(damaged, "a bit has changed");
            check(good.substr(0, at), "cut off");
        }
        check(good + "x", "longer");
        const Site other(twoPages);
        (void)readByTheNext(other);
        check(*readFile(LinkStore(other.root()).file()), "of another site");
    }

    void justChangedFile_isReadAgain()
    {
        const Site site(test::Files{{"a.html", "<a href=b>"}});
        SiteLinks links(site.root());
        QVERIFY(*links.findMissing({}, [](const WebPage&) {}));
        QVERIFY(*links.findMissing({}, [](const WebPage&) {}));
        QCOMPARE(links.readCount(), std::size_t(2));
    }

    void stoppedReport_isMadeWholeByTheNext()
    {
        const Site site;
        HostileSite(7).fill(site);
        SiteLinks links(site.root(), SiteLinks::Keeping::InMemory, 0);
        Answers answers(site.root());
        for (const int mostAsked : {0, 1, 3, 20, 60, 90}) {
            std::atomic<int> asked = 0;
            const auto done = links.findMissing(
                {}, [](const WebPage&) {}, [&] { return ++asked <= mostAsked; });
            QVERIFY(done && !*done);
            site.put("page-new.html", std::string(std::size_t(mostAsked), ' ') + "<a href=gone>");
        }
        QCOMPARE(answers.kept(links, {}, {"a"}), answers.fresh({}, {"a"}));
    }
};

LUMA_TEST(tst_sitelinks)
#include "tst_sitelinks.moc"
