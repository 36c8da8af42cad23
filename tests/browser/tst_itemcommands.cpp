// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/files.h"
#include "browser/browser.h"
#include "browser/itemcommands.h"
#include "tests/browser/panefixture.h"
#include "tests/support/registry.h"

#include <QClipboard>
#include <QDBusConnection>
#include <QGuiApplication>
#include <QMenu>
#include <QMimeData>
#include <QTest>

namespace fs = std::filesystem;
using namespace luma;
using luma::test::PaneFixture;

namespace {

/// The desktop's file manager.
class FileManager final : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.FileManager1")

public:
    QStringList shown;

public slots:
    Q_SCRIPTABLE void ShowItems(const QStringList& addresses, const QString& /*startupId*/)
    {
        shown = addresses;
    }
};

fs::path programs()
{
    return fs::path(qgetenv("XDG_DATA_HOME").toStdString()) / "applications";
}

/// Installs a program that writes the first file it gets into `output`.
void installProgram(const std::string& name, const fs::path& output)
{
    fs::create_directories(programs());
    QVERIFY(writeFile(programs() / (name + ".desktop"), "[Desktop Entry]\nType=Application\nName=" + name +
                                                            " & Co\nExec=sh -c 'echo \"$1\" >\"$0\"' \"" +
                                                            output.string() + "\" %U\n"));
}

} // namespace

class tst_itemcommands final : public QObject
{
    Q_OBJECT

    std::unique_ptr<PaneFixture> m_site;

    void select(const Browser::Path& path)
    {
        m_site->pane->doConnect();
        QTRY_VERIFY(m_site->pane->rootNode());
        m_site->pane->browser().setPath(path);
    }
    [[nodiscard]] ItemCommands& commands() const { return m_site->pane->itemCommands(); }
    [[nodiscard]] QString read(const char* file) const
    {
        const auto bytes = readFile(m_site->at(file));
        return bytes ? QString::fromStdString(*bytes) : QString();
    }

private slots:
    void init() { m_site = std::make_unique<PaneFixture>(); }
    void cleanup() { m_site.reset(); }

    void relativeLink_isAnAddress_data()
    {
        QTest::addColumn<QByteArray>("name");
        QTest::addColumn<QByteArray>("link");
        QTest::newRow("file") << QByteArray("css/main.css") << QByteArray("css/main.css");
        QTest::newRow("folder") << QByteArray("css") << QByteArray("css/");
        QTest::newRow("escaped") << QByteArray("100% \"a&b\"?#.html")
                                 << QByteArray("100%25%20%22a%26b%22%3F%23.html");
        QTest::newRow("no scheme") << QByteArray("a:b.html") << QByteArray("./a:b.html");
        QTest::newRow("bytes") << QByteArray("\xff\xc3\xa9") << QByteArray("%FF%C3%A9");
    }
    void relativeLink_isAnAddress()
    {
        QFETCH(QByteArray, name);
        QFETCH(QByteArray, link);
        if (!fs::exists(m_site->at(name.constData())))
            m_site->put(name.constData());
        const fs::path item = m_site->at(name.constData());
        QCOMPARE(QByteArray::fromStdString(
                     relativeLink(item, m_site->at("").parent_path(), fs::is_directory(item))),
                 link);
    }

    void pathAndLink_areCopied()
    {
        select({"css", "main.css"});
        commands().copyPath();
        QCOMPARE(QGuiApplication::clipboard()->text(), QString::fromStdString(m_site->at("css/main.css")));
        commands().copyRelativeLink();
        QCOMPARE(QGuiApplication::clipboard()->text(), "css/main.css");
        m_site->pane->disconnectPane();
        commands().copyPath();
        QCOMPARE(QGuiApplication::clipboard()->text(), "css/main.css");
    }

    void files_areCopiedAndMovedByTheClipboard()
    {
        select({"index.html"});
        const auto place = [this](const char* file) { return "file://" + m_site->at(file).native(); };
        commands().copyFiles();
        const QMimeData& clipboard = *QGuiApplication::clipboard()->mimeData();
        QCOMPARE(clipboard.data("x-special/gnome-copied-files").toStdString(),
                 "copy\n" + place("index.html"));
        QCOMPARE(clipboard.data("text/uri-list").toStdString(), place("index.html") + "\r\n");
        m_site->pane->browser().setPath({"css", "main.css"});
        m_site->pane->pasteFiles();
        QTRY_VERIFY(fs::exists(m_site->at("css/index.html")) && !m_site->report.isRunning());
        QVERIFY(fs::exists(m_site->at("index.html")));

        m_site->pane->browser().setPath({"css", "print.css"});
        commands().cutFiles();
        m_site->pane->browser().setPath({"index.html"});
        m_site->pane->pasteFiles();
        QTRY_VERIFY(fs::exists(m_site->at("print.css")) && !m_site->report.isRunning());
        QVERIFY(!fs::exists(m_site->at("css/print.css")));
        // What was cut moves once.
        m_site->pane->pasteFiles();
        QCOMPARE(m_site->text("fullPathToSelectedItem"), "There are no files on the clipboard.");
    }

    void filesOfAFileManager_areCopied()
    {
        test::Site outside;
        outside.put("a b.html");
        auto* const files = new QMimeData;
        const QByteArray uri = QByteArray::fromStdString("file://" + outside.root().native() + "/a%20b.html");
        files->setData("text/uri-list", uri + "\r\n");
        files->setData("x-special/gnome-copied-files", "cut\n" + uri);
        QGuiApplication::clipboard()->setMimeData(files);
        select({"index.html"});
        m_site->pane->pasteFiles();
        QTRY_VERIFY(fs::exists(m_site->at("a b.html")) && !m_site->report.isRunning());
        // It is not the site's, and a move from outside has no way back.
        QVERIFY(fs::exists(outside.at("a b.html")));
    }

    void otherPrograms_getTheFiles()
    {
        m_site->put("a b.html");
        installProgram("writer", m_site->at("written"));
        installProgram("viewer", m_site->at("viewed"));
        QVERIFY(writeFile(programs() / "mimeapps.list", "[Default Applications]\ntext/html=writer.desktop\n"
                                                        "x-scheme-handler/http=viewer.desktop\n"));
        // The desktop gives a local file as an address or as a path.
        const auto isThePage = [this](const QString& text) {
            const QString folder = QString::fromStdString(m_site->at("").string());
            return text == folder + "a b.html\n" || text == "file://" + folder + "a%20b.html\n";
        };
        select({"a b.html"});
        auto* menu = m_site->find<QMenu>("openWithMenu");
        emit menu->aboutToShow();
        // Others may be installed.
        QCOMPARE(menu->actions().first()->text(), "writer && Co");
        menu->actions().first()->trigger();
        QTRY_VERIFY2(isThePage(read("written")), qPrintable(read("written")));
        commands().openInBrowser();
        QTRY_VERIFY2(isThePage(read("viewed")), qPrintable(read("viewed")));
        // Removed since the menu was shown.
        fs::remove(programs() / "writer.desktop");
        QTRY_VERIFY((menu->actions().first()->trigger(),
                     m_site->text("fullPathToSelectedItem") == "The program is no longer installed"));
    }

    void fileManager_showsTheItems()
    {
        FileManager manager;
        QDBusConnection bus = QDBusConnection::connectToBus(QDBusConnection::SessionBus, "file manager");
        QVERIFY(bus.registerObject("/org/freedesktop/FileManager1", &manager,
                                   QDBusConnection::ExportScriptableSlots));
        QVERIFY(bus.registerService("org.freedesktop.FileManager1"));
        select({"css", "print.css"});
        commands().showInFileManager();
        QTRY_COMPARE(manager.shown,
                     QStringList(QString::fromStdString("file://" + m_site->at("css/print.css").string())));
        QDBusConnection::disconnectFromBus("file manager");
    }

    void properties_ofAFileAndOfAFolder()
    {
        select({"index.html"});
        commands().showProperties();
        QCOMPARE(m_site->text("propertyName"), "index.html");
        QTRY_VERIFY(m_site->find<QLabel>("propertySize"));
        QCOMPARE(m_site->text("propertySize"), "0 bytes (0 bytes)");
        QVERIFY(m_site->text("propertyMode").startsWith("rw-"));
        test::saveScreenshots(*m_site->find<QWidget>("itemProperties"), "properties-file");
        delete m_site->find<QWidget>("itemProperties");
        m_site->pane->browser().setPath({"css"});
        commands().showProperties();
        QTRY_VERIFY(m_site->find<QLabel>("propertyContents"));
        QTRY_COMPARE(m_site->text("propertyContents"), "2 files, 0 folders, 0 bytes");
        test::saveScreenshots(*m_site->find<QWidget>("itemProperties"), "properties-folder");
    }
};

LUMA_TEST(tst_itemcommands)
#include "tst_itemcommands.moc"
