// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/files.h"
#include "links/linkupdatingmove.h"
#include "links/parsedpage.h"
#include "links/sitetree.h"
#include "links/unlinkeditems.h"
#include "tests/links/literalloops.h"
#include "tests/support/registry.h"
#include "tests/support/site.h"

#include <QTest>

#include <algorithm>

using namespace luma;
namespace fs = std::filesystem;

namespace {

// A documentation package of the reference system, read as a real site.
struct RealSite
{
    const char* package;
    fs::path folder;
    fs::path part; // makes a site of its own, for work that grows with the square of the size
};

const std::vector<RealSite> realSites = {
    {"python3-doc", "/usr/share/doc/python3.11/html", "c-api"},
    {"postgresql-doc-15", "/usr/share/doc/postgresql-doc-15/html", ""},
    {"openjdk-17-doc", "/usr/share/doc/openjdk-17-jre-headless/api", "java.sql"},
    {"qtbase5-doc-html", "/usr/share/qt5/doc", "qtnetwork"}};

// Two pages and the first folder at the top that has pages.
std::vector<fs::path> itemsToMove(const SiteTree& tree)
{
    const std::vector<SiteTree::Id> pages = tree.pages();
    std::vector<fs::path> items = {tree.path(pages[pages.size() / 4]),
                                   tree.path(pages[pages.size() * 3 / 4])};
    const auto isInFolder = [&tree](SiteTree::Id page) { return tree.parent(page) != SiteTree::root; };
    if (const auto page = std::find_if(pages.begin(), pages.end(), isInFolder); page != pages.end())
        items.push_back(fs::path(tree.rootPath()) / *fs::path(tree.subpath(*page)).begin());
    return items;
}

// A rewritten link is the direct path to its target, so one that climbed in the middle or began at the file
// system's root comes back different. The number of such links in a page in `folder`; nothing when any other
// byte differs.
std::optional<int> linksMadeDirect(const std::string& before, const std::string& after,
                                   const fs::path& folder)
{
    const auto old = parsePage(before);
    const auto now = parsePage(after);
    if (!old || !now || old->links.size() != now->links.size())
        return {};
    std::vector<LinkChange> changes;
    for (std::size_t i = 0; i < old->links.size(); ++i) {
        const std::string& value = old->links[i].value;
        if (value == now->links[i].value)
            continue;
        changes.push_back({i, relativePath(resolveRelativeLink(value, folder), folder)});
    }
    const int count = static_cast<int>(changes.size());
    return withChangedLinks(*old, std::move(changes)) == after ? std::optional(count) : std::nullopt;
}

// Whole sites are used only where LUMA_REAL_SITES is set: they take minutes.
bool usesWholeSites()
{
    return qEnvironmentVariableIsSet("LUMA_REAL_SITES");
}

void addSites()
{
    QTest::addColumn<std::string>("folder");
    for (const RealSite& site : realSites)
        QTest::newRow(site.package) << (usesWholeSites() ? site.folder : site.folder / site.part).native();
}

} // namespace

/// Real sites, not made for tests.
class tst_realsites final : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        QFETCH(std::string, folder);
        if (!fs::is_directory(folder))
            QSKIP(qPrintable(QLatin1String("needs the package ") + QLatin1String(QTest::currentDataTag())));
    }

    void moveThereAndBack_changesNoByte_data() { addSites(); }
    void moveThereAndBack_changesNoByte()
    {
        QFETCH(std::string, folder);
        const test::Site copy;
        const fs::path root = copy.at("site");
        fs::copy(folder, root, fs::copy_options::recursive | fs::copy_options::skip_symlinks);
        const auto before = copy.contents("site");
        const auto tree = SiteTree::read(root);
        QVERIFY(tree);
        fs::create_directories(root / "moved here");
        std::size_t rewritten = 0;
        const std::vector<fs::path> items = itemsToMove(*tree);
        for (const fs::path& item : items) {
            const MoveOutcome there =
                LinkUpdatingMove(root, {}).run(MoveOperation::Move, {item}, root / "moved here");
            QVERIFY(there.problems.empty() && !there.moved.empty());
            rewritten += there.rewritten.size();
            const MoveOutcome back = LinkUpdatingMove(root, {}).run(
                MoveOperation::Move, {there.moved.front().to}, item.parent_path());
            QVERIFY(back.problems.empty());
        }
        fs::remove(root / "moved here");
        QVERIFY(rewritten > 0);
        const auto after = copy.contents("site");
        QCOMPARE(after.size(), before.size());
        QByteArrayList different;
        int direct = 0;
        for (const auto& [subpath, bytes] : before) {
            if (after.at(subpath) == bytes)
                continue;
            const auto count = linksMadeDirect(bytes, after.at(subpath), (root / subpath).parent_path());
            direct += count.value_or(0);
            if (!count)
                different << QByteArray::fromStdString(subpath);
        }
        qInfo("%zu pages, %zu items moved there and back, %zu pages rewritten on the way there, %d links now "
              "direct, %d files differ otherwise",
              tree->pages().size(), items.size(), rewritten, direct, static_cast<int>(different.size()));
        QVERIFY2(different.isEmpty(), different.join('\n').constData());
    }

    void index_answersAsTheLiteralLoops_data() { addSites(); }
    void index_answersAsTheLiteralLoops()
    {
        QFETCH(std::string, folder);
        const auto tree = SiteTree::read(folder);
        QVERIFY(tree);
        if (tree->files().size() > 5000)
            QSKIP("the literal loops would take hours");
        std::vector<std::string> found;
        UnlinkedItemsCallbacks callbacks;
        callbacks.row = [&found](const std::string& subpath) { found.push_back(subpath); };
        QVERIFY(findUnlinkedItems(folder, "", callbacks));
        const auto expected = test::unlinkedByLiteralLoops(folder);
        qInfo("%zu files, %zu unlinked, by the literal loops %zu", tree->files().size(), found.size(),
              expected.size());
        QVERIFY(found == expected);
    }

    // A tree may clone or drop elements, where the scanner reports what is written. A few such pages are allowed.
    void scanner_findsTheLinksOfTheTree_data() { addSites(); }
    void scanner_findsTheLinksOfTheTree()
    {
        QFETCH(std::string, folder);
        const auto tree = SiteTree::read(folder);
        QVERIFY(tree);
        const auto pages = tree->pages();
        const std::size_t step = usesWholeSites() ? 1 : std::max<std::size_t>(pages.size() / 100, 1);
        std::size_t compared = 0;
        std::size_t links = 0;
        QByteArrayList different;
        for (std::size_t i = 0; i < pages.size(); i += step) {
            const auto source = readFile(tree->path(pages[i]));
            const auto page = source ? parsePage(*source) : std::nullopt;
            if (!page)
                continue;
            std::vector<std::string> found;
            for (const PageLink& link : page->links)
                found.push_back(std::string(linkAttributes.at(link.attribute)) + " : " + link.value);
            ++compared;
            links += found.size();
            if (found != test::linksByGumbo(page->source))
                different << QByteArray::fromStdString(tree->subpath(pages[i]));
        }
        qInfo("%zu pages with %zu links compared, %d differ", compared, links,
              static_cast<int>(different.size()));
        QVERIFY2(static_cast<std::size_t>(different.size()) * 100 <= compared,
                 different.join('\n').constData());
    }
};

LUMA_TEST(tst_realsites)
#include "tst_realsites.moc"
