// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/mainhop.h"
#include "site/syncengine.h"
#include "tests/site/twofolders.h"
#include "tests/support/registry.h"

#include <QAbstractItemModelTester>
#include <QSemaphore>
#include <QSignalSpy>
#include <QTest>
#include <QThreadPool>

namespace fs = std::filesystem;
using namespace luma;
using luma::test::TwoFolders;
using State = SyncEngine::State;

namespace {

constexpr Direction upload = Direction::Upload;
constexpr Direction download = Direction::Download;

// A site whose "server" is the receiving folder: the runner removes the login from the command's words.
struct Site
{
    explicit Site(bool rsync)
        : record({{"sourceDict", QVariantMap{{"path", path(folders.sending())}}},
                  {"destinationDict",
                   QVariantMap{{"user", "me"}, {"server", "host"}, {"path", path(folders.receiving())}}}}),
          engine(
              record,
              [](std::vector<std::string> words, std::string_view input, const StillWanted& wanted) {
                  for (std::string& word : words) {
                      if (word.starts_with("me@host:"))
                          word.erase(0, 8);
                  }
                  return runProgram(words, input, wanted);
              },
              [this, rsync] {
                  return SyncSides{rsync, folders.sending(), folders.receiving()};
              })
    {}

    static QString path(const fs::path& folder) { return QString::fromStdString(folder.string()); }

    bool compare(Direction direction = upload, Deletions deletions = Deletions::Ignored)
    {
        engine.compare(direction, deletions);
        return QTest::qWaitFor([this] { return engine.state() != State::Comparing; }, 60000);
    }

    bool transfer()
    {
        engine.transfer();
        return QTest::qWaitFor([this] { return engine.state() != State::Transferring; }, 60000);
    }

    void untick(int row)
    {
        engine.table().setData(engine.table().index(row, 0), Qt::Unchecked, Qt::CheckStateRole);
    }

    [[nodiscard]] std::string names()
    {
        std::string text;
        for (const SyncRow& row : engine.table().rows())
            text += (row.select ? "+" : "-") + row.displayName + "\n";
        return text;
    }

    TwoFolders folders;
    SiteRecord record;
    SyncEngine engine;
};

} // namespace

class tst_syncengine final : public QObject
{
    Q_OBJECT

private slots:
    void bothModes_data()
    {
        QTest::addColumn<bool>("rsync");
        QTest::newRow("file mode") << false;
        QTest::newRow("rsync mode") << true;
    }

    void publishing_data() { bothModes_data(); }
    void publishing()
    {
        QFETCH(bool, rsync);
        Site site(rsync);
        const QAbstractItemModelTester tester(&site.engine.table());
        site.folders.put("sending/My Page.html", "mine");
        site.folders.put("sending/index.html", "new", 10);
        site.folders.put("receiving/index.html", "old", 20);
        site.folders.put("sending/sub/index.html", "new");
        site.engine.compare(upload, Deletions::Ignored);
        QCOMPARE(site.engine.title(), "Move these new/modified files from Source to Destination?");
        QCOMPARE(site.engine.state(), State::Comparing);
        QVERIFY(site.compare());
        QCOMPARE(site.names(), std::string("+My Page.html\n+index.html\n+sub/index.html\n"));
        site.untick(0);
        site.untick(1);
        QSignalSpy transferred(&site.engine, &SyncEngine::transferred);
        QVERIFY(site.transfer());
        QCOMPARE(transferred.count(), 1);
        QCOMPARE(site.folders.listing("receiving"), std::string("index.html\nsub/index.html\n"));
        QCOMPARE(site.folders.bytesOf("receiving/index.html"), std::string("old"));
        QCOMPARE(site.names(), std::string("-My Page.html\n-index.html\n"));
        QCOMPARE(site.engine.state(), State::Ready);
        QCOMPARE(site.record.untickedNames(upload), (QStringList{"My Page.html", "index.html"}));

        QVERIFY(site.compare());
        QCOMPARE(site.names(), std::string("-My Page.html\n-index.html\n"));
        QVERIFY(site.transfer());
        QCOMPARE(site.names(), std::string("-My Page.html\n-index.html\n"));
        site.engine.table().tickAll(true);
        QVERIFY(site.transfer());
        QCOMPARE(site.engine.title(), "No more files to be moved.");
        QCOMPARE(site.engine.state(), State::Done);
        QVERIFY(site.compare());
        QCOMPARE(site.engine.title(), "Nothing changed from Source to Destination");
        QCOMPARE(site.engine.state(), State::Empty);
    }

    void theOtherDirectionComesBack_data() { bothModes_data(); }
    void theOtherDirectionComesBack()
    {
        QFETCH(bool, rsync);
        Site site(rsync);
        site.folders.put("receiving/page.html", "theirs");
        site.engine.compare(download, Deletions::Ignored);
        QCOMPARE(site.engine.title(), "Move these new/modified files from Destination to Source?");
        QVERIFY(site.compare(download));
        QCOMPARE(site.names(), std::string("+page.html\n"));
        QVERIFY(site.transfer());
        QCOMPARE(site.folders.bytesOf("sending/page.html"), std::string("theirs"));
        QVERIFY(site.compare(download));
        QCOMPARE(site.engine.title(), "Nothing changed from Destination to Source");
    }

    void deletingRowsAreRememberedWithoutTheWord_data() { bothModes_data(); }
    void deletingRowsAreRememberedWithoutTheWord()
    {
        QFETCH(bool, rsync);
        Site site(rsync);
        site.folders.put("receiving/old/page.html");
        QVERIFY(site.compare(upload, Deletions::Listed));
        QCOMPARE(site.names(), std::string("+deleting old/page.html\n"));
        site.untick(0);
        site.engine.cancel();
        QCOMPARE(site.record.untickedNames(upload), QStringList{"old/page.html"});
        QVERIFY(site.compare(upload, Deletions::Listed));
        QCOMPARE(site.names(), std::string("-deleting old/page.html\n"));
        site.engine.table().tickAll(true);
        QVERIFY(site.transfer());
        QCOMPARE(site.folders.listing("receiving"), std::string());
    }

    void untickedDeletionsOutliveAComparisonWithoutAny_data() { bothModes_data(); }
    void untickedDeletionsOutliveAComparisonWithoutAny()
    {
        QFETCH(bool, rsync);
        Site site(rsync);
        site.folders.put("receiving/keep me.html");
        fs::create_directories(site.folders.at("receiving/empty"));
        site.folders.put("sending/a.html");
        QVERIFY(site.compare(upload, Deletions::Listed));
        QCOMPARE(site.names(), std::string("+a.html\n+deleting empty/\n+deleting keep me.html\n"));
        site.untick(1);
        site.untick(2);
        site.engine.cancel();
        QVERIFY(site.compare());
        QVERIFY(site.transfer());
        QCOMPARE(site.record.untickedNames(upload), QStringList());
        QVERIFY(site.compare(upload, Deletions::Listed));
        QCOMPARE(site.names(), std::string("-deleting empty/\n-deleting keep me.html\n"));
        site.engine.table().tickAll(true);
        site.engine.cancel();
        QVERIFY(site.compare(upload, Deletions::Listed));
        QCOMPARE(site.names(), std::string("+deleting empty/\n+deleting keep me.html\n"));
    }

    // A change there is never overwritten unless its row is ticked, and it is not taken for one unticked.
    void changesThereSinceTheLastPublishAreUnticked_data() { bothModes_data(); }
    void changesThereSinceTheLastPublishAreUnticked()
    {
        QFETCH(bool, rsync);
        Site site(rsync);
        site.folders.put("sending/a.html", "first");
        site.folders.put("sending/b.html", "first");
        QVERIFY(site.compare());
        QVERIFY(site.transfer());
        site.folders.put("sending/a.html", "mine", 50);
        site.folders.put("receiving/a.html", "theirs", 20);
        site.folders.put("sending/b.html", "older", 200);
        QVERIFY(site.compare());
        QCOMPARE(site.names(), std::string("-a.html\n+b.html\n"));
        QVERIFY(site.transfer());
        QCOMPARE(site.names(), std::string("-a.html\n"));
        QCOMPARE(site.folders.bytesOf("receiving/a.html"), std::string("theirs"));
        QCOMPARE(site.folders.bytesOf("receiving/b.html"), std::string("older"));
        QCOMPARE(site.record.untickedNames(upload), QStringList());
        QVERIFY(site.compare());
        QCOMPARE(site.names(), std::string("-a.html\n"));
        site.engine.table().tickAll(true);
        QVERIFY(site.transfer());
        QCOMPARE(site.engine.state(), State::Done);
        QCOMPARE(site.folders.bytesOf("receiving/a.html"), std::string("mine"));
        site.folders.put("sending/a.html", "again", 5);
        QVERIFY(site.compare());
        QCOMPARE(site.names(), std::string("+a.html\n"));
    }

    void onlyTheChosenRowIsDone_andTheTicksComeBack_data() { bothModes_data(); }
    void onlyTheChosenRowIsDone_andTheTicksComeBack()
    {
        QFETCH(bool, rsync);
        Site site(rsync);
        site.folders.putAll("sending", "a|b|c|d");
        QVERIFY(site.compare());
        site.untick(1);
        site.engine.tickOnly({site.engine.table().index(1, 0), site.engine.table().index(3, 0)});
        QCOMPARE(site.names(), std::string("-a\n+b\n-c\n+d\n"));
        QVERIFY(site.transfer());
        QCOMPARE(site.names(), std::string("+a\n+c\n"));
        QCOMPARE(site.folders.listing("receiving"), std::string("b\nd\n"));
        site.engine.tickOnly({site.engine.table().index(0, 0)});
        site.engine.cancel();
        QCOMPARE(site.record.untickedNames(upload), QStringList());
    }

    void ignoredFilesAreNotListedAgain_data() { bothModes_data(); }
    void ignoredFilesAreNotListedAgain()
    {
        QFETCH(bool, rsync);
        Site site(rsync);
        const std::vector<std::string> names = {"a b",       "s/a", "[x]", "*",   "a\\b",     "tail ",
                                                "s/\nfeed ", "?",   "**a", "\\*", "\xc3\xbc", "#x"};
        for (const std::string& name : names)
            site.folders.put("sending/" + name);
        site.folders.putAll("sending", "a|x|ab|s/b|axa");
        for (const std::string& name : names)
            QVERIFY(site.engine.ignore(name));
        QVERIFY(!site.engine.ignore("\xff"));
        QVERIFY(site.compare());
        QCOMPARE(site.names(), std::string("+a\n+ab\n+axa\n+s/b\n+x\n"));
        QCOMPARE(site.engine.ignoredCount(), names.size());
    }

    void progressCountsFilesAndBytes_data() { bothModes_data(); }
    void progressCountsFilesAndBytes()
    {
        QFETCH(bool, rsync);
        Site site(rsync);
        const std::string bytes(20'000, 'x');
        for (int i = 0; i < 12; ++i)
            site.folders.put("sending/" + std::to_string(i), bytes);
        QVERIFY(site.compare());
        SyncProgress last;
        connect(&site.engine, &SyncEngine::progressed, this,
                [&](const SyncProgress& done, const SyncTotals& all) {
                    QVERIFY(done.rows >= last.rows && done.rows <= all.files);
                    QCOMPARE(done.bytes, std::int64_t(done.rows) * 20'000);
                    QCOMPARE(all.bytes, 240'000);
                    last = done;
                });
        QVERIFY(site.transfer());
        QCOMPARE(site.engine.state(), State::Done);
        QCOMPARE(last.rows, std::size_t{12});
    }

    void aSecondTransferOfTheSiteIsRefused()
    {
        Site site(false);
        site.folders.put("sending/a.html");
        QVERIFY(site.compare());
        {
            const auto other = lockForPublishing(siteIdentity(site.record));
            QVERIFY(site.transfer());
            QVERIFY2(site.engine.message().contains("being published"), qPrintable(site.engine.message()));
            QCOMPARE(site.names(), std::string("+a.html\n"));
        }
        QVERIFY(site.transfer());
        QCOMPARE(site.engine.state(), State::Done);
    }

    void whatCannotBeCopiedStays_data() { bothModes_data(); }
    void whatCannotBeCopiedStays()
    {
        QFETCH(bool, rsync);
        Site site(rsync);
        site.folders.putAll("sending", "a.html|b.html");
        QVERIFY(site.compare());
        // rsync fails as a whole without its receiving folder; a folder in the way stops only one file.
        if (rsync) {
            fs::remove_all(site.folders.receiving());
            site.folders.put("receiving");
        } else {
            fs::create_directory(site.folders.at("receiving/b.html"));
        }
        QVERIFY(site.transfer());
        QCOMPARE(site.names(), std::string(rsync ? "+a.html\n+b.html\n" : "+b.html\n"));
        QVERIFY(!site.engine.message().isEmpty());
        QCOMPARE(site.engine.state(), State::Ready);
    }

    void aFailedComparisonKeepsTheRowsAndTheUntickedNames_data() { bothModes_data(); }
    void aFailedComparisonKeepsTheRowsAndTheUntickedNames()
    {
        QFETCH(bool, rsync);
        Site site(rsync);
        site.folders.putAll("sending", "a.html|b.html");
        QVERIFY(site.compare());
        site.untick(1);
        fs::rename(site.folders.sending(), site.folders.at("elsewhere"));
        QVERIFY(site.compare());
        QCOMPARE(site.engine.state(), State::Failed);
        QCOMPARE(site.engine.title(), "The comparison failed");
        QVERIFY2(site.engine.message().contains("No such file"), qPrintable(site.engine.message()));
        QCOMPARE(site.names(), std::string("+a.html\n-b.html\n"));
        site.engine.cancel();
        QCOMPARE(site.record.untickedNames(upload), QStringList{"b.html"});
        fs::rename(site.folders.at("elsewhere"), site.folders.sending());
        QVERIFY(site.compare());
        QCOMPARE(site.names(), std::string("+a.html\n-b.html\n"));
    }

    void aStoppedTransferSaysWhatIsDone()
    {
        Site site(false);
        for (int i = 0; i < 300; ++i)
            site.folders.put("sending/" + std::to_string(i));
        QVERIFY(site.compare());
        site.engine.transfer();
        site.engine.stop();
        QTRY_COMPARE(site.engine.state(), State::Ready);
        const auto left = site.engine.table().rows().size();
        QCOMPARE(site.engine.message(), QString("Stopped; %1 of 300 moved").arg(300 - left));
        QVERIFY(site.engine.wasStopped());
        QVERIFY(site.compare());
        QCOMPARE(site.engine.table().rows().size(), left);
    }

    void aMistypedOrAbsentListCountsAsEmpty()
    {
        Site site(false);
        SiteRecord odd({{"Upload", 7}});
        QVERIFY(odd.untickedNames(upload).isEmpty());
        site.folders.put("sending/a.html");
        site.engine.compare(upload, Deletions::Ignored);
        site.engine.cancel();
        QCOMPARE(site.record.untickedNames(upload), QStringList());
        QCOMPARE(site.engine.state(), State::Idle);
        QTRY_COMPARE(QThreadPool::globalInstance()->activeThreadCount(), 0);
        QCoreApplication::processEvents();
        QCOMPARE(site.names(), std::string());
    }

    // Destroys the engine in each stage of a job; the runner blocks until the test lets it go on.
    void theEngineMayGoAtAnyMoment()
    {
        QSemaphore entered;
        QSemaphore held;
        const TwoFolders folders;
        SiteRecord record(
            {{"sourceDict", QVariantMap{{"path", Site::path(folders.receiving())}}},
             {"destinationDict", QVariantMap{{"user", "me"}, {"server", "host"}, {"path", "/b"}}}});
        const auto runner = [&](const std::vector<std::string>&, std::string_view, const StillWanted&) {
            entered.release();
            held.acquire();
            return ProgramResult{0, "|>f+++++++++ 4 2026/01/02-03:04:05 a.html//\n", {}};
        };
        auto engine = std::make_unique<SyncEngine>(record, runner, [] { return SyncSides{true, {}, {}}; });
        engine->compare(download, Deletions::Ignored);
        entered.acquire();
        QSignalSpy changed(engine.get(), &SyncEngine::changed);
        engine->compare(download, Deletions::Ignored);
        entered.acquire();
        held.release(1);
        held.release(1);
        QTRY_COMPARE(engine->state(), State::Ready);
        engine->transfer();
        entered.acquire();
        engine.reset();
        held.release(1);
        QCoreApplication::processEvents();

        for (int i = 0; i < 500; ++i)
            folders.put("sending/" + std::to_string(i));
        auto files = std::make_unique<SyncEngine>(record, runner, [&] {
            return SyncSides{false, folders.sending(), folders.receiving()};
        });
        files->compare(upload, Deletions::Ignored);
        QTRY_COMPARE(files->state(), State::Ready);
        files->transfer();
        files.reset();
        QTRY_COMPARE(QThreadPool::globalInstance()->activeThreadCount(), 0);
        QVERIFY(folders.listing("receiving").find(".luma-") == std::string::npos);
    }
};

LUMA_TEST(tst_syncengine)
#include "tst_syncengine.moc"
