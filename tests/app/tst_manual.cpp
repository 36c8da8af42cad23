// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/manualwindow.h"
#include "app/program.h"
#include "app/sitelistwindow.h"
#include "base/resources.h"
#include "site/haldendoc.h"
#include "tests/support/registry.h"
#include "tests/support/screenshot.h"
#include "tests/support/shownwindow.h"

#include <QDir>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>
#include <QTextBrowser>

using namespace luma;

/// The manual, its window and the Help menus that open it.
class tst_manual final : public QObject
{
    Q_OBJECT

    static QDir folder() { return QDir(QFile::decodeName((resourceFolder() / "manual").c_str())); }

    static QMenu* helpMenuOf(const QMainWindow& window)
    {
        return window.menuBar()->findChild<QMenu*>("helpMenu");
    }

private slots:
    void chapters_leadToEachOther()
    {
        static const QRegularExpression link(R"(\]\(([^):]+)\))");
        QSet<QString> reached = {"index.md"};
        const QStringList names = folder().entryList({"*.md"}, QDir::Files);
        QVERIFY(names.size() > 5);
        for (const QString& name : names) {
            QFile file(folder().filePath(name));
            QVERIFY(file.open(QFile::ReadOnly));
            for (auto match = link.globalMatch(QString::fromUtf8(file.readAll())); match.hasNext();) {
                const QString target = match.next().captured(1);
                QVERIFY2(QFile::exists(folder().filePath(target)), qPrintable(name + ": " + target));
                reached += target;
            }
        }
        for (const QString& name : names)
            QVERIFY2(reached.contains(name), qPrintable(name));
    }

    void search_goesThroughAllChapters()
    {
        auto* const window = new ManualWindow;
        const QPointer<ManualWindow> guard(window);
        window->open("index");
        window->show();
        QVERIFY(QTest::qWaitForWindowExposed(window));
        test::saveScreenshots(*window, "manual");
        auto* const text = window->findChild<QTextBrowser*>("manualText");
        auto* const field = window->findChild<QLineEdit*>("manualSearch");
        QVERIFY(text->toPlainText().contains("Publishing"));
        text->setSource(text->source().resolved(QUrl("publishing.md"))); // as a click on the link does
        QVERIFY(text->toPlainText().startsWith("Publishing\n"));
        test::saveScreenshots(*window, "manual-publishing");
        field->setText("yet not anywhere at all");
        QTest::keyClick(field, Qt::Key_Return);
        const auto* notFound = window->findChild<QLabel*>("manualNotFound");
        QCOMPARE(notFound->text(), "Not found");
        QVERIFY(text->source().path().endsWith("/publishing.md"));
        field->setText("php-cli");
        QCOMPARE(notFound->text(), QString());
        QTest::keyClick(field, Qt::Key_Return);
        QVERIFY(text->source().path().endsWith("/trouble.md"));
        QCOMPARE(text->textCursor().selectedText(), "php-cli");
        window->close();
        QTRY_VERIFY(!guard);
    }

    void everyWindow_hasTheHelpMenu()
    {
        QTemporaryDir home;
        QDir(home.path()).mkpath("a");
        QDir(home.path()).mkpath("b");
        Program program(home.filePath("luma.conf"), [](const auto&) { return std::string(); });
        QVERIFY(program.launch(
            readCommandLine({(home.path() + "/a").toStdString(), (home.path() + "/b").toStdString()})));
        QMainWindow* const site = test::shownWindow<HaldenDoc>();
        QVERIFY(site);
        for (QMainWindow* window : {site, static_cast<QMainWindow*>(&program.delegate().siteListWindow())}) {
            QMenu* const menu = helpMenuOf(*window);
            QVERIFY(menu);
            for (const char* const name : {"manualAction", "keysAction", "aboutQtAction"})
                QVERIFY2(menu->findChild<QAction*>(name), name);
        }
        helpMenuOf(*site)->findChild<QAction*>("aboutAction")->trigger();
        QTRY_VERIFY(site->findChild<QMessageBox*>("aboutSheet"));
        site->findChild<QMessageBox*>("aboutSheet")->close();
        helpMenuOf(*site)->findChild<QAction*>("keysAction")->trigger();
        QTRY_VERIFY(test::shownWindow<ManualWindow>());
        QVERIFY(test::shownWindow<ManualWindow>()
                    ->findChild<QTextBrowser*>("manualText")
                    ->toPlainText()
                    .contains("F1"));
        test::shownWindow<ManualWindow>()->close();
        site->close();
        program.terminate();
    }
};

LUMA_TEST(tst_manual)
#include "tst_manual.moc"
