// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/pathbelow.h"
#include "links/addressparts.h"
#include "links/browserreports.h"
#include "links/siteaddresses.h"
#include "links/sitemoves.h"
#include "links/sitepagereader.h"
#include "links/sitetree.h"
#include "tests/links/hostilesite.h"
#include "tests/support/registry.h"

#include <QProcess>
#include <QRandomGenerator>
#include <QTest>

#include <algorithm>
#include <array>
#include <map>
#include <optional>

using namespace luma;
using test::Files;
using test::Site;
namespace fs = std::filesystem;

namespace {

// The places of one job, as subpaths.
struct Places
{
    MoveOperation operation = MoveOperation::Move;
    std::vector<std::array<std::string, 2>> items;

    [[nodiscard]] std::string of(const std::string& path) const
    {
        for (const auto& [from, to] : items) {
            if (isAtOrBelow(path, from))
                return to + path.substr(from.size());
        }
        return path;
    }
};

struct Link
{
    std::string value;
    LinkState state = LinkState::Present;
    std::string file; // that it leads to
    bool isByFolder = false;
};

using Links = std::map<std::string, std::vector<Link>>;

Links linksOf(const fs::path& site)
{
    Links links;
    const auto tree = SiteTree::read(site);
    (void)checkWebLinks(site, {}, FindingsKept::All, [&](const WebPage& page) {
        for (const WebLink& link : page.links)
            links[page.path].push_back(
                {link.value, link.state,
                 link.file == SiteTree::none ? std::string() : tree->subpath(link.file),
                 link.folder != SiteTree::none});
    });
    return links;
}

// The page without its addresses, each replaced by a mark.
std::string withoutLinks(const std::string& bytes, std::string_view path)
{
    SitePageReader reader;
    reader.parse(bytes, path.substr(path.rfind('/') + 1));
    std::vector<TextRange> ranges;
    for (const LinkReference& reference : reader.page().references())
        ranges.push_back({reference.begin, reference.end});
    if (reader.page().baseReference())
        ranges.push_back({reader.page().baseReference()->begin, reader.page().baseReference()->end});
    std::sort(ranges.begin(), ranges.end(),
              [](const TextRange& a, const TextRange& b) { return a.begin < b.begin; });
    std::string text;
    std::size_t done = 0;
    for (const TextRange& range : ranges) {
        text.append(reader.unmaskedText().substr(done, range.begin - done)).append("\1");
        done = range.end;
    }
    return text.append(reader.unmaskedText().substr(done));
}

// What a row of jobs has done; each count must stay 0 but the first two.
struct Counts
{
    int jobs = 0;
    std::size_t changed = 0;
    QByteArrayList broken;
    QByteArrayList needless;
    QByteArrayList otherBytes;
};

void compareLinks(Counts& counts, const Links& before, const Links& after, const Places& places)
{
    const SiteAddresses addresses;
    for (const auto& [page, links] : before) {
        const std::string newPage = places.of(page);
        const auto found = after.find(newPage);
        for (std::size_t i = 0; i < links.size(); ++i) {
            const Link& old = links[i];
            const Link now = found != after.end() && i < found->second.size()
                                 ? found->second[i]
                                 : Link{"", LinkState::Missing, "", false};
            const QByteArray name =
                QByteArray::fromStdString(page + ": " + old.value + " -> " + newPage + ": " + now.value);
            counts.changed += old.value == now.value ? 0 : 1;
            if (old.state == LinkState::Present && now.state != LinkState::Present)
                counts.broken << name;
            else if (old.state == LinkState::Present && !old.isByFolder && !old.file.empty() &&
                     now.file != places.of(old.file))
                counts.broken << "another file: " + name;
            const LinkTarget asBefore = addresses.resolve(old.value, addresses.page(newPage));
            const LinkTarget asNow = addresses.resolve(now.value, addresses.page(newPage));
            if (old.value != now.value && asBefore.kind == LinkTarget::Kind::Inside &&
                asNow.kind == LinkTarget::Kind::Inside && asBefore.path == asNow.path)
                counts.needless << name;
        }
    }
}

/// Runs random jobs on a site, each checked against the law.
class RandomJobs final
{
public:
    RandomJobs(const Site& site, quint32 seed) : m_site(site), m_random(seed) {}

    [[nodiscard]] const Counts& counts() const { return m_counts; }

    // Where a file of the beginning is now; copies change nothing.
    [[nodiscard]] std::string nowOf(std::string path) const
    {
        for (const Places& places : m_moves)
            path = places.of(path);
        return path;
    }

    // False when there was nothing to do.
    bool runOne()
    {
        const Places places = chosen();
        const Files files = m_site.contents();
        const Links before = linksOf(m_site.root());
        MoveRequest request{m_site.root(), {}, places.operation, {}, {}};
        for (const auto& [from, to] : places.items)
            request.items.push_back({m_site.at(from), m_site.at(to)});
        const auto plan = planMove(request);
        if (!plan || plan->request.items.size() != places.items.size())
            return false;
        auto moves = SiteMoves::open(m_site.root());
        const MoveReport report = moves->carryOut(*plan);
        for (const MoveProblem& problem : report.problems)
            m_counts.broken << "problem: " + QByteArray::fromStdString(problem.text);
        for (const MoveProblem& problem : plan->problems)
            m_counts.broken << "problem: " + QByteArray::fromStdString(problem.text);
        ++m_counts.jobs;
        check(files, before, places);
        return report.isDone;
    }

private:
    void check(const Files& files, const Links& before, const Places& places)
    {
        const Links after = linksOf(m_site.root());
        const Files now = m_site.contents();
        if (places.operation == MoveOperation::Move) {
            m_moves.push_back(places);
            compareLinks(m_counts, before, after, places);
            if (now.size() != files.size())
                m_counts.otherBytes << "files are missing";
        } else {
            compareLinks(m_counts, before, after, {});
            Links copied;
            for (const auto& [page, links] : before) {
                if (places.of(page) != page)
                    copied[page] = links;
            }
            compareLinks(m_counts, copied, after, places);
        }
        for (const auto& [path, bytes] : files) {
            const auto found = now.find(places.of(path));
            const std::string newBytes = found == now.end() ? "missing" : found->second;
            if (newBytes != bytes && withoutLinks(bytes, path) != withoutLinks(newBytes, path))
                m_counts.otherBytes << QByteArray::fromStdString(path);
            if (places.operation == MoveOperation::Copy && now.at(path) != bytes)
                m_counts.otherBytes << "the original of a copy: " + QByteArray::fromStdString(path);
        }
    }

    Places chosen()
    {
        const auto tree = SiteTree::read(m_site.root());
        std::vector<std::string> all;
        std::vector<std::string> folders = {""};
        for (SiteTree::Id id = 1; id < tree->size(); ++id) {
            all.push_back(tree->subpath(id));
            if (tree->type(id) == SiteTree::Type::Folder)
                folders.push_back(all.back() + "/");
        }
        Places places;
        const quint32 kind = m_random.bounded(4);
        places.operation = kind == 0 ? MoveOperation::Copy : MoveOperation::Move;
        const std::string folder = folders[m_random.bounded(quint32(folders.size()))];
        for (quint32 i = 0; i <= m_random.bounded(3U); ++i) {
            const std::string& from = all[m_random.bounded(quint32(all.size()))];
            const std::size_t slash = from.rfind('/');
            const std::string name = from.substr(slash == std::string::npos ? 0 : slash + 1);
            const std::size_t dot = std::min(name.rfind('.'), name.size());
            const std::string newName = names[m_random.bounded(quint32(names.size()))] +
                                        std::to_string(m_counts.jobs) + std::to_string(i) + name.substr(dot);
            if (kind == 1)
                places.items.push_back({from, from.substr(0, from.size() - name.size()) + newName});
            else
                places.items.push_back({from, folder + (m_random.bounded(2) ? name : newName)});
        }
        return places;
    }

    const std::vector<std::string> names = {
        "plain",      "two words ", "100%", "#1 ", "a&b;", "what?", "\xC3\xA9t\xC3\xA9",
        "it's (new)", "a:b",        "1,2",  "{x}", "data", "..x",   "\xFF"};

    const Site& m_site;
    QRandomGenerator m_random;
    Counts m_counts;
    std::vector<Places> m_moves;
};

// Debian's interpreter has html5lib.
const QString python = QStringLiteral("/usr/bin/python3");

// For each page the files that its links lead to, as browserreader.py reads them; an empty name for those that lead nowhere.
std::map<std::string, std::vector<std::string>> targetsForReader(const fs::path& site)
{
    QProcess reader;
    reader.start(python,
                 {qEnvironmentVariable("LUMA_SOURCE_DIR") + QLatin1String("/tests/links/browserreader.py"),
                  QString::fromStdString(site.native()), QStringLiteral("--all")});
    std::map<std::string, std::vector<std::string>> targets;
    if (!reader.waitForFinished(-1) || reader.exitCode() != 0)
        return targets;
    for (const QByteArray& row : reader.readAllStandardOutput().split('\n')) {
        const QByteArrayList cells = row.split('\t');
        if (cells.size() == 5)
            targets[cells[0].toStdString()].push_back(cells[3].isEmpty() ? cells[4].toStdString()
                                                                         : std::string());
    }
    return targets;
}

// Changes a few bytes of each page, so that tags and addresses are damaged.
void damagePages(const Site& site, QRandomGenerator& random)
{
    for (auto [path, bytes] : site.contents()) {
        for (int i = 0; i < 5 && !bytes.empty(); ++i)
            bytes[random.bounded(quint32(bytes.size()))] = static_cast<char>(random.bounded(256));
        site.put(path, bytes);
    }
}

void copyFolder(const fs::path& folder, const Site& site, int step)
{
    int count = 0;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(folder)) {
        const fs::path target = site.root() / entry.path().lexically_relative(folder);
        if (entry.is_directory())
            fs::create_directories(target);
        else if (entry.is_regular_file() && count++ % step == 0)
            fs::copy_file(entry.path(), target);
    }
}

} // namespace

/// The law of moves: whatever is moved, renamed, copied or taken back, no link that worked stops working, no byte outside links
/// changes, no link changes needlessly, and the way back restores every byte.
class tst_movelaws final : public QObject
{
    Q_OBJECT

private slots:
    void randomJobs_keepTheLaw_data()
    {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<quint32>("seed");
        for (quint32 seed = 1; seed <= 2; ++seed) {
            for (const char* const kind : {"sample", "hostile", "damaged", "postgresql-doc-15"})
                QTest::addRow("%s %u", kind, seed) << QString::fromLatin1(kind) << seed;
            // Any other sites: folders with colons between them.
            for (const QString& folder :
                 qEnvironmentVariable("LUMA_SITES").split(QLatin1Char(':'), Qt::SkipEmptyParts))
                QTest::addRow("%s %u", qPrintable(folder), seed) << folder << seed;
        }
    }
    void randomJobs_keepTheLaw()
    {
        QFETCH(QString, kind);
        QFETCH(quint32, seed);
        const Site site;
        QRandomGenerator random(seed);
        if (kind == QLatin1String("sample")) {
            copyFolder(fs::path(qEnvironmentVariable("LUMA_SOURCE_DIR").toStdString()) /
                           "resources/sample-site",
                       site, 1);
        } else if (kind == QLatin1String("postgresql-doc-15")) {
            if (!fs::exists("/usr/share/doc/postgresql-doc-15/html"))
                QSKIP("no postgresql-doc-15");
            copyFolder("/usr/share/doc/postgresql-doc-15/html", site, 20);
            site.makeFolder("deep/er");
        } else if (kind.startsWith(QLatin1Char('/'))) {
            copyFolder(kind.toStdString(), site, 1);
        } else {
            test::HostileSite(seed).fill(site);
            if (kind == QLatin1String("damaged"))
                damagePages(site, random);
        }
        const Files before = site.contents();
        RandomJobs jobs(site, seed);
        const bool isReaderUsed = kind == QLatin1String("sample") || kind == QLatin1String("hostile");
        const auto targets = isReaderUsed ? targetsForReader(site.root()) : decltype(targetsForReader({}))();
        int done = 0;
        for (int i = 0; i < 12; ++i)
            done += jobs.runOne() ? 1 : 0;
        const Counts& counts = jobs.counts();
        qInfo("%d jobs, %zu links changed", counts.jobs, counts.changed);
        QVERIFY2(counts.broken.isEmpty(), counts.broken.join('\n'));
        QVERIFY2(counts.needless.isEmpty(), counts.needless.join('\n'));
        QVERIFY2(counts.otherBytes.isEmpty(), counts.otherBytes.join('\n'));
        // Another site may have few links between its files, or few files.
        QVERIFY(kind.startsWith(QLatin1Char('/')) || (done > 4 && counts.changed > 0));
        const auto now = targets.empty() ? targets : targetsForReader(site.root());
        for (const auto& [page, files] : targets) {
            const auto found = now.find(jobs.nowOf(page));
            QVERIFY(found != now.end() && found->second.size() == files.size());
            for (std::size_t i = 0; i < files.size(); ++i) {
                const std::string expected = files[i].empty() ? found->second[i] : jobs.nowOf(files[i]);
                QCOMPARE(page + ": " + found->second[i], page + ": " + expected);
            }
        }
        for (auto moves = SiteMoves::open(site.root()); moves->undoTitle();)
            QVERIFY(moves->undo().problems.empty());
        QCOMPARE(site.contents().size(), before.size());
        QVERIFY(site.contents() == before);
    }
};

LUMA_TEST(tst_movelaws)
#include "tst_movelaws.moc"
