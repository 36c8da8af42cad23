// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/site/twofolders.h"
#include "tests/support/registry.h"

#include <QProcess>

namespace fs = std::filesystem;
using luma::test::TwoFolders;

/// Quitting while a job of a pane runs: the program ends, and the site is whole.
class tst_quitinjob final : public QObject
{
    Q_OBJECT

private:
    static constexpr int pages = 300;
    static constexpr const char* link = "<a href='../a/x.html'>";

    static std::string page(int number) { return "many/" + std::to_string(number) + ".html"; }
    static std::string padding() { return std::string(20'000, ' '); }
    static void makeSite(const TwoFolders& folders)
    {
        folders.put("sending/a/x.html", "<a href='../many/1.html'>");
        folders.put("sending/a/large", std::string(2'000'000, 'x'));
        fs::create_directories(folders.at("sending/b"));
        for (int i = 0; i < pages; ++i) {
            folders.put("sending/" + page(i), link + padding());
            folders.put("sending/a/below/" + std::to_string(i) + ".txt");
        }
    }

    // The exit code; -1 after a crash.
    static int run(const TwoFolders& folders, const std::string& job, const std::string& way)
    {
        QProcess process;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("QT_QPA_PLATFORM", "offscreen");
        process.setProcessEnvironment(environment);
        process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        process.setStandardOutputFile(QProcess::nullDevice());
        process.start(qEnvironmentVariable("LUMA_BUILD_DIR") + "/bin/quit_in_job",
                      {QString::fromStdString(folders.root().native()), QString::fromStdString(job),
                       QString::fromStdString(way)});
        const bool ended = process.waitForFinished(-1);
        return ended && process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    }

private slots:
    void init()
    {
        if (qEnvironmentVariableIsEmpty("LUMA_BUILD_DIR"))
            QSKIP("LUMA_BUILD_DIR names no build folder");
    }

    void quitting_endsTheJobAndLeavesWholeFiles_data()
    {
        QTest::addColumn<std::string>("job");
        QTest::addColumn<std::string>("way");
        for (const char* const job :
             {"move", "copy", "rename", "duplicate", "missing", "links to", "unlinked", "delete"})
            QTest::addRow("%s, quit", job) << std::string(job) << std::string("quit");
        QTest::newRow("move, the window's menu") << std::string("move") << std::string("menu");
        QTest::newRow("move, SIGTERM") << std::string("move") << std::string("signal");
        QTest::newRow("missing, SIGTERM") << std::string("missing") << std::string("signal");
        QTest::newRow("unlinked, the window's menu") << std::string("unlinked") << std::string("menu");
    }
    void quitting_endsTheJobAndLeavesWholeFiles()
    {
        QFETCH(std::string, job);
        QFETCH(std::string, way);
        const TwoFolders folders;
        makeSite(folders);
        QCOMPARE(run(folders, job, way), 0);
        const std::string left = folders.listing("sending");
        QVERIFY(left.find(".luma-") == std::string::npos);
        // All places where the item may be now. A folder with its final name must be complete.
        for (const char* const place : {"a", "b/a", "z", "a copy"}) {
            const std::string folder = std::string("sending/") + place;
            if (!fs::exists(folders.at(folder)) || job == "delete")
                continue;
            QCOMPARE(fs::file_size(folders.at(folder + "/large")), std::uintmax_t{2'000'000});
            QCOMPARE(std::distance(fs::directory_iterator(folders.at(folder + "/below")), {}), pages);
        }
        for (int i = 0; i < pages && job != "delete"; ++i) {
            const std::string bytes = folders.bytesOf("sending/" + page(i));
            QVERIFY2(bytes == link + padding() || bytes == "<a href='../b/a/x.html'>" + padding() ||
                         bytes == "<a href='../z/x.html'>" + padding(),
                     page(i).c_str());
        }
    }
};

LUMA_TEST(tst_quitinjob)
#include "tst_quitinjob.moc"
