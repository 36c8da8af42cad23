// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/files.h"
#include "mounts/volumemounter.h"
#include "shell/sshcontroller.h"
#include "tests/site/sitewindow.h"
#include "tests/support/mainthread.h"
#include "tests/support/registry.h"
#include "tests/support/screenshot.h"
#include "tests/support/sshserver.h"

#include <QAction>
#include <QProcess>
#include <QTest>

#include <array>
#include <random>

namespace fs = std::filesystem;
using namespace luma;
using luma::test::runFlow;
using luma::test::SiteWindow;

namespace {

const QString worksText = "LUMA is using rsync for faster uploads and downloads.";
const QString offerText = "Turn on rsync to make uploads and downloads go faster.";

// Names with a meaning for a shell, a terminal or rsync's patterns. plainNames has the names that such a
// pattern would also match.
const QStringList hardNames = {
    "$HOME.html", "(x).html", "-lead.html",       "My Page.html",         "[ab].html",       "`touch x`.html",
    "a;id.html",  "b&c.html", "back\\slash.html", "gr\u00f6\u00dfe.html", "it's \"q\".html", "st*r.html"};
const QStringList plainNames = {"a.html", "docs/My Page.html", "index.html", "star.html"};

// Replaces the network file system: the server's folder is on this computer.
class SameComputerMounter final : public VolumeMounter
{
    Q_OBJECT

public:
    explicit SameComputerMounter(fs::path folder) : m_folder(std::move(folder)) {}

    Result<fs::path> mount(const QString& /*shareURL*/, const QString& /*user*/, const QString& /*password*/,
                           const std::function<bool()>& /*isWanted*/) override
    {
        return m_folder;
    }
    std::optional<fs::path> existingMount(const QString& /*shareURL*/) override { return {}; }
    void unmount(const fs::path& /*mountPoint*/) override {}

private:
    fs::path m_folder;
};

QStringList without(QStringList names, const QStringList& others)
{
    names.removeIf([&others](const QString& name) { return others.contains(name); });
    return names;
}

QStringList ticked(QStringList names)
{
    std::sort(names.begin(), names.end());
    for (QString& name : names)
        name.prepend(u'+');
    return names;
}

} // namespace

/// One story over the real window, ssh, expect and rsync: each test continues from the one before.
class tst_publishoverssh final : public QObject
{
    Q_OBJECT

private:
    test::SshServer m_server;
    test::TwoFolders m_folders;
    std::shared_ptr<SiteRecord> m_record;
    std::unique_ptr<SiteWindow> m_site;

    void open()
    {
        m_site.reset();
        HaldenDoc::Services services = HaldenDoc::standardServices();
        services.mounter = std::make_shared<SameComputerMounter>(m_folders.receiving());
        m_site = std::make_unique<SiteWindow>(m_record, std::move(services));
    }
    bool awaitText(const char* flow, const std::function<void()>& begin, const QString& text)
    {
        return runFlow(flow, begin, [&] { return m_site->text("connectionResultText") == text; });
    }
    bool setUpWith(const std::string& password, const QString& expected)
    {
        m_record->destinationDict()->setValue("password", QString::fromStdString(password));
        return awaitText(
            "set-up", [&] { m_site->click("setUpRemoteLoginConnectionButton"); }, expected);
    }
    void put(const char* side, const QStringList& names, std::string_view bytes, double age) const
    {
        for (const QString& name : names)
            m_folders.put(side + name.toStdString(), bytes, age);
        m_server.giveToUser(m_folders.receiving());
    }
    void picture(const char* name) const { test::saveScreenshots(*m_site->window, QLatin1StringView(name)); }

private slots:
    void initTestCase()
    {
        if (!m_server.start())
            QSKIP(qPrintable(m_server.skipReason()));
        m_server.setLogFormat(true);
        fs::permissions(m_folders.root(), fs::perms(0755));
        m_server.giveToUser(m_folders.receiving());
        const auto text = [](const std::string& bytes) { return QString::fromStdString(bytes); };
        m_record = std::make_shared<SiteRecord>(
            QVariantMap{{"sourceDict", SiteWindow::localFolder(m_folders.sending())},
                        {"destinationDict", QVariantMap{{"protocol", "sftp://"},
                                                        {"server", text(m_server.server())},
                                                        {"path", text(m_folders.receiving().string())},
                                                        {"user", text(m_server.user())},
                                                        {"sshPortNo", text(m_server.port())},
                                                        {"autoconnect", 1}}}});
        put("sending/", hardNames + plainNames, "first", 100);
    }
    void cleanupTestCase() { m_site.reset(); }
    void cleanup() { QTRY_COMPARE(m_server.processesAtPort(), 0); }

    void opening_checksTheLoginAndOffersTheSetUp()
    {
        QVERIFY(runFlow(
            "opening", [&] { open(); },
            [&] { return m_site && m_site->text("connectionResultText") == offerText; }));
        QVERIFY(m_site->isEnabled("setUpRemoteLoginConnectionButton"));
        QVERIFY(!m_site->window->rsync());
        picture("line-offer");
    }

    void setUp_saysThatThePasswordIsWrong()
    {
        QVERIFY(setUpWith("wrong", "Permission denied, please try entering the password again."));
        QVERIFY(m_site->isEnabled("setUpRemoteLoginConnectionButton"));
        QVERIFY(!m_site->window->rsync());
        picture("line-refused");
    }

    void setUp_turnsRsyncOn()
    {
        m_record->destinationDict()->setValue("password", QString::fromStdString(m_server.password()));
        const auto shows = [&](const char* text) {
            return m_site->text("connectionResultText") == QLatin1StringView(text);
        };
        m_site->click("setUpRemoteLoginConnectionButton");
        QVERIFY(shows("Remote Login setup requested."));
        QVERIFY(!m_site->isEnabled("setUpRemoteLoginConnectionButton"));
        picture("line-requested");
        QVERIFY(runFlow(
            "set-up", [] {}, [&] { return shows("Remote Login setup done. Verifying connection..."); }));
        picture("line-verifying");
        QVERIFY(awaitText(
            "connection check", [] {}, worksText));
        QVERIFY(!m_site->isEnabled("setUpRemoteLoginConnectionButton"));
        QVERIFY(m_site->window->rsync());
        picture("line-rsync");
    }

    void upload_movesTheTickedFiles()
    {
        QVERIFY(m_site->compare());
        QCOMPARE(m_site->rows(), ticked(hardNames + plainNames));
        m_site->tickOnly(without(hardNames + plainNames, {"index.html", "st*r.html"}));
        test::saveScreenshots(m_site->find<QWidget>("syncPanel"), "sync-rsync");
        QVERIFY(m_site->transfer());
        const QStringList left = {"-index.html", "-st*r.html"};
        QCOMPARE(m_site->rows(), left);
        m_site->click("cancelButton");
        QTRY_VERIFY(m_site->shownNames().contains("star.html"));
        QVERIFY(!fs::exists(m_folders.at("receiving/index.html")));
        QVERIFY(!fs::exists(m_folders.at("receiving/st*r.html")));
        for (const QString& name : hardNames + plainNames) {
            if (left.contains(u'-' + name))
                continue;
            const fs::path sent = m_folders.at("sending/" + name.toStdString());
            const fs::path received = m_folders.at("receiving/" + name.toStdString());
            QCOMPARE(m_folders.bytesOf("receiving/" + name.toStdString()), std::string("first"));
            QCOMPARE(fs::last_write_time(received), fs::last_write_time(sent));
        }
    }

    void secondOpening_remembersTheUnticked()
    {
        QVERIFY(runFlow(
            "opening and connection check", [&] { open(); },
            [&] { return m_site->text("connectionResultText") == worksText; }));
        QVERIFY(m_site->compare());
        const QStringList left = {"-index.html", "-st*r.html"};
        QCOMPARE(m_site->rows(), left);
        m_site->click("cancelButton");
    }

    void untickedNames_areLeftOutWhateverTheyHold()
    {
        put("sending/", hardNames + plainNames, "second", 50);
        QVERIFY(m_site->compare());
        QCOMPARE(m_site->rows().size(), hardNames.size() + plainNames.size());
        m_site->tickOnly(plainNames);
        QVERIFY(m_site->transfer());
        for (const QString& name : plainNames)
            QCOMPARE(m_folders.bytesOf("receiving/" + name.toStdString()), std::string("second"));
        for (const QString& name : hardNames) {
            const std::string path = "receiving/" + name.toStdString();
            QVERIFY2(!fs::exists(m_folders.at(path)) || m_folders.bytesOf(path) == "first", path.c_str());
        }
        QCOMPARE(m_site->rows().size(), hardNames.size());
        m_site->click("allOnOffCheckBox");
        QVERIFY(m_site->transfer());
        QCOMPARE(m_site->text("syncPanelTitle"), "No more files to be moved.");
        QCOMPARE(m_folders.listing("receiving"), m_folders.listing("sending"));
        m_site->click("cancelButton");
    }

    void deleteOption_removesWhatItListed()
    {
        put("receiving/", {"old/page.html", "it's $old.html"}, "old", 10);
        QVERIFY(m_site->compare());
        QCOMPARE(m_site->text("syncPanelTitle"), "Nothing changed from Source to Destination");
        QVERIFY(runFlow(
            "dry run", [&] { m_site->click("deleteOptionCheckBox"); }, [&] { return m_site->isSyncIdle(); }));
        const QStringList listed = {"+deleting it's $old.html", "+deleting old/page.html"};
        QCOMPARE(m_site->rows(), listed);
        m_site->tickOnly({"deleting old/page.html"});
        test::saveScreenshots(m_site->find<QWidget>("syncPanel"), "sync-delete");
        QVERIFY(m_site->transfer());
        QVERIFY(!fs::exists(m_folders.at("receiving/old/page.html")));
        QCOMPARE(m_folders.bytesOf("receiving/it's $old.html"), std::string("old"));
        m_site->click("cancelButton");
    }

    void download_bringsWhatIsNewerThere()
    {
        put("receiving/", {"index.html"}, "theirs", 10);
        QVERIFY(m_site->compare("downloadButton"));
        m_site->tickOnly({"index.html"});
        QVERIFY(m_site->transfer());
        QCOMPARE(m_folders.bytesOf("sending/index.html"), std::string("theirs"));
        m_site->click("cancelButton");
    }

    void lumactl_doesTheSame()
    {
        if (qEnvironmentVariableIsEmpty("LUMA_BUILD_DIR"))
            QSKIP("LUMA_BUILD_DIR names no build folder");
        put("sending/", {"by script.html"}, "new", 3);
        QProcess process;
        process.setProgram(qEnvironmentVariable("LUMA_BUILD_DIR") + "/bin/lumactl");
        process.setArguments({"publish", "--json", "--ssh",
                              QString::fromStdString(m_server.login() + ":" + m_server.port()),
                              QString::fromStdString(m_folders.sending().string()),
                              QString::fromStdString(m_folders.receiving().string())});
        process.start();
        QVERIFY(process.waitForFinished(-1));
        QCOMPARE(process.readAllStandardError(), QByteArray());
        QVERIFY(process.readAllStandardOutput().contains("\"file\":\"by script.html\""));
        QCOMPARE(m_folders.bytesOf("receiving/by script.html"), std::string("new"));
    }

    void failedComparison_saysWhy()
    {
        const QVariant right = m_record->destinationDict()->value("path");
        m_record->destinationDict()->setValue("path", "/nowhere");
        QVERIFY(m_site->compare("downloadButton"));
        m_record->destinationDict()->setValue("path", right);
        QCOMPARE(m_site->text("syncPanelTitle"), "The comparison failed");
        QVERIFY2(m_site->text("syncMessage").contains("No such file or directory"),
                 qPrintable(m_site->text("syncMessage")));
        QVERIFY(!m_site->isEnabled("syncButton"));
        m_site->click("cancelButton");
    }

    void stoppedUpload_leavesNothingBehind()
    {
        put("sending/", {"first.txt"}, "new", 5);
        std::string incompressible;
        for (std::mt19937_64 random; incompressible.size() < 200'000'000;) {
            const std::uint64_t number = random();
            incompressible.append(reinterpret_cast<const char*>(&number), sizeof number);
        }
        put("sending/", {"second.bin"}, incompressible, 5);
        QVERIFY(m_site->compare());
        m_site->tickOnly({"first.txt", "second.bin"});
        m_site->click("syncButton");
        QTRY_VERIFY(itemExists(m_folders.at("receiving/first.txt")));
        QCOMPARE(m_site->find<QAbstractButton>("cancelButton").text(), "Stop");
        m_site->click("cancelButton");
        QTRY_VERIFY_WITH_TIMEOUT(m_site->isSyncIdle(), 60'000);
        QVERIFY2(m_site->text("syncMessage").startsWith("Stopped; "),
                 qPrintable(m_site->text("syncMessage")));
        QCOMPARE(m_site->find<QPushButton>("syncButton").text(), "&Go On");
        QTRY_COMPARE(m_server.processesAtPort(), 0);
        QCOMPARE(m_folders.bytesOf("receiving/first.txt"), std::string("new"));
        QVERIFY(!itemExists(m_folders.at("receiving/second.bin")));
        QVERIFY(m_folders.listing("receiving").find(".second.bin.") == std::string::npos);
        fs::remove(m_folders.at("sending/second.bin"));
        m_site->click("cancelButton");
    }

    void changedHostKey_isOfferedTheSetUp_whichFails()
    {
        const fs::path knownHosts = m_server.clientFolder() / "known_hosts";
        const std::string known = *readFile(knownHosts);
        const std::string otherKey = *readFile(m_server.clientFolder() / "id_rsa.pub");
        QVERIFY(writeFile(knownHosts, "[127.0.0.1]:" + m_server.port() + " " + otherKey));
        QVERIFY(awaitText(
            "connection check", [&] { m_site->find<QAction>("checkConnectionAction").trigger(); },
            offerText));
        QVERIFY(!m_site->window->rsync());
        QVERIFY(setUpWith(m_server.password(), "Error in connection"));
        QVERIFY(!m_site->window->rsync());
        QVERIFY(writeFile(knownHosts, known));
    }
};

LUMA_TEST(tst_publishoverssh)
#include "tst_publishoverssh.moc"
