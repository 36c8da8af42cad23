// SPDX-License-Identifier: GPL-3.0-or-later
#include "html/characterdata.h"
#include "page/pagecommands.h"
#include "page/subtreechange.h"
#include "tests/editor/pagewindow.h"
#include "tests/support/registry.h"
#include "tests/support/rows.h"

#include <QLineEdit>
#include <QTcpServer>
#include <QTest>
#include <QUndoStack>

using namespace luma;

namespace {

const std::string mixedPage =
    "<!DOCTYPE html><html><head><title>t</title></head><body>\n<h1 class=\"a b\">One</h1>\n"
    "<section><p>two <b>three</b> <!-- c -->four</p><ul><li>five</li><li>six <i>seven</i></li></ul></section>"
    "<pre>\n\n&lt;eight&gt; &amp;</pre><table><tr><td>nine<td>ten</table><template><p>in</p></template>"
    "<svg viewBox=\"0 0 1 1\"><path d=\"M0 0\"/></svg>bare&nbsp;text<p id=\"last\">eleven \xf0\x9f\x98\x80</p></body></html>";

/// Changes the page at random places, as one event may: texts, attributes, and nodes made, moved, copied and removed.
const QString mutateAtRandom = QStringLiteral(R"(
(function (seed) {
    const random = (most) => (seed = (seed * 1103515245 + 12345) % 2147483648) % most;
    const some = (list) => list[random(list.length)];
    const fits = (parent, node) => !node.contains(parent) && parent.matches('section, li, p, b, i, td, h1, pre, body')
        && (node instanceof Text || node.matches('b, i, u') && !parent.closest('b, i, u'));
    for (let i = 0; i < 6; ++i) {
        const elements = [...document.body.querySelectorAll('*')].filter((e) => !e.closest('svg, template'));
        const element = some(elements);
        const texts = [...element.childNodes].filter((node) => node instanceof Text);
        const added = random(2) ? document.createTextNode('&x' + i) : document.createElement('u');
        added.textContent ||= 'u' + i;
        switch (random(6)) {
        case 0: if (texts.length) some(texts).data += ' <' + i; break;
        case 1: element.setAttribute('data-' + random(3), '<' + i); break;
        case 2: if (!element.matches('tr, tbody, td, li')) element.remove(); break;
        case 3: if (fits(element, added)) element.insertBefore(added, some([...element.childNodes, null])); break;
        case 4: { const moved = some(elements); if (moved && fits(element, moved)) element.append(moved); break; }
        default: if (texts.length && some(texts).length > 1) texts[0].splitText(1);
        }
    }
})(%1))");

} // namespace

/// Tree and rendering follow each other change by change.
class tst_live final : public QObject, private test::PageWindow
{
    Q_OBJECT

private:
    void openAndFollow(const std::string& markup)
    {
        open(markup);
        QTRY_VERIFY(rendering().isFollowing());
    }
    /// What both sides hold, if it is the same.
    QString both() const
    {
        const QString tree =
            QString::fromStdString(window->tree().document()->documentElement()->outerHtml());
        const QString page = answer("document.documentElement.outerHTML");
        return tree == page ? tree : tree + " is not " + page;
    }
    PageCommands commands() const { return {window->tree(), *window->undoStack()}; }
    html::Element& first(const char* selector) const
    {
        return *window->tree().document()->select(selector).front();
    }

private slots:
    void cleanup() { close(); }

    void changesOfTheRendering_reachTheTree()
    {
        openAndFollow(mixedPage);
        const int shown = page().generation();
        for (int seed = 1; seed <= 60; ++seed) {
            (void)answer(mutateAtRandom.arg(seed));
            rendering().catchUp();
            QVERIFY2(rendering().isFollowing(), qPrintable(answer("JSON.stringify(changes.last.at(-1))")));
            QVERIFY2(!both().contains(" is not "), qPrintable(both()));
        }
        const QString edited = both();
        while (window->undoStack()->canUndo())
            trigger("undoAction");
        QCOMPARE(both(), QString::fromStdString(window->tree().document()->documentElement()->outerHtml()));
        while (window->undoStack()->canRedo())
            trigger("redoAction");
        QTRY_COMPARE(both(), edited);
        QCOMPARE(page().generation(), shown);
    }

    // Compared piece by piece, with changes of both sides in between.
    void longPage_isCompared()
    {
        std::string markup = "<template><ul>";
        for (int i = 0; i < 3000; ++i)
            markup += "<li class=\"c" + std::to_string(i) + "\">item <b>" + std::to_string(i) + "</b></li>";
        open(markup + "</ul></template><h1>one</h1>" + markup.substr(10) + "</ul><p>two</p>");
        QTRY_VERIFY(rendering().isFollowing());
        QCOMPARE(answer("fingerprint(true).length"), "1");
        commands().setAttributes(first("h1"), {{"class", "c"}}, "Add Class");
        window->refreshAfterEdit();
        QTRY_VERIFY(both().contains("<h1 class=\"c\">one</h1>"));
        const QString walked =
            QStringLiteral("(fingerprint(false), (() => { for (;;) { const s = fingerprint(false);"
                           " if (s.length === 2) return s[1]; } })())");
        QCOMPARE(answer(walked).toUInt(), fingerprint(*window->tree().document()));
        (void)answer("document.querySelector('p').textContent = 'three'");
        rendering().catchUp();
        QVERIFY(both().contains("<p>three</p>"));
        QCOMPARE(answer(walked).toUInt(), fingerprint(*window->tree().document()));
    }

    // An image, a video or a frame would load anew if the page did, and a form would lose what is typed into it.
    void editsInTheOutline_leaveTheRestOfThePageAlone()
    {
        openAndFollow(
            "<h1>a</h1><input id=i><div style='height: 4000px'></div><section><p>one</p></section>");
        const int shown = page().generation();
        (void)answer("i.value = 'typed'; document.body.scrollTop = 1500");
        setTitle("Other");
        commands().insert(html::CharacterData::text("x"), {&first("body"), nullptr}, "Insert");
        commands().setAttributes(first("section"), {{"class", "c"}}, "Add Class");
        (void)commands().copy(first("h1"), {&first("section"), nullptr});
        window->refreshAfterEdit();
        QTRY_VERIFY(both().contains("<section class=\"c\"><p>one</p><h1>a</h1></section>"));
        QVERIFY(both().contains("<title>Other</title>"));
        QCOMPARE(answer("i.value + document.body.scrollTop"), "typed1500");
        QCOMPARE(page().generation(), shown);
    }

    void caretAfterUndo_isWhereTheEditWas()
    {
        openAndFollow("<p>one two three</p><p>four</p>");
        setCaretBehind("one two");
        type("x");
        QTRY_VERIFY(both().contains("twox"));
        setCaretBehind("four");
        trigger("undoAction");
        QTRY_VERIFY(both().contains("one two three"));
        type("y");
        QTRY_VERIFY(both().contains("<p>one twoy three</p><p>four</p>"));
    }

    void caretAfterATitleEdit_staysWhereItWas()
    {
        openAndFollow("<title>t</title><p>one two three</p><p>four</p>");
        setCaretBehind("one two");
        type("x");
        trigger("pageTitleAction");
        auto* const field = the<QLineEdit>("metaSheetTextField");
        QTRY_VERIFY(field->isVisible());
        field->setText("new");
        QTest::keyClick(field, Qt::Key_Return);
        QTRY_VERIFY(both().contains("<title>new</title>"));
        window->activateWindow();
        focusPage();
        type("y");
        QTRY_VERIFY(both().contains("<p>one twoxy three</p><p>four</p>"));
    }

    void filesChangedOnDisk_areShownInPlace()
    {
        const auto image = [](int width) {
            return "<svg xmlns='http://www.w3.org/2000/svg' width='" + std::to_string(width) +
                   "' height='9'/>";
        };
        put("a.svg", image(30));
        put("a.css", "@import 'b.css'; p { margin-top: 1px }");
        put("b.css", "p { margin-left: 1px }");
        openAndFollow("<link rel=stylesheet href=a.css><p>one</p><img src=a.svg>");
        const QString before = both();
        const int shown = page().generation();
        const QString sizes =
            "{ const { marginTop, marginLeft } = getComputedStyle(document.querySelector('p'));"
            " [marginTop, marginLeft, document.images[0].naturalWidth].join() }";
        QTRY_COMPARE(answer(sizes), "1px,1px,30");
        put("a.svg", image(40));
        QTRY_COMPARE(answer(sizes), "1px,1px,40");
        put("b.css", "p { margin-left: 2px }");
        QTRY_COMPARE(answer(sizes), "1px,2px,40");
        put("a.css", "@import 'b.css'; p { margin-top: 2px }");
        QTRY_COMPARE(answer(sizes), "2px,2px,40");
        QCOMPARE(both(), before);
        QCOMPARE(page().generation(), shown);
        QCOMPARE(window->undoStack()->count(), 0);
        // A web server is still reached.
        QTcpServer server;
        QVERIFY(server.listen(QHostAddress::LocalHost));
        (void)answer("new Image().src = 'http://127.0.0.1:" + QString::number(server.serverPort()) +
                     "/x.png'");
        QTRY_VERIFY(server.hasPendingConnections());
    }

    void picturesOfStyles_areShownAnewInPlace()
    {
        const auto picture = [](const char* colour) {
            return std::string(
                       "<svg xmlns='http://www.w3.org/2000/svg' width='9' height='9'><rect width='9' height='9' fill='") +
                   colour + "'/></svg>";
        };
        put("css/a (1).svg", picture("red"));
        put("b.svg", picture("red"));
        put("css/a.css", "@media all { h1 { background: url('a (1).svg') } }");
        openAndFollow("<link rel=stylesheet href=css/a.css><body style='margin: 0'>"
                      "<h1 style='margin: 0; height: 40px'></h1><p style=\"margin: 0; height: 40px; "
                      "background: url('b.svg')\"></p>");
        const QString before = both();
        const auto isShown = [this](int y, const QColor& colour) {
            const QImage shown = rendering().webView()->grab().toImage();
            return shown.pixelColor(20, y) == colour;
        };
        QTRY_VERIFY(isShown(20, Qt::red));
        QTRY_VERIFY(isShown(60, Qt::red));
        put("css/a (1).svg", picture("blue"));
        QTRY_VERIFY(isShown(20, Qt::blue));
        put("b.svg", picture("blue"));
        QTRY_VERIFY(isShown(60, Qt::blue));
        QCOMPARE(both(), before);
        QCOMPARE(window->undoStack()->count(), 0);
    }

    // A page can tell what it likes.
    void changeThatDoesNotFit_isRefused_data()
    {
        const test::Rows<QString> row("change");
        row("no such path", "path: [1, 7], name: 'p', before: 0, after: 0, elements: 0");
        row("another element", "path: [1, 0], name: 'div', before: 0, after: 0, elements: 0");
        row("too many children",
            "path: [1], name: 'body', before: 2147483647, after: 2147483647, elements: 0");
        row("other elements", "path: [1, 0], name: 'p', before: 0, after: 0, elements: 3");
        row("whole page", "path: [], name: 'html', before: 0, after: 0, elements: 0");
        row("into a template", "path: [1, 1, 0], name: 'p', before: 0, after: 0, elements: 0");
        row("negative", "path: [-1], name: 'p', before: -3, after: 0, elements: 0");
    }
    void changeThatDoesNotFit_isRefused()
    {
        QFETCH(QString, change);
        openAndFollow("<p>one</p><template><p>two</p></template>");
        const QString before = both();
        (void)answer("post('mutationObserver', [1, { markup: 'false', " + change + " }, 'insertText'])");
        setCaretBehind("one");
        type("x");
        QTRY_COMPARE(both(), QString(before).replace("one", "onex"));
    }

    // No markup parses to a paragraph in a paragraph, so the tree holds something else and the page is shown anew.
    void differentShapes_areNotPatched()
    {
        openAndFollow("<p id=a>one</p><p id=b>two</p>");
        (void)answer("a.append(b)");
        rendering().catchUp();
        QVERIFY(!rendering().isFollowing());
        setTitle("t");
        window->refreshAfterEdit();
        QTRY_VERIFY(rendering().isFollowing());
        QVERIFY(both().contains("<p id=\"a\">one</p><p id=\"b\">two</p>"));
    }
};

LUMA_TEST(tst_live)
#include "tst_live.moc"
