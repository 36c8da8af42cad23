// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/program.h"
#include "app/sitelistwindow.h"
#include "base/files.h"
#include "base/statefolder.h"
#include "browser/browser.h"
#include "browser/browsercontroller.h"
#include "browser/endpoint.h"
#include "desktop/windowregistry.h"
#include "editor/htmldocument.h"
#include "site/haldendoc.h"
#include "tests/support/registry.h"
#include "tests/support/screenshot.h"
#include "tests/support/shownwindow.h"

#include <QDialog>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

using namespace luma;

class tst_program final : public QObject
{
    Q_OBJECT

    QTemporaryDir m_folder;

    // Without a shell, which would end the folder watchers of other programs.
    std::unique_ptr<Program> launched() const
    {
        return std::make_unique<Program>(m_folder.filePath(QStringLiteral("luma.conf")),
                                         [](const std::vector<std::string>&) { return std::string(); });
    }

private slots:
    void controlW_closesPanelsAndWindows()
    {
        const auto program = launched();
        QVERIFY(program->launch({}));
        SiteListWindow& list = program->delegate().siteListWindow();
        QDialog panel(&list);
        QLineEdit field(&panel);
        panel.open();
        QVERIFY(QTest::qWaitForWindowActive(&panel));
        QTest::keyClick(&field, Qt::Key_W, Qt::ControlModifier);
        QVERIFY(!panel.isVisible());
        QVERIFY(list.isVisible());
        list.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&list));
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_W, Qt::ControlModifier);
        QVERIFY(!list.isVisible());
    }

    void unsavedPages_areOfferedAtTheStart()
    {
        QFile page(m_folder.filePath("page.html"));
        QVERIFY(page.open(QFile::WriteOnly) && page.write("<!DOCTYPE html><title>T</title><p>old\n") > 0);
        page.close();
        QVERIFY(makePrivateFolder(stateFolder() / "unsaved"));
        const std::string source = "<!DOCTYPE html><title>T</title><p>new\n";
        const std::string path = page.fileName().toStdString();
        QVERIFY(writeFile(stateFolder() / "unsaved/1.page", path + '\0' + source, 0600));
        QVERIFY(writeFile(stateFolder() / "unsaved/2.page", "damaged", 0600));
        const auto program = launched();
        QVERIFY(program->launch({}));
        auto* const box = test::shownWindow<QMessageBox>("unsavedPagesBox");
        QVERIFY(box);
        QCOMPARE(box->informativeText(), page.fileName());
        test::saveScreenshots(*box, "unsaved-pages");
        for (QAbstractButton* button : box->buttons()) {
            if (button->text() == "Open")
                button->click();
        }
        auto* const window = qobject_cast<HTMLDocument*>(program->documents().windowOf(path));
        QVERIFY(window);
        QVERIFY(window->getHTML("OutlineView").contains("<p>new"));
        window->undoStack()->setClean();
        window->close();
    }

    void publishedPage_isListedInItsSitesWindow()
    {
        const std::string folder = m_folder.path().toStdString();
        for (const char* name : {"a", "b"})
            QVERIFY(QDir(m_folder.path()).mkpath(name));
        QFile page(m_folder.filePath("a/p.html"));
        QVERIFY(page.open(QIODevice::WriteOnly) && page.write("<p>one") > 0 && page.flush());
        const auto program = launched();
        QVERIFY(program->launch(readCommandLine({folder + "/a", folder + "/b"})));
        QVERIFY(program->launch(readCommandLine({folder + "/a/p.html"})));
        auto* const window = qobject_cast<HTMLDocument*>(program->documents().windowOf(folder + "/a/p.html"));
        QVERIFY(window);
        emit window->publishRequested(folder + "/a/p.html");
        const QLabel* count = nullptr;
        for (QWidget* open : WindowRegistry::instance().windows()) {
            if (qobject_cast<HaldenDoc*>(open))
                count = open->findChild<QLabel*>("syncCount");
        }
        QVERIFY(count);
        QTRY_VERIFY2(count->text().startsWith("1 of 1 selected"), qPrintable(count->text()));
        for (QWidget* open : WindowRegistry::instance().windows())
            open->close();
        QTRY_VERIFY(WindowRegistry::instance().windows().size() <= 1); // the list's
    }

    void fileThatIsNoPage_isShownInItsSite()
    {
        for (const char* name : {"a/css", "b", "c"})
            QVERIFY(QDir(m_folder.path()).mkpath(name));
        QFile sheet(m_folder.filePath("a/css/main.css"));
        QVERIFY(sheet.open(QIODevice::WriteOnly));
        const auto program = launched();
        SiteList& sites = program->delegate().sites();
        const auto side = [this](const char* name) {
            return QVariantMap{{endpoint::protocol, QString(endpoint::fileProtocol)},
                               {endpoint::path, m_folder.filePath(name)},
                               {endpoint::autoconnect, 1}};
        };
        sites.add({{"siteID", "mine"}, {"sourceDict", side("a")}, {"destinationDict", side("b")}});
        QVERIFY(program->launch(readCommandLine({sheet.fileName().toStdString()})));
        QPointer<HaldenDoc> window = test::shownWindow<HaldenDoc>();
        QVERIFY(window);
        const Browser& browser = window->sourceBrowserController().browser();
        QTRY_COMPARE(browser.path(), (Browser::Path{"css", "main.css"}));
        // A folder, in the window that is open.
        QVERIFY(program->launch(readCommandLine({m_folder.filePath("a/css/").toStdString()})));
        QTRY_COMPARE(browser.path(), (Browser::Path{"css"}));
        QCOMPARE(test::shownWindow<HaldenDoc>(), window);
        QVERIFY(program->launch(readCommandLine({m_folder.filePath("c").toStdString()})));
        auto* const box = program->delegate().siteListWindow().findChild<QMessageBox*>("noSiteBox");
        QVERIFY(box);
        QVERIFY(box->text().startsWith(m_folder.filePath("c")));
        test::saveScreenshots(*box, "no-site");
        box->close();
        window->close();
        QTRY_VERIFY(!window);
    }

    void listOfSites_isOfferedForImport()
    {
        const auto program = launched();
        SiteList& sites = program->delegate().sites();
        sites.add({{"siteID", "<b>mine"}});
        const QString list = m_folder.filePath("all sites.lumasites");
        QVERIFY(program->delegate().exportTo(list));
        const int count = sites.rowCount();
        const auto offered = [&](const char* button) {
            QVERIFY(program->launch(readCommandLine({list.toStdString()})));
            auto* const box = program->delegate().siteListWindow().findChild<QMessageBox*>("importSheet");
            QVERIFY(box && box->isVisible());
            QVERIFY(box->text().contains("all sites.lumasites") &&
                    box->informativeText().contains("<b>mine"));
            test::saveScreenshots(*box, "import-sites");
            for (QAbstractButton* each : box->buttons()) {
                if (each->text() == button)
                    each->click();
            }
            QTRY_VERIFY(!program->delegate().siteListWindow().findChild<QMessageBox*>("importSheet"));
        };
        offered("Cancel");
        QCOMPARE(sites.rowCount(), count);
        offered("Import");
        QCOMPARE(sites.rowCount(), 2 * count);
        QVERIFY(QFile::resize(list, 10));
        QVERIFY(program->launch(readCommandLine({list.toStdString()})));
        auto* const refusal = program->delegate().siteListWindow().findChild<QMessageBox*>("sitesFileSheet");
        QVERIFY(refusal && refusal->informativeText().contains("not a list of sites"));
        refusal->close();
    }

    void editMenu_actsOnTheFocus()
    {
        const auto program = launched();
        QVERIFY(program->launch({}));
        SiteListWindow& list = program->delegate().siteListWindow();
        QVERIFY(QTest::qWaitForWindowActive(&list));
        auto* const field = list.findChild<QLineEdit*>(QStringLiteral("searchField"));
        auto* const menu = list.findChild<QMenu*>(QStringLiteral("editMenu"));
        const auto action = [menu](const char* name) {
            return menu->findChild<QAction*>(QLatin1String(name));
        };
        field->setFocus();
        field->setText(QStringLiteral("some words"));
        action("selectAllAction")->trigger();
        action("cutAction")->trigger();
        QCOMPARE(field->text(), QString());
        action("pasteAction")->trigger();
        QCOMPARE(field->text(), QStringLiteral("some words"));
        list.findChild<QWidget*>(QStringLiteral("addButton"))->setFocus();
        action("cutAction")->trigger();
        emit menu->aboutToShow();
        QVERIFY(!action("cutAction")->isEnabled() && !action("selectAllAction")->isEnabled());
        emit menu->aboutToHide();
        QVERIFY(action("cutAction")->isEnabled());
    }

    // The last test: the program has quit.
    void controlQ_quitsFromASheet()
    {
        const auto program = launched();
        QVERIFY(program->launch({}));
        QDialog sheet(&program->delegate().siteListWindow());
        QLineEdit field(&sheet);
        sheet.open();
        QVERIFY(QTest::qWaitForWindowActive(&sheet));
        QTimer::singleShot(0, &field, [&field] { QTest::keyClick(&field, Qt::Key_Q, Qt::ControlModifier); });
        QTimer::singleShot(20'000, qApp, [] { QCoreApplication::exit(1); });
        QCOMPARE(QApplication::exec(), 0);
    }
};

LUMA_TEST(tst_program)
#include "tst_program.moc"
