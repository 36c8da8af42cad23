// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/propertylist.h"
#include "editor/outlinemodel.h"
#include "html/parse.h"
#include "html/prettyprinter.h"
#include "page/pagecommands.h"
#include "page/pagetree.h"
#include "page/tagrules.h"
#include "tests/support/registry.h"
#include "tests/support/rows.h"

#include <QAbstractItemModelTester>
#include <QMimeData>
#include <QSignalSpy>
#include <QTest>
#include <QUndoStack>

using namespace luma;

namespace {

std::unique_ptr<html::Document> parsed(std::string_view page)
{
    auto document = html::parse(page);
    return document ? std::move(*document) : nullptr;
}

} // namespace

/// The tree, its commands and the model that follows them, without a window.
class tst_outlinemodel final : public QObject
{
    Q_OBJECT

private:
    TagRules rules;
    std::unique_ptr<PageTree> tree;
    std::unique_ptr<QUndoStack> stack;
    std::unique_ptr<PageCommands> commands;
    std::unique_ptr<OutlineModel> model;
    std::unique_ptr<QAbstractItemModelTester> tester;

    html::Element* find(std::string_view selector) const
    {
        const auto found = tree->document()->select(selector);
        return found.empty() ? nullptr : found.front();
    }
    std::string body() const { return tree->document()->body()->html(); }

    void become(std::string_view page)
    {
        const auto other = parsed(page);
        commands->apply(differenceTo(*tree->document(), *other), "Typing", PageCommands::Merging::Separate);
    }

    /// The rows as text, a blank for each level.
    QStringList rows(const QModelIndex& parent = {}, int level = 0) const
    {
        QStringList lines;
        for (int row = 0; row < model->rowCount(parent); ++row) {
            const QModelIndex index = model->index(row, 0, parent);
            lines += QString(level, u' ') + index.data().toString();
            lines += rows(index, level + 1);
        }
        return lines;
    }

private slots:
    void init()
    {
        tree = std::make_unique<PageTree>();
        stack = std::make_unique<QUndoStack>();
        commands = std::make_unique<PageCommands>(*tree, *stack);
        model = std::make_unique<OutlineModel>(*tree, rules);
        tester = std::make_unique<QAbstractItemModelTester>(
            model.get(), QAbstractItemModelTester::FailureReportingMode::QtTest);
        tree->setDocument(parsed("<!DOCTYPE html><title>T</title><body><section id=s><h2>H</h2>text<p>one</p>"
                                 "<p class=a>two</p></section><div id=d></div>"));
    }
    void cleanup()
    {
        tester.reset();
        model.reset();
    }

    void rows_areTheElements()
    {
        const QStringList expected = {"<html>",
                                      " <head>",
                                      "  <title> T",
                                      " <body>",
                                      "  <section id=\"s\"> text",
                                      "   <h2> H",
                                      "   <p> one",
                                      "   <p class=\"a\"> two",
                                      "  <div id=\"d\">"};
        QCOMPARE(rows(), expected);
    }

    void allNodes_haveRowsOfTheirOwn()
    {
        tree->setDocument(
            parsed("<!DOCTYPE html><!-- top --><title>T</title><body>\n<p>one <b>two</b>\n three</p> "
                   "<!--in\nthe body--><div></div>"));
        const QPersistentModelIndex chosen = model->indexOf(find("b"));
        model->setShowsAllNodes(true);
        const QStringList expected = {"<!DOCTYPE html>",
                                      "<!-- top -->",
                                      "<html>",
                                      " <head>",
                                      "  <title>",
                                      "   T",
                                      " <body>",
                                      "  <p>",
                                      "   one",
                                      "   <b>",
                                      "    two",
                                      "   three",
                                      "  <!--in the body-->",
                                      "  <div>"};
        QCOMPARE(rows(), expected);
        QCOMPARE(chosen.data().toString(), "<b>");
        QCOMPARE(chosen.row(), 1);
        const QPersistentModelIndex text = model->index(2, 0, chosen.parent());
        QVERIFY(!OutlineModel::elementAt(text));
        model->setShowsAllNodes(false);
        QCOMPARE(rows().last(), "  <div>");
        QCOMPARE(rows().size(), 7);
        QCOMPARE(OutlineModel::elementAt(chosen), find("b"));
        QCOMPARE(OutlineModel::elementAt(text), find("p")); // the row that stands for it now
    }

    void allNodes_followEdits_data()
    {
        QTest::addColumn<QByteArray>("page");
        QTest::newRow("text") << QByteArray("<p>one</p>x<!--c--><i>two</i>z");
        QTest::newRow("blanks come") << QByteArray("<p>one</p> <!--c--> <i>two</i> z");
        QTest::newRow("comment goes") << QByteArray("<p>one</p>y<i>two</i>z");
        QTest::newRow("all goes") << QByteArray();
        QTest::newRow("more come") << QByteArray("<p>one</p>y<!--c-->a<b>b</b><!--d--><i>two</i>z");
        QTest::newRow("below") << QByteArray("<p><!--x-->one<u>a</u></p>y<!--c--><i>two</i>z");
    }
    void allNodes_followEdits()
    {
        tree->setDocument(parsed("<p>one</p>y<!--c--><i>two</i>z"));
        model->setShowsAllNodes(true);
        const QStringList before = rows();
        QFETCH(QByteArray, page);
        become(page.toStdString());
        const QStringList after = rows();
        model->setShowsAllNodes(false);
        model->setShowsAllNodes(true); // forgets all rows
        QCOMPARE(after, rows());
        stack->undo();
        QCOMPARE(rows(), before);
        stack->redo();
        QCOMPARE(rows(), after);
    }

    void row_showsTagAttributesAndText_data()
    {
        QTest::addColumn<QString>("row");
        QTest::newRow("<p>\n</p>") << u"<p>"_qs;
        QTest::newRow("<p a='x &quot;' b>one <b>two</b>\n three\xC3\xA9</p>")
            << u"<p a=\"x &quot;\", b=\"\"> one three\u00E9"_qs;
        QTest::newRow("<style>x{}</style>") << u"<style>"_qs;
    }
    void row_showsTagAttributesAndText()
    {
        tree->setDocument(parsed(std::string("<body>") + QTest::currentDataTag()));
        QTEST(model->indexAtPath({1, 0}).data().toString(), "row");
    }

    void edit_isUndoneAndMadeAgain_data()
    {
        const test::Rows<int, QByteArray> row("edit", "result");
        row("insert", 0, "<div id=\"d\"><section> <h2>Header</h2></section></div>");
        row("remove", 1, "<section id=\"s\"><h2>H</h2>text<p>one</p></section>");
        row("move", 2, "<div id=\"d\"><p class=\"a\">two</p></div>");
        row("copy", 3,
            "<p class=\"a\">two</p></section><div id=\"d\">"
            "<p class=\"a\">two</p></div>");
        row("attributes", 4, "<p id=\"new\">two</p>");
        row("typing", 5, "<p class=\"a\">two more<b>!</b></p></section><div id");
        row("inner markup", 6, "<div id=\"d\"><i>x</i>y</div>");
    }
    void edit_isUndoneAndMadeAgain()
    {
        QFETCH(int, edit);
        QFETCH(QByteArray, result);
        const std::string before = tree->document()->outerHtml();
        const QStringList rowsBefore = rows();
        html::Element& div = *find("#d");
        html::Element& second = *find("[class=a]");
        if (edit == 0)
            commands->insert(rules.newElement("section"), {&div, nullptr}, {});
        else if (edit == 1)
            commands->remove(second);
        else if (edit == 2)
            commands->move(second, {&div, nullptr});
        else if (edit == 3)
            commands->copy(second, {&div, nullptr});
        else if (edit == 4)
            commands->setAttributes(second, {{"id", "new"}}, {});
        else if (edit == 5)
            become("<!DOCTYPE html><title>T</title><body><section id=s><h2>H</h2>text<p>one</p>"
                   "<p class=a>two more<b>!</b></p></section><div id=d></div>");
        else
            QVERIFY(commands->setInnerMarkup(div, "<i>x</i>y", {}));
        QVERIFY2(body().find(result.toStdString()) != std::string::npos, body().c_str());
        const std::string after = tree->document()->outerHtml();
        const QStringList rowsAfter = rows();
        stack->setClean();
        stack->undo();
        QCOMPARE(tree->document()->outerHtml(), before);
        QCOMPARE(rows(), rowsBefore);
        QVERIFY(!stack->isClean());
        stack->redo();
        QCOMPARE(tree->document()->outerHtml(), after);
        QCOMPARE(rows(), rowsAfter);
        QVERIFY(stack->isClean());
    }

    void move_keepsTheRow_data()
    {
        const test::Rows<QByteArray, QByteArray, QByteArray> row("moved", "parent", "next");
        row("into another", "#b", "#two", "");
        row("in front of a sibling", "#c", "#one", "#a");
        row("to the end", "#a", "#one", "");
        row("outwards", "#b", "body", "#two");
        row("with rows below", "#one", "#deep", "");
        row("over white space", "#a", "#one", "#b");
    }
    void move_keepsTheRow()
    {
        QFETCH(QByteArray, moved);
        QFETCH(QByteArray, parent);
        QFETCH(QByteArray, next);
        for (const bool showsAll : {false, true}) {
            tree->setDocument(
                parsed("<body><div id=one><p id=a>x</p> \n<p id=b><i>y</i></p>z<p id=c></p></div>"
                       "<!--c--><div id=two> <b id=deep></b></div>"));
            model->setShowsAllNodes(showsAll);
            const QStringList before = rows();
            const QPersistentModelIndex moving = model->indexOf(find(moved.toStdString()));
            const QPersistentModelIndex inner = model->index(0, 0, moving);
            const QString innerText = inner.data().toString();
            QVERIFY(model->toggleHidden(moving));
            commands->move(*find(moved.toStdString()),
                           {find(parent.toStdString()), next.isEmpty() ? nullptr : find(next.toStdString())});
            QCOMPARE(OutlineModel::nodeAt(moving), find(moved.toStdString()));
            QCOMPARE(QModelIndex(moving), model->indexOf(find(moved.toStdString())));
            QVERIFY(model->hidden().contains(moving));
            QCOMPARE(inner.data().toString(), innerText);
            const QStringList after = rows();
            model->setShowsAllNodes(!showsAll);
            model->setShowsAllNodes(showsAll); // forgets all rows
            QCOMPARE(rows(), after);
            stack->undo();
            QCOMPARE(rows(), before);
            QCOMPARE(QModelIndex(moving), model->indexOf(find(moved.toStdString())));
        }
    }

    void title_isChangedOrMade()
    {
        commands->setTitle("New & <old>");
        QCOMPARE(tree->document()->title(), std::string("New & <old>"));
        commands->remove(*find("title"));
        commands->setTitle("Again");
        QCOMPARE(tree->document()->title(), std::string("Again"));
        stack->setIndex(0);
        QCOMPARE(tree->document()->title(), std::string("T"));
    }

    void typing_leavesTheOtherRowsAlone()
    {
        const QPersistentModelIndex section(model->indexOf(find("#s")));
        const QPersistentModelIndex paragraph(model->indexOf(find("p")));
        QSignalSpy reset(model.get(), &QAbstractItemModel::modelReset);
        QSignalSpy removed(model.get(), &QAbstractItemModel::rowsRemoved);
        become("<!DOCTYPE html><title>T</title><body class=x><section id=s><h2>H</h2>text<p>one</p>"
               "<p class=a>twofold</p></section><div id=d></div>");
        QVERIFY(section.isValid());
        QVERIFY(paragraph.isValid());
        QCOMPARE(reset.size() + removed.size(), 0);
        QCOMPARE(find("[class=a]")->text(), std::string("twofold"));
        QVERIFY(find("body")->hasAttr("class"));
        become("<!DOCTYPE html><title>T</title><body class=x><section id=s><h2>H</h2>text<p>one</p>"
               "<p class=a>twofold</p></section><div id=d></div>");
        QCOMPARE(stack->count(), 1);
    }

    void typing_isUndoneAWordAtATimeAndNeverOverASave()
    {
        const auto type = [this](const char* text) {
            const auto other = parsed(std::string("<!DOCTYPE html><title>T</title><body>") + text);
            commands->apply(differenceTo(*tree->document(), *other), "Typing",
                            PageCommands::Merging::WithTheLast);
        };
        type("a");
        type("ab");
        type("ab\u00a0");
        type("ab c");
        type("ab cd");
        type("ab c");
        type("ab ");
        type("ab <b>c</b>");
        stack->setClean();
        type("ab <b>cd</b>");
        for (const char* before : {"ab <b>c</b>", "ab ", "ab cd", "ab"}) {
            stack->undo();
            QCOMPARE(body(), std::string(before));
        }
        while (stack->canUndo())
            stack->undo();
        QVERIFY(find("#s"));
    }

    void drag_carriesTheRecordAndDropsByTheRules()
    {
        const QModelIndex dragged = model->indexOf(find("[class=a]"));
        const std::unique_ptr<QMimeData> data(model->mimeData({dragged}));
        const auto record = readPropertyList(data->data(QLatin1String(OutlineModel::nodeDragType)));
        QVERIFY(data->data(QLatin1String(OutlineModel::nodeDragType)).startsWith("<?xml"));
        const QVariantMap expected = {{"sourceParentRowNo", qlonglong{4}},
                                      {"sourceChildIndex", qlonglong{2}},
                                      {"sourceItemRowNo", qlonglong{7}}};
        QCOMPARE(record->toMap(), expected);
        const auto allowed = [&](const QModelIndex& target) {
            return model->canDropMimeData(data.get(), Qt::MoveAction, -1, 0, target);
        };
        QVERIFY(allowed(model->indexOf(find("#d"))));
        QVERIFY(!allowed(model->indexOf(find("p"))));
        QVERIFY(!allowed({}));
        QVERIFY(!model->mimeData({model->indexOf(find("body"))}));
        QSignalSpy dropped(model.get(), &OutlineModel::nodeDropped);
        QVERIFY(model->dropMimeData(data.get(), Qt::CopyAction, 0, 0, model->indexOf(find("#d"))));
        QCOMPARE(dropped.size(), 1);
        data->setData(QLatin1String(OutlineModel::nodeDragType), "<plist><dict/></plist>");
        QVERIFY(model->dropMimeData(data.get(), Qt::MoveAction, 0, 0, model->indexOf(find("#d"))));
        QCOMPARE(dropped.size(), 1);
    }

    void activeElement_goesWithItsRow()
    {
        model->setActiveColour(Qt::blue);
        model->setActiveElement(model->indexAtPath({1, 0, 2}));
        const auto isBlue = [this](const char* selector) {
            return model->indexOf(find(selector)).data(Qt::ForegroundRole).value<QColor>() == Qt::blue;
        };
        QVERIFY(isBlue("[class=a]"));
        QVERIFY(!isBlue("p"));
        commands->remove(*find("[class=a]"));
        QVERIFY(!isBlue("p"));
        QVERIFY(!model->indexAtPath({1, 7, 2}).isValid());
    }
};

LUMA_TEST(tst_outlinemodel)
#include "tst_outlinemodel.moc"
