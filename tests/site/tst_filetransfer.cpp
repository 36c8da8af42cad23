// SPDX-License-Identifier: GPL-3.0-or-later
#include "site/filetransfer.h"
#include "site/foldercomparison.h"
#include "site/syncguards.h"
#include "tests/site/twofolders.h"
#include "tests/support/registry.h"

#include <QTest>

#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>

namespace fs = std::filesystem;
using namespace luma;
using luma::test::TwoFolders;

class tst_filetransfer final : public QObject
{
    Q_OBJECT

private:
    static std::vector<SyncRow> changed(const TwoFolders& folders)
    {
        const WorkItem item;
        auto report = FolderComparison({folders.sending(), folders.receiving()}).run(item);
        return report ? std::move(report->rows) : std::vector<SyncRow>();
    }

    static std::string problemsOf(const std::vector<SyncRow>& rows)
    {
        const WorkItem item;
        std::string text;
        for (const TransferProblem& problem : FileTransfer(rows).run(item).problems)
            text += problem.text + "\n";
        return text;
    }

    // A small file system at "receiving" during the object's lifetime; not mounted without the right to
    // mount.
    class SmallDisk final
    {
    public:
        explicit SmallDisk(fs::path folder) : m_folder(std::move(folder))
        {
            m_isMounted = ::mount("luma", m_folder.c_str(), "tmpfs", 0, "size=64k") == 0;
        }
        SmallDisk(const SmallDisk&) = delete;
        SmallDisk& operator=(const SmallDisk&) = delete;
        ~SmallDisk()
        {
            if (m_isMounted)
                (void)::umount(m_folder.c_str());
        }
        [[nodiscard]] bool isMounted() const { return m_isMounted; }
        [[nodiscard]] bool becomeReadOnly() const
        {
            return ::mount("luma", m_folder.c_str(), "tmpfs", MS_REMOUNT | MS_RDONLY, "size=64k") == 0;
        }

    private:
        fs::path m_folder;
        bool m_isMounted = false;
    };

private slots:
    void copiesTickedRows_withTimeModeAndFolders()
    {
        const TwoFolders folders;
        folders.put("sending/a/b/new \xff\n.html", "new");
        folders.put("sending/changed.html", "young", 10);
        folders.put("receiving/changed.html", "old", 20);
        folders.put("sending/unticked.html");
        fs::create_symlink("../../outside", folders.at("sending/a/link"));
        fs::permissions(folders.at("sending/a/b/new \xff\n.html"), fs::perms(0640));
        fs::permissions(folders.at("sending/a/b"), fs::perms(0550));
        folders.setAge("sending/a/b", 77);
        std::vector<SyncRow> rows = changed(folders);
        QCOMPARE(rows.size(), std::size_t{4});
        rows[3].select = false;
        const WorkItem item;
        const TransferReport report = FileTransfer(rows).run(item);
        QVERIFY(report.problems.empty());
        QCOMPARE(report.done, (std::vector<std::size_t>{0, 1, 2}));
        QCOMPARE(folders.listing("receiving"), std::string("a/b/new \xff\n.html\na/link\nchanged.html\n"));
        QCOMPARE(folders.bytesOf("receiving/changed.html"), std::string("young"));
        QCOMPARE(int(fs::status(folders.at("receiving/a/b/new \xff\n.html")).permissions()), 0640);
        QCOMPARE(int(fs::status(folders.at("receiving/a/b")).permissions()), 0550);
        QCOMPARE(fs::last_write_time(folders.at("receiving/a/b")),
                 fs::last_write_time(folders.at("sending/a/b")));
        QCOMPARE(changed(folders).size(), std::size_t{1});
        for (const char* side : {"sending/a/b", "receiving/a/b"})
            fs::permissions(folders.at(side), fs::perms::owner_all);
    }

    // Each case changes something after the comparison; nothing on the receiving side may be lost.
    void whatChangedMeanwhileIsLeftAndNamed_data()
    {
        QTest::addColumn<std::function<void(const TwoFolders&)>>("meanwhile");
        QTest::addColumn<std::string>("problems");
        QTest::addColumn<std::string>("left");
        const auto add = [](const char* name, const std::string& problems, const std::string& left,
                            const std::function<void(const TwoFolders&)>& meanwhile) {
            QTest::newRow(name) << meanwhile << problems << left;
        };
        const auto both = [](const std::string& reason) {
            return "s/new.html: " + reason + "\ns/old.html: " + reason + "\n";
        };
        add("source gone", "s/new.html: No such file or directory\n", "s/old.html\n",
            [](const TwoFolders& f) { fs::remove(f.at("sending/s/new.html")); });
        add("source now a folder", "s/new.html: no longer a file\n", "s/old.html\n", [](const TwoFolders& f) {
            fs::remove(f.at("sending/s/new.html"));
            f.makeFolder("sending/s/new.html");
        });
        add("target appeared", "s/new.html: something has appeared in its place since the comparison\n",
            "s/new.html\ns/old.html\n", [](const TwoFolders& f) { f.put("receiving/s/new.html", "mine"); });
        add("target edited", "s/old.html: the receiving side has been changed since the comparison\n",
            "s/new.html\ns/old.html\n",
            [](const TwoFolders& f) { f.put("receiving/s/old.html", "mine", 1); });
        add("folder now a link out of the site", both("a symbolic link stands where the folder should be"),
            "s\n", [](const TwoFolders& f) {
                fs::rename(f.at("receiving/s"), f.at("outside"));
                fs::create_directory_symlink("../outside", f.at("receiving/s"));
            });
        add("folder now a file", both("a file stands where the folder should be"), "s\n",
            [](const TwoFolders& f) {
                fs::remove_all(f.at("receiving/s"));
                f.put("receiving/s");
            });
        add("receiving folder gone", both("No such file or directory"), "",
            [](const TwoFolders& f) { fs::remove_all(f.receiving()); });
    }
    void whatChangedMeanwhileIsLeftAndNamed()
    {
        QFETCH(std::function<void(const TwoFolders&)>, meanwhile);
        QFETCH(std::string, problems);
        QFETCH(std::string, left);
        const TwoFolders folders;
        folders.put("sending/s/new.html", "new");
        folders.put("sending/s/old.html", "young", 10);
        folders.put("receiving/s/old.html", "old", 20);
        const std::vector<SyncRow> rows = changed(folders);
        meanwhile(folders);
        QCOMPARE(problemsOf(rows), problems);
        if (fs::exists(folders.receiving()))
            QCOMPARE(folders.listing("receiving"), left);
        if (fs::exists(folders.at("outside")))
            QCOMPARE(folders.listing("outside"), std::string("old.html\n"));
        if (problems.find("edited") != std::string::npos || problems.find("appeared") != std::string::npos)
            QCOMPARE(folders.bytesOf(problems.substr(0, 10).insert(0, "receiving/")), std::string("mine"));
    }

    void deletesTickedRows_andWhatTheyLeaveEmpty()
    {
        const TwoFolders folders;
        folders.put("sending/new.html");
        folders.putAll("receiving", "old/a/1|old/b/2|kept/x|kept/y|edited");
        fs::create_directories(folders.at("receiving/empty/e"));
        const FolderComparison comparison({folders.sending(), folders.receiving()}, IgnoredNames(),
                                          Deletions::Listed);
        ComparisonReport report = *comparison.run(WorkItem());
        for (SyncRow& row : report.rows)
            row.select = row.relativePath != "kept/y";
        folders.put("receiving/edited", "meanwhile", 1);
        const TransferReport done = FileTransfer(report.rows, report.foldersOnlyThere).run(WorkItem());
        QCOMPARE(folders.listing("receiving"), std::string("edited\nkept/y\nnew.html\n"));
        QVERIFY(!fs::exists(folders.at("receiving/old")) && !fs::exists(folders.at("receiving/empty")));
        QCOMPARE(done.done.size(), report.rows.size() - 2);
        QCOMPARE(done.problems.at(0).text,
                 std::string("deleting edited: the receiving side has been changed since the comparison"));
    }

    void nothingIsDeletedAfterAFailure()
    {
        const TwoFolders folders;
        folders.put("sending/page");
        folders.putAll("receiving", "page/in the way|old.html");
        const FolderComparison comparison({folders.sending(), folders.receiving()}, IgnoredNames(),
                                          Deletions::Listed);
        const TransferReport report = FileTransfer(comparison.run(WorkItem())->rows).run(WorkItem());
        QCOMPARE(report.problems.size(), std::size_t{1});
        QCOMPARE(folders.listing("receiving"), std::string("old.html\npage/in the way\n"));
    }

    void aFolderInTheWayStays()
    {
        const TwoFolders folders;
        folders.put("sending/page");
        folders.put("receiving/page/precious.html");
        QCOMPARE(problemsOf(changed(folders)),
                 std::string("page: a folder stands where the file should be\n"));
        QCOMPARE(folders.listing("receiving"), std::string("page/precious.html\n"));
    }

    void aFullDiskCostsNothing()
    {
        const TwoFolders folders;
        const SmallDisk disk(folders.receiving());
        if (!disk.isMounted())
            QSKIP("needs the right to mount");
        folders.put("receiving/big.html", "old", 200);
        folders.put("sending/big.html", std::string(200'000, 'x'));
        folders.put("sending/made/big.html", std::string(200'000, 'x'));
        folders.put("sending/small.html");
        const ComparisonReport found =
            *FolderComparison({folders.sending(), folders.receiving()}).run(WorkItem());
        QVERIFY(guardQuestions(found.rows, found.counts).join(u'|').contains("The receiving disk has"));
        QCOMPARE(problemsOf(changed(folders)),
                 std::string("big.html: No space left on device\nmade/big.html: No space left on device\n"));
        QCOMPARE(folders.listing("receiving"), std::string("big.html\nsmall.html\n"));
        QCOMPARE(folders.bytesOf("receiving/big.html"), std::string("old"));
    }

    void aReadOnlyDestinationIsNamed()
    {
        const TwoFolders folders;
        const SmallDisk disk(folders.receiving());
        if (!disk.isMounted() || !disk.becomeReadOnly())
            QSKIP("needs the right to mount");
        folders.put("sending/a.html");
        folders.put("sending/made/b.html");
        QCOMPARE(problemsOf(changed(folders)),
                 std::string("a.html: Read-only file system\nmade/b.html: Read-only file system\n"));
    }

    void cancellingStopsBetweenFiles()
    {
        const TwoFolders folders;
        folders.putAll("sending", "a|b|c");
        WorkItem item;
        const TransferReport report = FileTransfer(changed(folders)).run(item, [&](const SyncProgress& done) {
            if (done.rows == 2)
                item.cancel();
        });
        QCOMPARE(report.done, (std::vector<std::size_t>{0, 1}));
        QCOMPARE(folders.listing("receiving"), std::string("a\nb\n"));
    }
};

LUMA_TEST(tst_filetransfer)
#include "tst_filetransfer.moc"
