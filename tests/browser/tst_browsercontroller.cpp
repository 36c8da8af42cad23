// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/mainhop.h"
#include "browser/browser.h"
#include "mounts/volumemounter.h"
#include "tests/browser/panefixture.h"
#include "tests/support/registry.h"

#include <QAbstractItemModel>
#include <QApplication>
#include <QLineEdit>
#include <QListView>
#include <QMenu>
#include <QMessageBox>
#include <QProgressBar>
#include <QPushButton>
#include <QSemaphore>
#include <QSignalSpy>
#include <QTest>
#include <QThreadPool>

namespace fs = std::filesystem;
using namespace luma;
using luma::test::PaneFixture;

namespace {

/// A server that answers when the test lets it.
class SlowMounter final : public VolumeMounter
{
public:
    QSemaphore answer;
    std::optional<fs::path> mountPoint;
    std::atomic<int> mounts = 0; // begun
    std::atomic<int> unmounts = 0;

    Result<fs::path> mount(const QString& /*url*/, const QString& /*user*/, const QString& /*pw*/,
                           const std::function<bool()>& /*isWanted*/) override
    {
        ++mounts;
        answer.acquire();
        return mountPoint ? Result<fs::path>(*mountPoint) : Error{"no answer"};
    }
    std::optional<fs::path> existingMount(const QString& /*url*/) override { return {}; }
    void unmount(const fs::path& /*mountPoint*/) override { ++unmounts; }
};

} // namespace

class tst_browsercontroller final : public QObject
{
    Q_OBJECT

private:
    static void click(const PaneFixture& site, const char* list, const char* name)
    {
        auto* view = site.find<QListView>(list);
        const QModelIndex item = site.pane->browser().model().childNamed(view->rootIndex(), name);
        QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, view->visualRect(item).center());
    }
    static void connectPane(const PaneFixture& site)
    {
        site.pane->doConnect();
        QTRY_VERIFY(site.pane->rootNode());
        QVERIFY(QTest::qWaitForWindowExposed(&const_cast<QMainWindow&>(site.window)));
    }
    static void answerAlert(const PaneFixture& site, const char* button)
    {
        auto* alert = site.find<QMessageBox>("deleteAlert");
        QVERIFY(alert);
        QCOMPARE(alert->text(), QStringLiteral("Warning"));
        QVERIFY(alert->informativeText().startsWith("Are you sure you want to delete this item(s)?"));
        QCOMPARE(alert->buttons().first()->text(), QStringLiteral("Delete"));
        for (QAbstractButton* choice : alert->buttons()) {
            if (choice->text() == QLatin1String(button))
                choice->click();
        }
    }
    static QString selectedName(const PaneFixture& site)
    {
        const QModelIndexList items = site.pane->browser().selectedItems();
        return items.size() == 1 ? items.first().data().toString() : QString();
    }

private slots:
    void connection_showsTheFolderAndDisconnectingEmptiesIt()
    {
        PaneFixture site;
        auto* button = site.find<QPushButton>("connectButton");
        QCOMPARE(button->text(), QStringLiteral("Connect"));
        connectPane(site);
        QCOMPARE(site.text("connectStateField"),
                 QString::fromStdString("file://" + site.folder.root().native()));
        QCOMPARE(site.pane->mountPath(), site.at("").parent_path());
        QCOMPARE(button->text(), QStringLiteral("Disconnect"));
        QCOMPARE(site.find<QListView>("browserList0")->model()->rowCount(), 3);
        click(site, "browserList0", "css");
        click(site, "browserList1", "main.css");
        QCOMPARE(site.text("fullPathToSelectedItem"), QStringLiteral("Relative Path: css/main.css"));
        QTest::mouseClick(button, Qt::LeftButton);
        QVERIFY(!site.pane->rootNode());
        QCOMPARE(site.text("connectStateField") + site.text("fullPathToSelectedItem"), QString());
        QCOMPARE(button->text(), QStringLiteral("Connect"));
    }

    void withoutAutoconnectOrFolder_thePaneStaysEmpty()
    {
        PaneFixture site;
        site.endpoint->setValue(endpoint::autoconnect, 0);
        site.pane->doConnect();
        QTRY_COMPARE(QThreadPool::globalInstance()->activeThreadCount(), 0);
        QVERIFY(!site.pane->rootNode());
        QCOMPARE(site.text("connectStateField"), QString());
        site.endpoint->setValue(endpoint::autoconnect, 1);
        site.endpoint->setValue(endpoint::path, QStringLiteral("/nowhere/at/all"));
        site.pane->doConnect();
        QTRY_COMPARE(site.text("connectStateField"),
                     QStringLiteral("There is an error connecting to the Destination Server"));
        QVERIFY(!site.pane->rootNode());
        QVERIFY(!site.find<QProgressBar>("progressIndicator")->isVisible());
        QCOMPARE(site.text("emptyText"), QStringLiteral("/nowhere/at/all: no such folder"));
        site.endpoint->setValue(endpoint::protocol, QStringLiteral("smb://"));
        site.pane->doConnect();
        QTRY_COMPARE(site.text("emptyText"), QStringLiteral("<b>no</b> server"));
        site.pane->disconnectPane();
        QVERIFY(site.text("emptyText").startsWith(QStringLiteral("Not connected.")));
    }

    void duplicate_endsUpSelectedNewOrNotAndSaysWhy()
    {
        PaneFixture site;
        connectPane(site);
        click(site, "browserList0", "css");
        click(site, "browserList1", "main.css");
        for (int i = 0; i < 2; ++i) {
            site.pane->duplicateItem();
            QTRY_COMPARE(selectedName(site), QStringLiteral("main copy.css"));
            click(site, "browserList1", "main.css");
        }
        QVERIFY(!fs::exists(site.at("css/main copy copy.css")));
        site.pane->duplicateItem();
        QTRY_COMPARE(site.text("fullPathToSelectedItem"),
                     QString::fromStdString(site.at("css/main copy.css").string() + ": File exists"));
    }

    void newFolder_isNamedAtOnce()
    {
        PaneFixture site;
        fs::create_directory(site.at("empty"));
        connectPane(site);
        auto* first = site.find<QListView>("browserList0");
        click(site, "browserList0", "empty");
        first->setFocus();
        QTest::keyClick(first, Qt::Key_Right);
        for (const char* name : {"fonts", ""}) {
            site.pane->newFolder();
            QTRY_COMPARE(selectedName(site), QStringLiteral("untitled folder"));
            auto* editor = site.find<QLineEdit>("renameEditor");
            QVERIFY(editor);
            QTRY_COMPARE(editor->selectedText(), QStringLiteral("untitled folder"));
            QTest::keyClicks(editor, name);
            QTest::keyClick(editor, *name ? Qt::Key_Return : Qt::Key_Escape);
            QTRY_VERIFY(!site.find<QLineEdit>("renameEditor"));
        }
        QVERIFY(fs::exists(site.at("empty/fonts")) && fs::exists(site.at("empty/untitled folder")));
        QVERIFY(!site.report.isRunning());
    }

    void undo_takesNewFolderDuplicateAndDeletionBack()
    {
        PaneFixture site;
        QStringList titles;
        std::vector<std::function<void()>> undo;
        connect(site.pane, &BrowserController::undoable, this,
                [&](const QString& title, const std::function<void()>& step) {
                    titles.append(title);
                    undo.push_back(step);
                });
        connectPane(site);
        const std::string before = site.folder.listing();
        click(site, "browserList0", "css");
        click(site, "browserList1", "main.css");
        site.pane->newFolder();
        QTRY_VERIFY(site.find<QLineEdit>("renameEditor"));
        auto* name = site.find<QLineEdit>("renameEditor");
        QTRY_COMPARE(name->selectedText(), QStringLiteral("untitled folder"));
        QTest::keyClicks(name, "fonts");
        QTest::keyClick(name, Qt::Key_Return);
        QTRY_COMPARE(selectedName(site), QStringLiteral("fonts"));
        click(site, "browserList1", "main.css");
        site.pane->duplicateItem();
        QTRY_COMPARE(selectedName(site), QStringLiteral("main copy.css"));
        click(site, "browserList1", "main.css");
        site.pane->deleteSelectedItems();
        answerAlert(site, "Delete");
        QTRY_COMPARE(titles, (QStringList{"New Folder", "Duplicate", "Delete"}));
        QVERIFY(!fs::exists(site.at("css/main.css")));
        undo[2]();
        QTRY_VERIFY(fs::exists(site.at("css/main.css")));
        undo[1]();
        QTRY_VERIFY(!fs::exists(site.at("css/main copy.css")));
        site.put("css/fonts/mine.txt");
        undo[0]();
        QTRY_VERIFY(site.text("fullPathToSelectedItem").contains("not empty"));
        site.pane->browser().refresh();
        QVERIFY(site.text("fullPathToSelectedItem").contains("not empty"));
        click(site, "browserList0", "index.html");
        QCOMPARE(site.text("fullPathToSelectedItem"), "Relative Path: index.html");
        fs::remove_all(site.at("css/fonts"));
        // What was selected is gone; its neighbour is selected.
        site.pane->newFolder();
        QTRY_COMPARE(selectedName(site), QStringLiteral("untitled folder"));
        undo.back()();
        QTRY_COMPARE(selectedName(site), QStringLiteral("index.html"));
        QCOMPARE(site.folder.listing(), before);
    }

    void deletion_asksOnceAndDeletesAllSelected()
    {
        PaneFixture site;
        connectPane(site);
        auto* list = site.find<QListView>("browserList0");
        list->setFocus();
        list->selectAll();
        QTest::keyClick(list, Qt::Key_Delete, Qt::ControlModifier);
        answerAlert(site, "No");
        QVERIFY(fs::exists(site.at("index.html")));
        QTRY_VERIFY(!site.find<QMessageBox>("deleteAlert"));
        QTest::keyClick(list, Qt::Key_Backspace, Qt::ControlModifier);
        answerAlert(site, "Delete");
        QTRY_COMPARE(list->model()->rowCount(), 0);
        QVERIFY(!fs::exists(site.at("index.html")) && !fs::exists(site.at("css")));
        QVERIFY(fs::exists(site.at(".htaccess")));
    }

    void deletion_takesWhatWasSelectedLastAndNamesIt()
    {
        PaneFixture site;
        site.folder.put("p.html", "<a href=css/main.css><a href=css/gone>");
        connectPane(site);
        click(site, "browserList0", "css");
        click(site, "browserList1", "main.css");
        click(site, "browserList0", "css");
        QTest::keyClick(site.find<QListView>("browserList0"), Qt::Key_Delete, Qt::ControlModifier);
        QVERIFY(site.find<QMessageBox>("deleteAlert")->informativeText().contains("To the trash: “css”\n"));
        QTRY_VERIFY(site.find<QMessageBox>("deleteAlert")
                        ->informativeText()
                        .endsWith("\n2 links on 1 page will be missing then."));
        test::saveScreenshots(*site.find<QMessageBox>("deleteAlert"), "delete-item");
        answerAlert(site, "No");
        QTRY_VERIFY(!site.find<QMessageBox>("deleteAlert"));
        QTest::keyClick(site.find<QListView>("browserList0"), Qt::Key_Right);
        site.pane->deleteSelectedItems();
        QVERIFY(
            site.find<QMessageBox>("deleteAlert")->informativeText().contains("To the trash: “main.css”"));
        answerAlert(site, "Delete");
        QTRY_VERIFY(!fs::exists(site.at("css/main.css")));
        QVERIFY(fs::exists(site.at("css/print.css")));
        const fs::path trash = fs::path(qgetenv("XDG_DATA_HOME").toStdString()) / "Trash/files/main.css";
        QVERIFY(fs::exists(trash));
    }

    void afterADeletion_theNextRowIsSelected()
    {
        PaneFixture site;
        connectPane(site);
        click(site, "browserList0", "css");
        click(site, "browserList1", "main.css");
        auto* list = site.find<QListView>("browserList1");
        QTest::keyClick(list, Qt::Key_Delete, Qt::ControlModifier);
        answerAlert(site, "Delete");
        QTRY_COMPARE(selectedName(site), QStringLiteral("print.css"));
        QTRY_VERIFY(!site.find<QMessageBox>("deleteAlert"));
        QTest::keyClick(list, Qt::Key_Delete, Qt::ControlModifier);
        answerAlert(site, "Delete");
        QTRY_VERIFY(fs::is_empty(site.at("css")));
        QTRY_COMPARE(list->model()->rowCount(list->rootIndex()), 0);
        QTRY_VERIFY(!site.find<QMessageBox>("deleteAlert"));
        // The same keys once more never delete the folder.
        QTest::keyClick(list, Qt::Key_Delete, Qt::ControlModifier);
        QVERIFY(!site.find<QMessageBox>("deleteAlert"));
    }

    void reports_nameTheirSide()
    {
        PaneFixture site;
        connectPane(site);
        site.pane->startFindMissingLinks();
        QTRY_COMPARE(site.text("linkReportTitle"),
                     QString::fromStdString("in Source: " + site.pane->mountPath().string()));
        QCOMPARE(site.find<QWidget>("unlinkedItemsPanel")->windowTitle(), "Unlinked items in Source");
        site.pane->stopFindMissingLinks();
    }

    void withoutTrash_deletionAsksOnceMore()
    {
        PaneFixture site;
        connectPane(site);
        const QByteArray data = qgetenv("XDG_DATA_HOME");
        site.put(".data/Trash"); // no folder
        qputenv("XDG_DATA_HOME", QByteArray::fromStdString(site.at(".data").native()));
        click(site, "browserList0", "index.html");
        site.pane->deleteSelectedItems();
        answerAlert(site, "Delete");
        QTRY_VERIFY(site.find<QMessageBox>("removeAlert"));
        qputenv("XDG_DATA_HOME", data);
        auto* question = site.find<QMessageBox>("removeAlert");
        QVERIFY(question->informativeText().startsWith("“index.html” can't be moved to the trash:\n"));
        QVERIFY(fs::exists(site.at("index.html")));
        question->buttons().first()->click();
        QTRY_VERIFY(!fs::exists(site.at("index.html")));
    }

    void folders_openInThePane()
    {
        PaneFixture site;
        fs::create_directory(site.at("letters.pages"));
        site.put("letters.pages/a.html");
        connectPane(site);
        QSignalSpy opened(site.pane, &BrowserController::openRequested);
        auto* list = site.find<QListView>("browserList0");
        for (const char* name : {"css", "letters.pages"}) {
            click(site, "browserList0", name);
            QTest::mouseDClick(list->viewport(), Qt::LeftButton, {},
                               list->visualRect(list->currentIndex()).center());
            QCOMPARE(site.pane->browser().columnCount(), 2);
            QVERIFY(site.find<QListView>("browserList1")->hasFocus());
        }
        QCOMPARE(site.pane->browser().path(), (Browser::Path{"letters.pages", "a.html"}));
        site.pane->browser().refresh();
        QCOMPARE(site.pane->browser().path(), (Browser::Path{"letters.pages", "a.html"}));
        QVERIFY(opened.isEmpty());
    }

    void rename_isFollowedByPathAndPreview()
    {
        PaneFixture site;
        connectPane(site);
        click(site, "browserList0", "index.html");
        auto& model = site.pane->browser().model();
        QVERIFY(model.setData(site.pane->browser().currentItem(), "start.html", Qt::EditRole));
        QCOMPARE(site.text("fullPathToSelectedItem"), "Relative Path: start.html");
        const auto* preview = site.find<QWidget>("previewView");
        QVERIFY(preview->isVisible());
        QCOMPARE(preview->findChild<QLabel*>("label")->text(), "start.html");
        QTRY_VERIFY(!site.report.isRunning());
    }

    void failedReconnect_showsADisconnectedPane()
    {
        PaneFixture site;
        connectPane(site);
        click(site, "browserList0", "index.html");
        site.endpoint->setValue(endpoint::path, "/nowhere/at/all");
        site.pane->doConnect();
        QTRY_COMPARE(site.text("connectStateField"),
                     "There is an error connecting to the Destination Server");
        QVERIFY(!site.pane->rootNode() && site.pane->mountPath().empty());
        QCOMPARE(site.find<QPushButton>("connectButton")->text(), "Connect");
        QCOMPARE(site.text("emptyText"), "/nowhere/at/all: no such folder");
        QCOMPARE(site.text("fullPathToSelectedItem"), QString());
    }

    void menu_deletesTheClickedItemAlone()
    {
        PaneFixture site;
        connectPane(site);
        auto* list = site.find<QListView>("browserList0");
        click(site, "browserList0", "index.html");
        const QPoint place = list->visualRect(list->currentIndex()).center();
        QContextMenuEvent event(QContextMenuEvent::Mouse, place, list->viewport()->mapToGlobal(place));
        QApplication::sendEvent(list->viewport(), &event);
        auto* menu = site.find<QMenu>("contextualMenu");
        QTRY_VERIFY(menu->isVisible());
        test::screenshot(*menu, "context-menu");
        menu->close();
        site.find<QAction>("deleteAction")->trigger();
        answerAlert(site, "Delete");
        QTRY_VERIFY(!fs::exists(site.at("index.html")));
        QTRY_COMPARE(list->model()->rowCount(), 2);
    }

    void changeByAnother_appearsAndThePathStays()
    {
        PaneFixture site;
        connectPane(site);
        click(site, "browserList0", "css");
        click(site, "browserList1", "main.css");
        const QPointer<QListView> css = site.find<QListView>("browserList1");
        // Repeated, for the watcher may not be running yet.
        int attempt = 0;
        QTRY_VERIFY_WITH_TIMEOUT((site.put(("css/new" + std::to_string(++attempt)).c_str()),
                                  css->model()->rowCount(css->rootIndex()) > 2),
                                 20000);
        QCOMPARE(selectedName(site), QStringLiteral("main.css"));
        fs::remove_all(site.folder.root());
        QTRY_VERIFY(!css);
        QTRY_COMPARE(site.find<QListView>("browserList0")->model()->rowCount(), 0);
        QVERIFY(site.pane->rootNode());
    }

    void doubleClickAndReturn_openAndReloadKeepsTheSelection()
    {
        PaneFixture site;
        connectPane(site);
        QSignalSpy opened(site.pane, &BrowserController::openRequested);
        auto* list = site.find<QListView>("browserList0");
        click(site, "browserList0", "index.html");
        QTest::mouseDClick(list->viewport(), Qt::LeftButton, {},
                           list->visualRect(list->currentIndex()).center());
        QCOMPARE(opened.count(), 1);
        QCOMPARE(opened.first().at(0).value<fs::path>(), site.at("index.html"));
        QCOMPARE(opened.first().at(1).value<fs::path>(), site.pane->mountPath());
        QTest::keyClick(list, Qt::Key_Return);
        QCOMPARE(opened.count(), 2);
        site.put("zebra.html");
        site.pane->reload();
        QCOMPARE(site.find<QListView>("browserList0")->model()->rowCount(), 4);
        QCOMPARE(selectedName(site), QStringLiteral("index.html"));
    }

    void share_isUnmountedOnDisconnectAndEmptiesWhenUnmountedByAnother()
    {
        const auto mounter = std::make_shared<SlowMounter>();
        PaneFixture site(mounter);
        mounter->mountPoint = site.folder.root();
        site.endpoint->setValue(endpoint::protocol, QStringLiteral("smb://"));
        for (const bool byAnother : {true, false}) {
            mounter->answer.release();
            site.pane->doConnect();
            QTRY_VERIFY(site.pane->rootNode());
            if (byAnother) {
                emit mounter->unmounted("/somewhere/else");
                QVERIFY(site.pane->rootNode());
                emit mounter->unmounted(*mounter->mountPoint);
            } else {
                site.pane->disconnectPane();
            }
            QVERIFY(!site.pane->rootNode());
            QVERIFY(site.pane->mountPath().empty());
        }
        QCOMPARE(mounter->unmounts.load(), 1);
    }

    void closingOrDisconnectingDuringAConnection_isSafe_data()
    {
        QTest::addColumn<bool>("close");
        QTest::newRow("disconnect") << false;
        QTest::newRow("close") << true;
    }
    void closingOrDisconnectingDuringAConnection_isSafe()
    {
        QFETCH(bool, close);
        const auto mounter = std::make_shared<SlowMounter>();
        mounter->mountPoint = "/";
        auto site = std::make_unique<PaneFixture>(mounter);
        site->endpoint->setValue(endpoint::protocol, QStringLiteral("smb://"));
        site->pane->doConnect();
        QTRY_COMPARE(site->text("connectStateField"), QStringLiteral("Connecting... Please wait."));
        QTRY_COMPARE(mounter->mounts.load(), 1);
        auto* button = site->find<QPushButton>("connectButton");
        QCOMPARE(button->text(), QStringLiteral("Cancel"));
        QVERIFY(site->find<QProgressBar>("progressIndicator")->isVisible());
        if (close) {
            site.reset();
        } else {
            button->click();
            QCOMPARE(button->text(), QStringLiteral("Connect"));
            QVERIFY(!site->find<QProgressBar>("progressIndicator")->isVisible());
        }
        mounter->answer.release();
        QTRY_COMPARE(mounter->unmounts.load(), 1);
        QTRY_COMPARE(QThreadPool::globalInstance()->activeThreadCount(), 0);
        QVERIFY(close || (!site->pane->rootNode() && site->text("connectStateField").isEmpty()));
    }
};

LUMA_TEST(tst_browsercontroller)
#include "tst_browsercontroller.moc"
