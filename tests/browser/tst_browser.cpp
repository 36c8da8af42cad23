// SPDX-License-Identifier: GPL-3.0-or-later
#include "browser/browser.h"
#include "browser/filesystembrowsercell.h"
#include "browser/folderlisting.h"
#include "tests/support/registry.h"
#include "tests/support/screenshot.h"
#include "tests/support/site.h"

#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QScrollBar>
#include <QSemaphore>
#include <QSignalSpy>
#include <QTest>

namespace fs = std::filesystem;
using namespace luma;

class tst_browser final : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<test::Site> m_site;
    std::unique_ptr<Browser> m_browser;
    int m_beeps = 0;

    fs::path at(std::string_view name) const { return m_site->at(name); }
    void put(std::string_view name) const { m_site->put(name); }
    QListView& list(int column) const
    {
        auto* view = m_browser->findChild<QListView*>(QStringLiteral("browserList%1").arg(column));
        if (!view)
            qFatal("no column %d", column);
        return *view;
    }
    QStringList selected(int column) const
    {
        QStringList names;
        for (const QModelIndex& row : list(column).selectionModel()->selectedRows())
            names += row.data().toString();
        return names;
    }
    QPoint placeOf(int column, const char* name) const
    {
        const QModelIndex item = m_browser->model().childNamed(list(column).rootIndex(), name);
        return list(column).visualRect(item).center();
    }
    void click(int column, const char* name, Qt::KeyboardModifiers modifiers = {})
    {
        QTest::mouseClick(list(column).viewport(), Qt::LeftButton, modifiers, placeOf(column, name));
    }
    void show()
    {
        m_browser->model().setRootNode(std::make_shared<FileSystemNode>(at("")));
        QVERIFY(QTest::qWaitForWindowExposed(m_browser.get()));
    }

private slots:
    void init()
    {
        m_site = std::make_unique<test::Site>(test::Files{{"css/deep/a.css", ""},
                                                          {"css/main.css", ""},
                                                          {"css/print.css", ""},
                                                          {"images/logo.svg", ""},
                                                          {"index.html", ""}});
        m_browser = std::make_unique<Browser>();
        m_browser->setBeep([this] { ++m_beeps; });
        m_browser->resize(800, 300);
        m_browser->show();
        m_beeps = 0;
    }
    void cleanup() { m_browser.reset(); }

    void geometry_isExact()
    {
        using Cell = FileSystemBrowserCell;
        QCOMPARE(Cell::imageRectForBounds({10, 100, 200, 20}), QRect(14, 102, 16, 16));
        QCOMPARE(Cell::imageRectForBounds({0, 0, 200, 17}), QRect(4, 1, 16, 16));
        QCOMPARE(Cell::imageRectForBounds({0, 0, 200, 13}), QRect(4, -1, 16, 16));
        QCOMPARE(Cell::titleRectForBounds({10, 100, 200, 20}), QRect(32, 102, 178, 18));
        QCOMPARE(Cell::editedLength(QStringLiteral("a.b.html"), false), 3);
        QCOMPARE(Cell::editedLength(QStringLiteral(".html"), false), 5);
        QCOMPARE(Cell::editedLength(QStringLiteral("images.old"), true), 10);
    }

    void selection_opensTheNextColumnOrThePreview()
    {
        show();
        click(0, "css");
        QCOMPARE(m_browser->columnCount(), 2);
        click(1, "deep");
        QCOMPARE(m_browser->columnCount(), 3);
        click(1, "main.css");
        QCOMPARE(m_browser->columnCount(), 2);
        const auto* preview = m_browser->findChild<QWidget*>(QStringLiteral("previewView"));
        QVERIFY(preview->isVisible());
        QCOMPARE(preview->findChild<QLabel*>(QStringLiteral("label"))->text(), QStringLiteral("main.css"));
        QCOMPARE(m_browser->path(), (Browser::Path{"css", "main.css"}));
        click(0, "index.html", Qt::ControlModifier);
        QCOMPARE(m_browser->columnCount(), 1);
        QVERIFY(!preview->isVisible());
        QCOMPARE(m_browser->selectedItems().size(), 2);
    }

    void arrows_walkBetweenColumnsInSilence()
    {
        show();
        click(0, "css");
        list(0).setFocus();
        QTest::keyClick(&list(0), Qt::Key_Right);
        QCOMPARE(selected(1), QStringList{QStringLiteral("deep")});
        QVERIFY(list(1).hasFocus());
        QTest::keyClick(&list(1), Qt::Key_Down);
        QCOMPARE(selected(1), QStringList{QStringLiteral("main.css")});
        QTest::keyClick(&list(1), Qt::Key_Left);
        QVERIFY(list(0).hasFocus());
        QCOMPARE(m_browser->path(), Browser::Path{"css"});
        QTest::keyClick(&list(0), Qt::Key_I);
        QCOMPARE(selected(0), QStringList{QStringLiteral("images")});
        QCOMPARE(m_beeps, 1); // the letter
    }

    void focusedColumn_isTheCurrentOne()
    {
        show();
        QVERIFY(QTest::qWaitForWindowActive(m_browser.get()));
        m_browser->setPath({"css", "deep", "a.css"});
        QCOMPARE(m_browser->currentColumn(), 2);
        QCOMPARE(list(2).focusPolicy(), Qt::StrongFocus);
        QCOMPARE(list(0).focusPolicy(), Qt::ClickFocus);
        list(1).setFocus();
        QCOMPARE(m_browser->path(), (Browser::Path{"css", "deep"}));
        QCOMPARE(m_browser->currentItem().data(), QStringLiteral("deep"));
        QCOMPARE(m_browser->columnCount(), 3);
        QVERIFY(m_browser->findChild<QWidget*>(QStringLiteral("previewView"))->isHidden());
        QVERIFY(m_browser->reveal(at("css")));
        QVERIFY(list(0).hasFocus());
        QCOMPARE(m_browser->columnCount(), 2);
        click(1, "main.css");
        click(0, "css");
        QCOMPARE(m_browser->path(), Browser::Path{"css"});
        // Below the rows of a column nothing is current, not the folder to its left either.
        QTest::mouseClick(list(1).viewport(), Qt::LeftButton, {}, list(1).viewport()->rect().bottomLeft());
        QCOMPARE(m_browser->currentColumn(), 1);
        QVERIFY(m_browser->selectedItems().isEmpty() && !m_browser->currentItem().isValid());
    }

    void selection_isGreyWithoutTheFocus()
    {
        show();
        QVERIFY(QTest::qWaitForWindowActive(m_browser.get()));
        m_browser->setPath({"css", "deep"});
        const auto colourBeside = [this](int column, const char* name) {
            const QRect row =
                list(column).visualRect(m_browser->model().childNamed(list(column).rootIndex(), name));
            return list(column).viewport()->grab(row).toImage().pixelColor(row.width() - 30, 3);
        };
        list(1).setFocus();
        QVERIFY(colourBeside(1, "deep").saturation() > 60);
        QVERIFY(colourBeside(0, "css").saturation() < 10);
        QVERIFY(colourBeside(0, "css") != colourBeside(0, "images"));
        list(0).setFocus();
        QVERIFY(colourBeside(0, "css").saturation() > 60);
    }

    void deletionKeys_askWithoutABeep()
    {
        show();
        QSignalSpy asked(m_browser.get(), &Browser::deleteRequested);
        click(0, "index.html");
        QTest::keyClick(&list(0), Qt::Key_Delete, Qt::ControlModifier);
        QTest::keyClick(&list(0), Qt::Key_Backspace, Qt::ControlModifier);
        QCOMPARE(asked.count(), 2);
        QCOMPARE(m_beeps, 0);
        QTest::keyClick(&list(0), Qt::Key_Delete);
        QCOMPARE(asked.count(), 3);
        QTest::keyClick(&list(0), Qt::Key_Delete, Qt::ShiftModifier);
        QCOMPARE(asked.count(), 3);
        QTest::keyClick(&list(0), Qt::Key_Control);
        QCOMPARE(m_beeps, 1);
    }

    void space_showsThePreviewEnlarged()
    {
        show();
        m_browser->setPath({"css", "main.css"});
        const auto enlarged = [this] {
            return m_browser->findChild<QDialog*>(QStringLiteral("enlargedPreview"));
        };
        QTest::keyClick(&list(1), Qt::Key_Space);
        QVERIFY(enlarged() && enlarged()->isVisible());
        QCOMPARE(enlarged()->windowTitle(), QStringLiteral("main.css"));
        QTest::keyClick(enlarged(), Qt::Key_Down);
        QCOMPARE(m_browser->path(), (Browser::Path{"css", "print.css"}));
        QCOMPARE(enlarged()->windowTitle(), QStringLiteral("print.css"));
        QTest::keyClick(enlarged(), Qt::Key_Space);
        QTRY_VERIFY(!enlarged());
        QTest::keyClick(&list(1), Qt::Key_Space);
        m_browser->model().setRootNode(nullptr);
        QTRY_VERIFY(!enlarged());
    }

    void reload_keepsPathAndFocus()
    {
        show();
        QVERIFY(QTest::qWaitForWindowActive(m_browser.get()));
        m_browser->setPath({"css", "main.css"});
        list(1).setFocus();
        put("css/new.css");
        m_browser->reload();
        QCOMPARE(m_browser->path(), (Browser::Path{"css", "main.css"}));
        QVERIFY(list(1).hasFocus());
        QVERIFY(m_browser->model().childNamed(list(1).rootIndex(), "new.css").isValid());
    }

    // The columns of the path open as their listings come.
    void reload_keepsThePathOnASlowServer()
    {
        QSemaphore held;
        m_browser->model().setBackgroundLister([&held](const std::string& url, bool showsHidden) {
            held.acquire();
            return listFolder(url, showsHidden);
        });
        show();
        QCOMPARE(m_browser->path(), Browser::Path());
        test::saveScreenshots(*m_browser, "slow-server");
        held.release(3);
        QTRY_COMPARE(m_browser->model().rowCount(), 3);
        m_browser->setPath({"css"});
        QTRY_COMPARE(m_browser->model().rowCount(list(1).rootIndex()), 3);
        m_browser->setPath({"css", "deep"});
        QTRY_COMPARE(m_browser->model().rowCount(list(2).rootIndex()), 1);
        m_browser->setPath({"css", "deep", "a.css"});
        m_browser->reload();
        QCOMPARE(m_browser->path(), Browser::Path());
        held.release(3);
        QTRY_COMPARE(m_browser->path(), (Browser::Path{"css", "deep", "a.css"}));
        put("css/deep/b.css");
        m_browser->refresh();
        QCOMPARE(m_browser->path(), (Browser::Path{"css", "deep", "a.css"}));
        held.release(3);
        QTRY_COMPARE(m_browser->model().rowCount(list(2).rootIndex()), 2);
        QCOMPARE(m_browser->path(), (Browser::Path{"css", "deep", "a.css"}));
    }

    void rename_selectsTheBaseNameAndRenamesInAnyColumn()
    {
        show();
        click(0, "css");
        click(1, "main.css");
        QTest::keyClick(&list(1), Qt::Key_F2);
        QPointer<QLineEdit> editor = list(1).findChild<QLineEdit*>(QStringLiteral("renameEditor"));
        QVERIFY(editor);
        QTRY_COMPARE(editor->selectedText(), QStringLiteral("main"));
        m_browser->refresh();
        QVERIFY(editor);
        const int beeps = m_beeps;
        QTest::keyClicks(editor, QStringLiteral("zz"));
        QTest::keyClick(editor, Qt::Key_Return);
        QTRY_VERIFY(fs::exists(at("css/zz.css")) && !fs::exists(at("css/main.css")));
        QCOMPARE(selected(1), QStringList{QStringLiteral("zz.css")});
        QCOMPARE(m_beeps, beeps);
    }

    void refresh_keepsPathSelectionAndScroll()
    {
        for (int i = 0; i < 200; ++i)
            put("css/page" + std::to_string(1000 + i));
        show();
        click(0, "css");
        m_browser->setPath({"css", "page1150"});
        const int scrolled = list(1).verticalScrollBar()->value();
        QVERIFY(scrolled > 0);
        QVERIFY(list(1).viewport()->rect().contains(placeOf(1, "page1150")));
        put("zz.html");
        fs::remove(at("index.html"));
        put("css/zz.html");
        m_browser->refresh();
        QCOMPARE(m_browser->path(), (Browser::Path{"css", "page1150"}));
        QCOMPARE(list(1).verticalScrollBar()->value(), scrolled);
        QVERIFY(m_browser->model().childNamed({}, "zz.html").isValid());
        QVERIFY(m_browser->model().childNamed(list(1).rootIndex(), "zz.html").isValid());
    }

    void removedFolder_closesItsColumns()
    {
        show();
        m_browser->setPath({"css", "deep", "a.css"});
        QCOMPARE(m_browser->columnCount(), 3);
        fs::remove_all(at("css"));
        m_browser->refresh();
        QCOMPARE(m_browser->columnCount(), 1);
        QCOMPARE(m_browser->path(), Browser::Path{});
        fs::remove_all(at(""));
        m_browser->refresh();
        QCOMPARE(m_browser->model().rowCount(), 0);
        m_browser->model().setRootNode(nullptr);
        QCOMPARE(m_browser->columnCount(), 0);
    }

    void deepPath_opensEveryColumn()
    {
        std::string deep;
        Browser::Path path;
        for (int level = 0; level < 300; ++level) {
            deep += "d/";
            path.emplace_back("d");
        }
        fs::create_directories(at(deep));
        show();
        m_browser->setPath(path);
        QCOMPARE(m_browser->columnCount(), 301);
        m_browser->refresh();
        QCOMPARE(m_browser->path(), path);
    }

    void scrollBars_appearOnlyWhereSomethingScrolls()
    {
        show();
        click(0, "css");
        QCoreApplication::processEvents();
        QVERIFY(!list(0).verticalScrollBar()->isVisible());
        QVERIFY(!list(0).horizontalScrollBar()->isVisible());
        QVERIFY(!m_browser->horizontalScrollBar()->isVisible());
        m_browser->setColumnWidths({600, 600});
        QTRY_VERIFY(m_browser->horizontalScrollBar()->isVisible());
        m_browser->setColumnWidths({600, 1});
        QCOMPARE(m_browser->columnWidths(), (QList<int>{600, 96}));
    }
};

LUMA_TEST(tst_browser)
#include "tst_browser.moc"
