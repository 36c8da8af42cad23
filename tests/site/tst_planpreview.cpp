// SPDX-License-Identifier: GPL-3.0-or-later
#include "browser/linkplanmodel.h"
#include "browser/movenotices.h"
#include "tests/site/sitewindow.h"
#include "tests/support/obstacle.h"
#include "tests/support/registry.h"
#include "tests/support/rows.h"
#include "tests/support/screenshot.h"

#include <QAbstractItemModelTester>
#include <QAction>
#include <QCheckBox>
#include <QDialog>
#include <QFileDialog>
#include <QFrame>
#include <QLabel>
#include <QPushButton>
#include <QThreadPool>
#include <QTreeView>

namespace fs = std::filesystem;
using namespace luma;
using luma::test::SiteWindow;
using luma::test::TwoFolders;

/// Plans that the user looks at in the site's window before they are carried out.
class tst_planpreview final : public QObject
{
    Q_OBJECT

private:
    std::optional<TwoFolders> folders;
    std::optional<SiteWindow> site;
    std::optional<int> askAbove;

    void rename(const char* name, const char* newName) const
    {
        FileSystemModel& model = site->source().browser().model();
        QVERIFY(model.setData(SiteWindow::item(site->source(), 0, name), newName, Qt::EditRole));
    }

    [[nodiscard]] QDialog* preview() const { return site->window->findChild<QDialog*>("planPreview"); }

    [[nodiscard]] QStringList rows() const
    {
        const QAbstractItemModel& model = *preview()->findChild<QTreeView*>("planTable")->model();
        QStringList rows;
        for (int row = 0; row < model.rowCount(); ++row) {
            QStringList cells;
            for (int column = 0; column < model.columnCount(); ++column)
                cells.append(model.index(row, column).data().toString());
            rows.append(cells.join('|'));
        }
        return rows;
    }

private slots:
    void init()
    {
        folders.emplace();
        folders->put("sending/index.html",
                     "<a href=x.html>x</a>\n<a href=x.html#t>t</a><a href=gone.html>g</a>");
        folders->put("sending/a.html", "<img src=/x.html><a href=gone.html>");
        folders->put("sending/x.html", "<p id=t>");
        folders->put("sending/e/p.html", "<p>page");
        folders->put("sending/b.html", "<a href=e/p.html>");
        folders->put("receiving/o.html", "");
        askAbove = 1;
        site.emplace(
            std::make_shared<SiteRecord>(
                QVariantMap{{"sourceDict", SiteWindow::localFolder(folders->sending())},
                            {"destinationDict", SiteWindow::localFolder(folders->receiving())}}),
            HaldenDoc::Services{.remoteLogin = {},
                                .runProgram = {},
                                .mounter = std::make_shared<test::UnavailableMounter>(),
                                .reportChoices = [this] { return ReportChoices{.askAbove = askAbove}; },
                                .stopAsking = [this] { askAbove.reset(); }});
        QTRY_VERIFY(site->isConnected());
    }
    void cleanup()
    {
        site.reset();
        folders.reset();
    }

    void rename_isShownFirst_andCancelledOrCarriedOut()
    {
        fs::create_hard_link(folders->at("sending/a.html"), folders->at("receiving/a.html"));
        fs::create_symlink("x.html", folders->at("sending/first"));
        const test::Files before = folders->contents();
        rename("x.html", "y.html");
        QTRY_VERIFY(preview());
        const QAbstractItemModelTester tester(preview()->findChild<QTreeView*>("planTable")->model());
        QCOMPARE(rows(),
                 (QStringList{
                     "a.html|||No longer the same file as a name elsewhere, because their links will differ",
                     "a.html|1|/x.html|/y.html", "index.html|1|x.html|y.html",
                     "index.html|2|x.html#t|y.html#t", "first||x.html|y.html"}));
        preview()->findChild<QTreeView*>("planTable")->sortByColumn(LinkPlanModel::Line, Qt::DescendingOrder);
        QCOMPARE(rows().constFirst(), "index.html|2|x.html#t|y.html#t");
        test::saveScreenshots(*preview(), "plan-preview");
        QVERIFY2(folders->contents() == before, "nothing changes before the user has agreed");
        QCOMPARE(site->status(), "Nothing is changed yet: the changes are shown first.");
        preview()->reject();
        QTRY_VERIFY(site->isDone());
        QCOMPARE(folders->contents(), before);
        QTRY_VERIFY(SiteWindow::item(site->source(), 0, "x.html").isValid());
        site->find<QDialog>("progressPanel").accept();

        rename("x.html", "y.html");
        QTRY_VERIFY(preview());
        preview()->findChild<QCheckBox*>("planAsks")->setChecked(false);
        preview()->accept();
        QTRY_VERIFY(site->isDone());
        QCOMPARE(folders->bytesOf("sending/a.html"), "<img src=/y.html><a href=gone.html>");
        QVERIFY(!askAbove);
        site->find<QDialog>("progressPanel").accept();
        site->find<QAction>("undoMoveAction").trigger();
        QTRY_COMPARE(folders->contents(), before);
    }

    void pageThatCannotBeWritten_isShownAndAskedFor()
    {
        const test::Files before = folders->contents();
        const test::Obstacle obstacle(*folders, "sending/a.html", test::Obstacle::forAll());
        if (!obstacle.isThere())
            QSKIP("no page can be made immutable here");
        askAbove.reset();
        rename("x.html", "y.html");
        QTRY_VERIFY(preview());
        QVERIFY2(rows().constFirst().startsWith("a.html|||Stays as it is: "),
                 qPrintable(rows().constFirst()));
        QVERIFY(preview()->findChild<QLabel*>("planWarningText")->text().contains("a.html"));
        QVERIFY(!preview()->findChild<QCheckBox*>("planAsks")->isVisible());
        const auto* const accept = preview()->findChild<QPushButton*>("planAcceptButton");
        QCOMPARE(accept->text(), "&Rename Anyway");
        test::saveScreenshots(*preview(), "plan-preview-warning");
        QTest::keyClick(preview(), Qt::Key_Return);
        QTRY_VERIFY(site->isDone());
        QCOMPARE(folders->contents(), before);
        site->find<QDialog>("progressPanel").accept();

        rename("x.html", "y.html");
        QTRY_VERIFY(preview());
        preview()->accept();
        QTRY_VERIFY(site->isDone());
        QCOMPARE(folders->bytesOf("sending/a.html"), before.at("sending/a.html"));
        QVERIFY(folders->bytesOf("sending/index.html").starts_with("<a href=y.html>"));
    }

    void windowClosedMeanwhile_leavesEverything()
    {
        const test::Files before = folders->contents();
        rename("x.html", "y.html");
        QTRY_VERIFY(preview());
        site.reset();
        QCOMPARE(folders->contents(), before);
    }

    void outsideMove_isOffered_data()
    {
        const test::Rows<QStringList, bool, QString, QStringList> row("moves", "isCopied", "text", "rows");
        const QStringList ofFile = {"a.html|1|/x.html|/d/y.html", "index.html|1|x.html|d/y.html",
                                    "index.html|2|x.html#t|d/y.html#t"};
        const QString ofFolder = "b.html|1|e/p.html|d/f/p.html";
        row("file", QStringList{"x.html>d/y.html"}, false, "x.html to d/y.html", ofFile);
        row("copied with its time, gone then", QStringList{"x.html>d/x.html"}, true, "x.html to d/x.html",
            QStringList(ofFile).replaceInStrings("d/y.html", "d/x.html"));
        row("folder", QStringList{"e>d/f"}, false, "e to d/f", QStringList{ofFolder});
        row("several", QStringList{"x.html>d/y.html", "e>d/f"}, false, "2 items",
            QStringList{ofFile[0], ofFolder, ofFile[1], ofFile[2]});
    }
    void outsideMove_isOffered()
    {
        QFETCH(QStringList, moves);
        QFETCH(bool, isCopied);
        QFETCH(QString, text);
        QFETCH(QStringList, rows);
        folders->makeFolder("sending/d");
        // The watcher runs and the pane knows the files.
        int attempt = 0;
        QTRY_VERIFY((folders->put("sending/d/seen", std::to_string(++attempt)),
                     SiteWindow::item(site->source(), 0, "d").isValid()));
        QTRY_VERIFY2(QThreadPool::globalInstance()->activeThreadCount() == 0, "jobs are running");
        const test::Files before = folders->contents();
        for (const QString& move : moves) {
            const fs::path from = folders->sending() / move.section('>', 0, 0).toStdString();
            const fs::path to = folders->sending() / move.section('>', 1).toStdString();
            if (isCopied) {
                const auto time = fs::last_write_time(from);
                QVERIFY(fs::copy_file(from, to));
                fs::last_write_time(to, time);
                QVERIFY(fs::remove(from));
            } else {
                fs::rename(from, to);
            }
        }
        auto& bar = site->find<QFrame>("outsideMoveBar");
        auto& label = site->find<QLabel>("outsideMoveLabel");
        QTRY_VERIFY2(bar.isVisible() && label.text().contains(text), qPrintable(label.text()));
        test::saveScreenshots(*site->window, "outside-move");
        site->click("updateLinksButton");
        QTRY_VERIFY(preview());
        QVERIFY(!bar.isVisible());
        QCOMPARE(this->rows(), rows);
        preview()->accept();
        QTRY_VERIFY(site->isDone());
        test::Files after = folders->contents();
        for (const char* const page : {"sending/a.html", "sending/b.html", "sending/index.html"})
            QCOMPARE(after.at(page) != before.at(page),
                     rows.filter(QString(page).section('/', 1)).size() > 0);
        site->find<QDialog>("progressPanel").accept();
        // Only what we have done is taken back.
        site->find<QAction>("undoMoveAction").trigger();
        for (const char* const page : {"sending/a.html", "sending/b.html", "sending/index.html"})
            QTRY_COMPARE(folders->bytesOf(page), before.at(page));
        for (const QString& move : moves)
            QVERIFY(fs::exists(folders->sending() / move.section('>', 1).toStdString()));
    }

    void missingTarget_isReplacedEverywhere()
    {
        const test::Files before = folders->contents();
        site->source().startFindMissingLinks();
        auto& view = site->find<QTreeView>("linkReportView");
        QTRY_COMPARE(view.model()->rowCount(), 2);
        view.setCurrentIndex(view.model()->index(0, 0));
        QTRY_VERIFY(site->isEnabled("linkReportReplaceButton"));
        test::saveScreenshots(site->find<QDialog>("linkReportPanel"), "missing-replace");
        site->click("linkReportReplaceButton");
        auto* const files = site->window->findChild<QFileDialog*>("replaceTargetDialog");
        QVERIFY(files);
        emit files->fileSelected(QString::fromStdString((folders->sending() / "x.html").native()));
        files->reject();
        QTRY_VERIFY(preview());
        QCOMPARE(rows(), (QStringList{"a.html|1|gone.html|x.html", "index.html|2|gone.html|x.html"}));
        QVERIFY(!preview()->findChild<QCheckBox*>("planAsks")->isVisible());
        preview()->accept();
        QTRY_COMPARE(folders->bytesOf("sending/a.html"), "<img src=/x.html><a href=x.html>");
        QTRY_COMPARE(view.model()->rowCount(), 0);
        QTRY_VERIFY(site->isDone());
        site->find<QDialog>("progressPanel").accept();
        site->find<QAction>("undoMoveAction").trigger();
        QTRY_COMPARE(folders->contents(), before);
    }
};

LUMA_TEST(tst_planpreview)
#include "tst_planpreview.moc"
