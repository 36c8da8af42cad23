// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/pagerecovery.h"

#include "base/files.h"
#include "editor/pagefollower.h"
#include "tests/editor/pagewindow.h"
#include "tests/support/registry.h"
#include "tests/support/screenshot.h"

#include <QTest>

#include <sys/stat.h>

using namespace luma;

/// Pages that were being edited when the program ended.
class tst_pagerecovery final : public QObject, private test::PageWindow
{
    Q_OBJECT

    static constexpr const char* saved = "<!DOCTYPE html>\r\n<title>Old</title>\r\n<p>one\n<p>two\r\n";
    static constexpr const char* edited = "<!DOCTYPE html>\r\n<title>New</title>\r\n<p>one\n<p>two\r\n";

    void openUnsaved(const UnsavedPage& unsaved)
    {
        window = new HTMLDocument;
        window->mountPath = at("");
        if (!unsaved.page.empty())
            window->readFromURL(unsaved.page);
        window->recover(unsaved);
        window->show();
        window->windowDidLoad();
        waitUntilShown();
    }

private slots:
    void cleanup()
    {
        close();
        for (const UnsavedPage& page : PageRecovery::left())
            std::filesystem::remove(page.record);
    }

    void unsavedEdits_comeBackAsAnEdit()
    {
        open(saved);
        setTitle("New");
        QTRY_COMPARE(PageRecovery::left().size(), 1U);
        delete window; // nobody has closed it
        const UnsavedPage unsaved = PageRecovery::left().at(0);
        QCOMPARE(unsaved.page, at("page.html"));
        QCOMPARE(unsaved.source, std::string(edited));
        struct stat status = {};
        QCOMPARE(::stat(unsaved.record.c_str(), &status), 0);
        QCOMPARE(status.st_mode & 0777U, 0600U);
        openUnsaved(unsaved);
        QVERIFY(tree().contains("<title>New</title>"));
        QVERIFY(window->isWindowModified());
        test::saveScreenshots(*window, "unsaved-page");
        window->undoStack()->undo();
        QVERIFY(tree().contains("<title>Old</title>"));
        QTRY_COMPARE(PageRecovery::left().size(), 0U);
        window->undoStack()->redo();
        QTRY_COMPARE(PageRecovery::left().size(), 1U);
        QVERIFY(window->saveToURL(at("page.html")));
        QCOMPARE(file("page.html"), std::string(edited));
        QCOMPARE(PageRecovery::left().size(), 0U);
    }

    void editsThatTheFileHasToo_areForgotten()
    {
        open(saved);
        setTitle("New");
        QTRY_COMPARE(PageRecovery::left().size(), 1U);
        delete window;
        put("page.html", edited);
        openUnsaved(PageRecovery::left().at(0));
        QVERIFY(!window->isWindowModified());
        QCOMPARE(PageRecovery::left().size(), 0U);
    }

    void movedPage_isKeptUnderItsNewName()
    {
        open(saved);
        setTitle("New");
        QTRY_COMPARE(PageRecovery::left().size(), 1U);
        std::filesystem::rename(at("page.html"), at("moved.html"));
        window->follower().followItem({at("page.html"), at("moved.html")}, at(""));
        QTRY_COMPARE(PageRecovery::left().at(0).page, at("moved.html"));
    }

    void newPage_comesBackUnnamed()
    {
        openWindow({}, at(""));
        waitUntilShown();
        setTitle("Mine");
        QTRY_COMPARE(PageRecovery::left().size(), 1U);
        delete window;
        const UnsavedPage unsaved = PageRecovery::left().at(0);
        QVERIFY(unsaved.page.empty());
        openUnsaved(unsaved);
        QVERIFY(tree().contains("<title>Mine</title>"));
    }

    void discardedEdits_areForgotten()
    {
        open(saved);
        setTitle("New");
        QTRY_COMPARE(PageRecovery::left().size(), 1U);
        window->close();
        answerQuestion("saveQuestion", "Discard");
        QTRY_VERIFY(!window);
        QCOMPARE(PageRecovery::left().size(), 0U);
    }
};

LUMA_TEST(tst_pagerecovery)
#include "tst_pagerecovery.moc"
