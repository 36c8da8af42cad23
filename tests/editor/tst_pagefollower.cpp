// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/pagefollower.h"

#include "links/sitemoves.h"
#include "page/pagecommands.h"
#include "tests/editor/pagewindow.h"
#include "tests/support/registry.h"

#include <QComboBox>
#include <QPlainTextEdit>
#include <QSignalSpy>
#include <QTest>

using namespace luma;
namespace fs = std::filesystem;

/// An open page and the moves of files in its site.
class tst_pagefollower final : public QObject
{
    Q_OBJECT

private:
    test::PageWindow page;

    // The callbacks that the site's window gives its jobs.
    [[nodiscard]] MoveRunner::Callbacks callbacks() const
    {
        MoveRunner::Callbacks all;
        all.itemMoved = [this](const MovedItem& item) {
            page.window->follower().followItem(item, page.at(""));
        };
        return all;
    }

    void followLinks(const MoveReport& report) const
    {
        QVERIFY(report.isDone);
        page.window->follower().followLinks(report.links);
        page.rendering().catchUp();
        page.waitUntilShown();
    }

    void move(const std::string& from, const std::string& to) const
    {
        const auto plan =
            planMove({page.at(""), {}, MoveOperation::Move, {{page.at(from), page.at(to)}}, {}});
        QVERIFY(plan);
        followLinks(SiteMoves::open(page.at(""), callbacks())->carryOut(*plan));
    }

    void undoMove() const { followLinks(SiteMoves::open(page.at(""), callbacks())->undo()); }

    void openSite()
    {
        page.put("docs/page.html", "<head><link rel=stylesheet href=main.css><style>b{background:url(b.png)}"
                                   "</style></head><body><p><a href=other.html>o</a>"
                                   "<img srcset='b.png 2x'>text</p></body>");
        page.put("docs/other.html", "<a href=page.html>back</a>");
        page.put("docs/main.css", "p{background:url(b.png)}");
        page.put("docs/b.png", "");
        page.put("new/keep.txt", "");
        page.open(page.at("docs/page.html"), page.at(""));
    }

    // An edit with a link that no file has.
    void addUnsavedLink() const
    {
        page.typeInto("p", "!");
        const auto paragraph = page.window->tree().document()->select("p").front();
        QTRY_VERIFY(paragraph->text().ends_with('!'));
        PageCommands(page.window->tree(), *page.window->undoStack())
            .setInnerMarkup(*paragraph,
                            QString::fromStdString(paragraph->html()) +
                                QStringLiteral("<a href='other.html#unsaved'>n</a>"),
                            QStringLiteral("Link"));
    }

private slots:
    void cleanup() { page.close(); }

    void unsavedPage_followsItsFileAndKeepsItsEdits_data()
    {
        QTest::addColumn<QString>("from");
        QTest::addColumn<QString>("to");
        QTest::addColumn<QString>("place");
        QTest::addColumn<QString>("link");
        QTest::addColumn<QString>("image");
        QTest::newRow("the page is renamed") << "docs/page.html"
                                             << "docs/p2.html"
                                             << "docs/p2.html"
                                             << "other.html"
                                             << "b.png";
        QTest::newRow("the page is moved") << "docs/page.html"
                                           << "new/page.html"
                                           << "new/page.html"
                                           << "../docs/other.html"
                                           << "../docs/b.png";
        QTest::newRow("its folder is moved") << "docs"
                                             << "new/docs"
                                             << "new/docs/page.html"
                                             << "other.html"
                                             << "b.png";
        QTest::newRow("another page is moved") << "docs/other.html"
                                               << "new/other.html"
                                               << "docs/page.html"
                                               << "../new/other.html"
                                               << "b.png";
        QTest::newRow("an image is moved") << "docs/b.png"
                                           << "new/b.png"
                                           << "docs/page.html"
                                           << "other.html"
                                           << "../new/b.png";
    }
    void unsavedPage_followsItsFileAndKeepsItsEdits()
    {
        QFETCH(QString, from);
        QFETCH(QString, to);
        QFETCH(QString, place);
        QFETCH(QString, link);
        QFETCH(QString, image);
        openSite();
        addUnsavedLink();
        move(from.toStdString(), to.toStdString());
        QCOMPARE(page.window->docURL(), page.at(place.toStdString()));
        const QByteArray body = "<p><a href=\"" + link.toUtf8() + "\">o</a><img srcset=\"" + image.toUtf8() +
                                " 2x\">text!<a href=\"" + link.toUtf8() + "#unsaved\">n</a></p>";
        QCOMPARE(page.body().trimmed(), body);
        QVERIFY(page.tree().contains("url(" + image.toUtf8() + ")"));
        QVERIFY(!page.window->undoStack()->isClean());
        page.window->undoStack()->undo();
        QVERIFY2(!page.window->undoStack()->isClean(), "the file on the disk has the new links");
        page.window->undoStack()->redo();
        page.trigger("saveAction");
        QTRY_VERIFY(page.window->undoStack()->isClean());
        const std::string saved = page.file(place.toStdString());
        QVERIFY2(saved.find(link.toStdString() + "#unsaved") != std::string::npos, saved.c_str());
        QCOMPARE(fs::exists(page.at("docs/page.html")), place == QLatin1String("docs/page.html"));
    }

    void cleanPage_isReadAgain_andUndoneWithTheMove()
    {
        openSite();
        const std::string original = page.file("docs/page.html");
        move("docs/page.html", "new/page.html");
        QCOMPARE(page.window->docURL(), page.at("new/page.html"));
        QVERIFY(page.window->undoStack()->isClean());
        QVERIFY(page.body().contains("href=\"../docs/other.html\""));
        undoMove();
        QCOMPARE(page.window->docURL(), page.at("docs/page.html"));
        QVERIFY(page.body().contains("href=\"other.html\""));
        QCOMPARE(page.file("docs/page.html"), original);
        QVERIFY(page.window->undoStack()->isClean());
    }

    void draftsOfStyleSheets_followTheirFiles()
    {
        openSite();
        auto* const menu = page.the<QComboBox>("cssMenu");
        auto* const field = page.the<QPlainTextEdit>("cssField");
        menu->setCurrentIndex(0);
        emit menu->activated(0);
        field->setPlainText("p { background: url(b.png); color: red }");
        move("docs/main.css", "new/main.css");
        QCOMPARE(menu->currentText(), "../new/main.css");
        QVERIFY2(field->toPlainText().contains("url(../docs/b.png); color: red"),
                 qPrintable(field->toPlainText()));
        move("docs", "documents");
        QTest::mouseClick(page.the<QWidget>("cssButton"), Qt::LeftButton);
        QTRY_VERIFY(page.file("new/main.css").find("color: red") != std::string::npos);
        QVERIFY(page.file("new/main.css").find("../documents/b.png") != std::string::npos);
        QVERIFY(!fs::exists(page.at("docs")));
    }

    void changeOfAnotherProgram_isNotOverwrittenInSilence()
    {
        openSite();
        addUnsavedLink();
        page.put("docs/page.html", page.file("docs/page.html") + "<a href=other.html>theirs</a>");
        move("docs/other.html", "new/other.html");
        page.trigger("saveAction");
        page.answerQuestion("overwriteQuestion", "Cancel");
        QVERIFY(page.file("docs/page.html").find("<a href=../new/other.html>theirs") != std::string::npos);
    }
};

LUMA_TEST(tst_pagefollower)
#include "tst_pagefollower.moc"
