// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/files.h"
#include "base/statefolder.h"
#include "site/syncrow.h"
#include "tests/support/registry.h"

#include <QTest>

namespace fs = std::filesystem;
using namespace luma;

namespace {

FileFacts file(std::int64_t size, std::int64_t time)
{
    return {.type = FileFacts::Type::File, .size = size, .time = time};
}

} // namespace

class tst_publishedfiles final : public QObject
{
    Q_OBJECT

private:
    static fs::path onlyFile()
    {
        for (const auto& entry : fs::directory_iterator(stateFolder() / "published")) {
            if (entry.path().extension() == ".files")
                return entry.path();
        }
        return {};
    }

private slots:
    void init() { fs::remove_all(stateFolder() / "published"); }

    // After the last publish, the sending side had 10 bytes of time 100, the receiving one 10 bytes of time 50:
    // a share that keeps no times.
    void rowsOfWhatChangedSince_data()
    {
        QTest::addColumn<FileFacts>("sent");
        QTest::addColumn<FileFacts>("received");
        QTest::addColumn<std::string>("row");
        const auto add = [](const char* name, const FileFacts& sent, const FileFacts& received,
                            const std::string& row) { QTest::newRow(name) << sent << received << row; };
        const FileFacts none;
        add("nothing", file(10, 100), file(10, 50), "");
        add("edited here", file(11, 200), file(10, 50), "+Newer than on the receiving side");
        add("an older version put back here", file(9, 20), file(10, 50),
            "+Changed since the last publish, but not newer");
        add("edited there", file(10, 100), file(12, 300), "");
        add("an older version put back there", file(10, 100), file(9, 20),
            "-Changed there since the last publish");
        add("edited on both sides", file(11, 200), file(12, 300),
            "-Changed on both sides since the last publish");
        add("the same edit on both sides", file(11, 200), file(11, 200), "");
        add("deleted here", none, file(10, 50), "+deleting Deleted since the last publish");
        add("deleted here, edited there", none, file(10, 60),
            "-deleting Deleted, but changed there since the last publish");
        add("deleted there", file(10, 100), none, "+Deleted there since the last publish");
    }
    void rowsOfWhatChangedSince()
    {
        QFETCH(FileFacts, sent);
        QFETCH(FileFacts, received);
        QFETCH(std::string, row);
        for (const Direction direction : {Direction::Upload, Direction::Download}) {
            PublishedFiles before = PublishedFiles::load("a site").emptied();
            before.set("a", {file(10, 100), file(10, 50)}, direction);
            FoundFiles found;
            found.files = {{"a", sent, received}};
            const ComparisonReport report = judged(found, before, direction);
            std::string listed;
            for (const SyncRow& each : report.rows)
                listed += (each.select ? "+" : "-") +
                          each.displayName.substr(0, each.displayName.size() - 1) + textOf(each.reason);
            QCOMPARE(listed, row);
            // What is not transferred stays as it was published.
            QVERIFY(report.published.save());
            const auto kept = PublishedFiles::load("a site").find("a", direction);
            const bool areSame = sent.isSameFile(received);
            QVERIFY(kept && kept->sent == (areSame ? sent : file(10, 100)));
        }
    }

    void whatIsGoneOnBothSidesIsForgotten()
    {
        PublishedFiles before;
        before.set("gone", {file(1, 1), file(1, 1)}, Direction::Upload);
        FoundFiles found;
        QVERIFY(judged(found, before, Direction::Upload).published.find("gone", Direction::Upload));
        found.isComplete = true;
        QVERIFY(judged(found, before, Direction::Upload).published.isEmpty());
    }

    void sameFilesAreSavedInAnyNumber()
    {
        FoundFiles found;
        SameFiles others;
        const std::string longName(100'000, 'x');
        for (int i = 0; i < 5000; ++i)
            (i % 2 == 0 ? found.same : others).add("folder", std::to_string(i), file(i, -i));
        others.add({}, longName, file(1, 2));
        found.same.append(std::move(others));
        found.files = {{"listed before", file(3, 4), file(3, 4)}};
        const ComparisonReport report = judged(found, PublishedFiles::load("large"), Direction::Upload);
        QCOMPARE(report.counts.common, std::size_t{5002});
        QVERIFY(report.published.save());
        const PublishedFiles again = PublishedFiles::load("large");
        for (int i = 0; i < 5000; ++i) {
            const auto pair = again.find("folder/" + std::to_string(i), Direction::Upload);
            QVERIFY(pair && pair->sent == file(i, -i) && pair->received == file(i, -i));
        }
        QVERIFY(again.find(longName, Direction::Upload) && again.find("listed before", Direction::Upload));
    }

    void savedFilesComeBack_readableByTheUserAlone()
    {
        const std::string name = "a b\n\xff/\xc3\xbc.html";
        PublishedFiles files = PublishedFiles::load("one site");
        QVERIFY(files.isEmpty());
        files.set(name, {file(7, -5), file(8, 6)}, Direction::Download);
        files.set("link", {{.type = FileFacts::Type::Link}, file(1, 1)}, Direction::Upload);
        QVERIFY(files.save());
        QCOMPARE(int(fs::status(onlyFile()).permissions()), 0600);
        const PublishedFiles again = PublishedFiles::load("one site");
        const auto pair = again.find(name, Direction::Upload);
        QVERIFY(pair && pair->sent == file(8, 6) && pair->received == file(7, -5));
        QVERIFY(!again.find("link", Direction::Upload));
        QVERIFY(PublishedFiles::load("another site").isEmpty());

        const std::string bytes = *readFile(onlyFile());
        for (std::size_t size = 0; size < bytes.size(); ++size) {
            QVERIFY(writeFile(onlyFile(), bytes.substr(0, size)));
            QVERIFY(PublishedFiles::load("one site").isEmpty());
        }
    }

    void oneAtATimePublishesASite()
    {
        {
            const auto lock = lockForPublishing("one site");
            QVERIFY(lock);
            QVERIFY(lockForPublishing("another site"));
            QCOMPARE(lockForPublishing("one site").error().text,
                     std::string("This site is being published by another window or program"));
        }
        QVERIFY(lockForPublishing("one site"));
    }
};

LUMA_TEST(tst_publishedfiles)
#include "tst_publishedfiles.moc"
