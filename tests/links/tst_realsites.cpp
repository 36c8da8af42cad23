#include "links/linkupdatingmove.h"
#include "links/parsedpage.h"
#include "links/sitetree.h"
#include "platform/files.h"
#include "tests/links/literalloops.h"
#include "tests/links/site.h"
#include "tests/support/registry.h"

#include <QTest>

using namespace luma;
namespace fs = std::filesystem;

namespace {

// Only where it is asked for: hundreds of megabytes are copied.
bool isAskedFor()
{
    return qEnvironmentVariableIsSet("LUMA_REAL_SITES");
}

// The first page in the byte order that has links and company.
fs::path somePage(const SiteTree& tree, std::size_t share)
{
    const auto pages = tree.pages();
    return tree.path(pages[pages.size() * share / 4]);
}

bool hasAbsoluteLink(const std::string& source)
{
    const auto page = parsePage(source);
    return page && std::any_of(page->links.begin(), page->links.end(),
                               [](const PageLink& link) { return link.value.starts_with('/'); });
}

void addSites()
{
    QTest::addColumn<QByteArray>("folder");
    for (const auto& [name, folder] : test::realSites())
        QTest::newRow(name.c_str()) << QByteArray::fromStdString(folder.native());
    if (test::realSites().empty())
        QTest::newRow("none") << QByteArray();
}

} // namespace

class tst_realsites final : public QObject
{
    Q_OBJECT

private slots:
    void moveThereAndBack_changesNoByte_data() { addSites(); }
    void moveThereAndBack_changesNoByte()
    {
        QFETCH(QByteArray, folder);
        if (folder.isEmpty() || !isAskedFor())
            QSKIP("needs a documentation package, and LUMA_REAL_SITES set");
        const test::Site copy;
        const fs::path root = copy.at("site");
        fs::copy(folder.toStdString(), root, fs::copy_options::recursive | fs::copy_options::skip_symlinks);
        const auto before = test::Site::contentsOf(root);
        const auto tree = SiteTree::read(root);
        QVERIFY(tree);
        fs::create_directories(root / "moved here");
        std::size_t rewritten = 0;
        std::vector<fs::path> items = {somePage(*tree, 1), somePage(*tree, 3)};
        for (const SiteTree::Id page : tree->pages()) {
            if (tree->parent(page) != SiteTree::root && tree->parent(tree->parent(page)) == SiteTree::root) {
                items.push_back(tree->path(tree->parent(page)));
                break;
            }
        }
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
        const auto after = test::Site::contentsOf(root);
        QCOMPARE(after.size(), before.size());
        QByteArrayList different;
        for (const auto& [subpath, bytes] : before) {
            // An absolute link of a page that moves becomes a relative one and stays so.
            if (after.at(subpath) != bytes && !hasAbsoluteLink(bytes))
                different << QByteArray::fromStdString(subpath);
        }
        qInfo("%zu pages, %zu items there and back, %zu pages rewritten on the way, %d files differ",
              tree->pages().size(), items.size(), rewritten, static_cast<int>(different.size()));
        QVERIFY2(different.isEmpty(), different.join('\n').constData());
        QVERIFY(rewritten > 0);
    }

    // Where the tree clones or drops an element, the scanner reports what is written: such pages are counted.
    void scanner_findsTheLinksOfTheTree_data() { addSites(); }
    void scanner_findsTheLinksOfTheTree()
    {
        QFETCH(QByteArray, folder);
        if (folder.isEmpty())
            QSKIP("needs a documentation package");
        const auto tree = SiteTree::read(folder.toStdString());
        QVERIFY(tree);
        const auto pages = tree->pages();
        const std::size_t step = isAskedFor() ? 1 : std::max<std::size_t>(pages.size() / 100, 1);
        std::size_t compared = 0;
        std::size_t links = 0;
        QByteArrayList different;
        for (std::size_t i = 0; i < pages.size(); i += step) {
            const auto page = parsePageFile(tree->path(pages[i]));
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
        for (const QByteArray& subpath : different)
            qInfo("differs: %s", subpath.constData());
        QVERIFY(static_cast<std::size_t>(different.size()) * 100 <= compared);
    }
};

LUMA_TEST(tst_realsites)
#include "tst_realsites.moc"
