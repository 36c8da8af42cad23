// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/support/registry.h"
#include "tests/web/webfixture.h"
#include "web/scriptcall.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>
#include <QTest>

using namespace luma;
using luma::test::WebFixture;

/// The page-side editing in the real engine: a body with the caret as "|", or the selection as "[" and "]",
/// keys or a script in, the body out.
class tst_editing final : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<WebFixture> web;

    void columns(const char* input)
    {
        QTest::addColumn<QByteArray>("before");
        QTest::addColumn<QByteArray>(input);
        QTest::addColumn<QByteArray>("after");
    }
    void row(const char* name, const char* before, const char* input, const char* after)
    {
        QTest::newRow(name) << QByteArray(before) << QByteArray(input) << QByteArray(after);
    }

    /// Words in angle brackets are keys, everything else is typed.
    void press(const QByteArray& keys)
    {
        static const QHash<QByteArray, QPair<int, Qt::KeyboardModifiers>> named = {
            {"Enter", {Qt::Key_Return, {}}},
            {"Break", {Qt::Key_Return, Qt::ShiftModifier}},
            {"Backspace", {Qt::Key_Backspace, {}}},
            {"Delete", {Qt::Key_Delete, {}}},
            {"Left", {Qt::Key_Left, {}}},
            {"Right", {Qt::Key_Right, {}}},
            {"All", {Qt::Key_A, Qt::ControlModifier}},
            {"Copy", {Qt::Key_C, Qt::ControlModifier}},
            {"Paste", {Qt::Key_V, Qt::ControlModifier}},
            {"PastePlain", {Qt::Key_V, Qt::ControlModifier | Qt::ShiftModifier}},
            {"Cut", {Qt::Key_X, Qt::ControlModifier}},
            {"WordBehind", {Qt::Key_Delete, Qt::ControlModifier}},
            {"Word", {Qt::Key_Backspace, Qt::ControlModifier}},
            {"Bold", {Qt::Key_B, Qt::ControlModifier}},
            {"Italic", {Qt::Key_I, Qt::ControlModifier}},
        };
        for (qsizetype at = 0; at < keys.size();) {
            const qsizetype end = keys.indexOf('>', at);
            if (keys[at] == '<' && named.contains(keys.mid(at + 1, end - at - 1))) {
                const auto [key, modifiers] = named.value(keys.mid(at + 1, end - at - 1));
                web->press(key, modifiers);
                at = end + 1;
            } else {
                web->type(QString(QChar::fromLatin1(keys[at++])));
            }
        }
    }

    QString bodyAfter(const QString& script = QString())
    {
        if (!script.isEmpty())
            (void)web->answer(script);
        (void)web->answer("countOfChanges()");
        return web->body();
    }

private slots:
    void initTestCase() { web = std::make_unique<WebFixture>(); }
    void cleanupTestCase() { web.reset(); }

    void keys_data()
    {
        columns("keys");
        row("words", "<p>one|</p>", " two three", "<p>one two three</p>");
        row("blanks", "<p>one|</p>", "  two  ", "<p>one two </p>");
        row("blank in the middle", "<p>one|two</p>", " ", "<p>one two</p>");
        row("over a blank", "<p>one| two</p>", " x", "<p>one xtwo</p>");
        row("no-break space stays", "<p>10&nbsp;|km</p>", "0", "<p>10&nbsp;0km</p>");
        row("no-break space behind stays", "<p>10|&nbsp;km</p>", "0 ", "<p>100&nbsp;km</p>");
        row("enter at the end", "<p class=\"a\" id=\"b\">one|</p>", "<Enter>two",
            "<p class=\"a\" id=\"b\">one</p><p class=\"a\">two</p>");
        row("enter in the middle", "<p>one <b>t|wo</b></p>", "<Enter>x",
            "<p>one <b>t</b></p><p><b>xwo</b></p>");
        row("enter at the start", "<p>|one</p>", "<Enter>", "<p><br></p><p>one</p>");
        row("enter keeps styled spans", "<p><span style=\"color: red\">on|e</span></p>", "<Enter>x",
            "<p><span style=\"color: red\">on</span></p><p><span style=\"color: red\">xe</span></p>");
        row("enter after a heading", "<h2 class=\"a\">one|</h2>", "<Enter>two",
            "<h2 class=\"a\">one</h2><p>two</p>");
        row("enter within a heading", "<h2>o|ne</h2>", "<Enter>", "<h2>o</h2><h2>ne</h2>");
        row("enter on an empty item", "<ul><li>one</li><li>|</li></ul><p>x</p>", "<Enter>two",
            "<ul><li>one</li></ul><p>two</p><p>x</p>");
        row("enter on an empty item within", "<ol><li>a</li><li>|</li><li>b</li></ol>", "<Enter>c",
            "<ol><li>a</li></ol><p>c</p><ol><li>b</li></ol>");
        row("enter on an empty nested item", "<ul><li>a<ul><li>b</li><li>|</li></ul></li></ul>", "<Enter>c",
            "<ul><li>a<ul><li>b</li></ul></li><li>c</li></ul>");
        row("enter on a selection", "<p>o[n]e</p>", "<Enter>", "<p>o</p><p>e</p>");
        row("enter in pre", "<pre>one|</pre>", "<Enter>two", "<pre>one\ntwo\n</pre>");
        row("enter in bare text", "one|", "<Enter>two", "<p>one</p><p>two</p>");
        row("enter in a cell", "<table><tbody><tr><td>one|</td></tr></tbody></table>", "<Enter>two",
            "<table><tbody><tr><td>one<br>two</td></tr></tbody></table>");
        row("enter leaves a quote", "<blockquote><p>one</p><p>|</p></blockquote>", "<Enter>x",
            "<blockquote><p>one</p></blockquote><p>x</p>");
        row("line break", "<p>one|</p>", "<Break>two", "<p>one<br>two</p>");
        row("line break in an item", "<ul><li>one|</li></ul>", "<Break>two", "<ul><li>one<br>two</li></ul>");
        row("line break in a heading", "<h1>one|</h1>", "<Break>two", "<h1>one<br>two</h1>");
        row("line break in a styled text", "<p><b>on|e</b></p>", "<Break>", "<p><b>on<br>e</b></p>");
        row("line break in pre", "<pre>a|b</pre>", "<Break>", "<pre>a\nb</pre>");
        row("line break in bare text", "a|b", "<Break>", "a<br>b");
        row("line break over a selection", "<p>o[n]e</p>", "<Break>", "<p>o<br>e</p>");
        row("enter in a link", "<p><a href=\"x\">on|e</a></p>", "<Enter>",
            "<p><a href=\"x\">on</a></p><p><a href=\"x\">e</a></p>");
        row("enter behind an image", "<p><img src=\"x\">|</p>", "<Enter>a", "<p><img src=\"x\"></p><p>a</p>");
        row("enter over blocks", "<p>o[ne</p><p>tw]o</p>", "<Enter>", "<p>o</p><p>o</p>");
        row("enter at an item's start", "<ul><li>|one</li></ul>", "<Enter>",
            "<ul><li><br></li><li>one</li></ul>");
        row("enter twice at a list's end", "<ol class=\"c\"><li>one|</li></ol>", "<Enter><Enter>two",
            "<ol class=\"c\"><li>one</li></ol><p>two</p>");
        row("backspace to the last letter", "<p>ab|</p>", "<Backspace><Backspace>c", "<p>c</p>");
        row("backspace of an emoji", "<p>a\xf0\x9f\x91\xa9\xe2\x80\x8d\xf0\x9f\x91\xa7|b</p>", "<Backspace>",
            "<p>ab</p>");
        row("backspace joins", "<h1>one</h1><p class=\"x\"><i>|two</i> three</p>", "<Backspace>-",
            "<h1>one-<i>two</i> three</h1>");
        row("backspace joins with blanks between", "<p>one</p>\n <p>|two</p>", "<Backspace>-",
            "<p>one-two</p>\n ");
        row("backspace joins items", "<ul><li>one</li><li>|two</li></ul>", "<Backspace>-",
            "<ul><li>one-two</li></ul>");
        row("backspace in the first item", "<ul><li>|one</li><li>two</li></ul>", "<Backspace>",
            "<p>one</p><ul><li>two</li></ul>");
        row("backspace into a list", "<ul><li>one</li></ul><p>|two</p>", "<Backspace>-",
            "<ul><li>one-two</li></ul>");
        row("backspace takes a rule", "<p>one</p><hr><p>|two</p>", "<Backspace>", "<p>one</p><p>two</p>");
        row("backspace takes an empty block", "<p class=\"e\"><br></p><h2>|two</h2>", "<Backspace>x",
            "<h2>xtwo</h2>");
        row("backspace at a cell", "<p>x</p><table><tbody><tr><td>|one</td></tr></tbody></table>",
            "<Backspace>", "<p>x</p><table><tbody><tr><td>one</td></tr></tbody></table>");
        row("backspace at the page's start", "<p>|one</p>", "<Backspace>", "<p>one</p>");
        row("delete", "<p>|one</p>", "<Delete>", "<p>ne</p>");
        row("delete joins", "<p>one|</p><h1><b>two</b> x</h1>", "<Delete>-", "<p>one-<b>two</b> x</p>");
        row("delete joins items", "<ul><li>one|</li><li>two</li></ul>", "<Delete>-",
            "<ul><li>one-two</li></ul>");
        row("delete into a list", "<p>one|</p><ul><li>two</li><li>three</li></ul>", "<Delete>-",
            "<p>one-two</p><ul><li>three</li></ul>");
        row("delete takes a rule", "<p>one|</p><hr><p>two</p>", "<Delete>", "<p>one</p><p>two</p>");
        row("delete takes an image", "<p>one|<img src=\"x\">two</p>", "<Delete>-", "<p>one-two</p>");
        row("backspace takes an image", "<p>one<img src=\"x\">|two</p>", "<Backspace>-", "<p>one-two</p>");
        row("backspace takes a line break", "<p>one<br>|two</p>", "<Backspace>-", "<p>one-two</p>");
        row("delete in an empty block", "<p>|</p><p class=\"c\">two</p>", "<Delete>x",
            "<p class=\"c\">xtwo</p>");
        row("delete at a cell's end", "<table><tbody><tr><td>a|</td><td>b</td></tr></tbody></table>",
            "<Delete>", "<table><tbody><tr><td>a</td><td>b</td></tr></tbody></table>");
        row("delete at the page's end", "<p>one|</p>", "<Delete>", "<p>one</p>");
        row("delete of a word", "<p>|one two</p>", "<WordBehind>x", "<p>x two</p>");
        row("cut over blocks", "<h1>o[ne</h1><p>tw]o</p>", "<Cut>", "<h1>oo</h1>");
        row("cut a styled word", "<p>a <b>[one]</b> b</p>", "<Cut>", "<p>a  b</p>");
        row("delete a selection over blocks", "<h1>o[ne</h1><p>x</p><p style=\"color: red\">tw]o</p>",
            "<Delete>", "<h1>oo</h1>");
        row("backspace of a word", "<p>one two|</p>", "<Word>x", "<p>one x</p>");
        row("letter over a styled selection", "<p>a <b>[one</b> two]</p>", "xy", "<p>a <b>xy</b></p>");
        row("letter over a plain selection", "<p>[one <b>two]</b></p>", "x", "<p>x</p>");
        row("letter over blocks", "<h1>o[ne</h1><p class=\"c\">x</p><p>tw]o</p>", "x", "<h1>oxo</h1>");
        row("letter over an image", "<p>a<img src=\"x\">[b]</p>", "c", "<p>a<img src=\"x\">c</p>");
        row("empty page", "|", "Hi", "<p>Hi</p>");
        row("emptied page", "<h1>One</h1><p>two</p>", "<All><Delete>Hi", "<p>Hi</p>");
        row("emptied block", "<p>one</p><p>[two]</p>", "<Delete>", "<p>one</p><p><br></p>");
        const char* const icons =
            "<i class=\"icon\"></i><span class=\"s\"></span><x-y></x-y><!-- c --><script></script>";
        const auto kept = [this, icons](const char* name, const QByteArray& before, const char* pressed,
                                        const QByteArray& after) {
            QTest::newRow(name) << QByteArray(before).replace("*", icons) << QByteArray(pressed)
                                << QByteArray(after).replace("*", icons);
        };
        kept("enter keeps icons", "<p>*one| two*</p>", "<Enter>", "<p>*one</p><p> two*</p>");
        kept("letter over a selection keeps icons", "<p>*o[n]e*</p>", "x", "<p>*oxe*</p>");
        kept("deletion over blocks keeps icons", "<p>*o[ne</p><p>tw]o*</p>", "<Delete>", "<p>*oo*</p>");
        kept("cut keeps icons", "<p>*o[n]e*</p>", "<Cut>", "<p>*oe*</p>");
        kept("backspace behind icons", "<p>*</p><p>|one</p>", "<Backspace>", "<p>*</p><p>one</p>");
        kept("bare text keeps what is below", "<div>o[n]e<p>*two</p></div>", "x",
             "<div>oxe<p>*two</p></div>");
        row("deletion keeps what can't be seen", "<p>a[b<!-- c --><script></script>c]d</p>", "<Delete>",
            "<p>a<!-- c --><script></script>d</p>");
        row("deletion into a wrapper keeps it", "<p>o[ne</p><div class=\"w\">tw]o<p>three</p></div>",
            "<Delete>", "<p>oo</p><div class=\"w\"><p>three</p></div>");
        row("deletion over cells empties them",
            "<table><tbody><tr><td>a[b</td><td><b>c</b></td><td>d]e</td></tr></tbody></table>", "<Delete>",
            "<table><tbody><tr><td>a</td><td><br></td><td>e</td></tr></tbody></table>");
        row("triple click", "<p>[one</p><p>]two</p>", "x", "<p>x</p><p>two</p>");
        row("bold at a caret", "<p>one| two</p>", "<Bold>xy<Bold>z", "<p>one<b>xy</b>z two</p>");
        row("bold word", "<p>one|</p>", " <Bold>two<Bold> three", "<p>one <b>two</b> three</p>");
        row("bold before a blank", "<p>one|</p>", "<Bold> two", "<p>one <b>two</b></p>");
        row("bold off before a blank", "<p><b>one|</b> four</p>", "<Bold> two", "<p><b>one</b> two four</p>");
        row("two styles off before a blank", "<p>|</p>", "<Bold><Italic>one<Bold><Italic> two  three",
            "<p><b><i>one</i></b> two three</p>");
        row("two styles off in the middle", "<p><b><i>one|</i></b> four</p>", "<Bold><Italic> two",
            "<p><b><i>one</i></b> two four</p>");
        row("bold off before Enter", "<p><b>one|</b></p>", "<Bold><Enter>two", "<p><b>one</b></p><p>two</p>");
        row("last letter of a styled word", "<p>a <b>b|</b></p>", "<Backspace>c", "<p>a <b>c</b></p>");
        row("last letter before a blank", "<p>a<b>b|</b> c</p>", "<Backspace>", "<p>a c</p>");
        row("last letters of two styles", "<p>a <b><i>xy|</i></b></p>", "<Backspace><Backspace>",
            "<p>a </p>");
        row("only letter of a style", "<p>a|</p>", "<Bold>x<Backspace>b<Bold> c", "<p>a<b>b</b> c</p>");
        row("last letter of a link", "<p>See <a href=\"x\">y|</a>.</p>", "<Backspace>z", "<p>See z.</p>");
        row("image behind a blank", "<p>a <img src=\"x\">|</p>", "<Backspace>z", "<p>a z</p>");
        row("image between blanks", "<p>a <img src=\"x\">| b</p>", "<Backspace>z", "<p>a z b</p>");
        row("line break before a blank", "<p>one| two</p>", "<Break>x", "<p>one<br>x two</p>");
        row("image behind a no-break space", "<p>a&nbsp;<img src=\"x\">| b</p>", "<Backspace>z",
            "<p>a&nbsp;z b</p>");
        row("blank behind a link", "<p>See <a href=\"x\">here|</a></p>", " now",
            "<p>See <a href=\"x\">here</a> now</p>");
        row("mark behind a link", "<p>See <a href=\"x\"><b>here|</b></a></p>", ", now",
            "<p>See <a href=\"x\"><b>here</b></a>, now</p>");
        row("enter behind a link", "<p>See <a href=\"x\">here|</a></p>", "<Enter>two",
            "<p>See <a href=\"x\">here</a></p><p>two</p>");
        row("letters behind a link", "<p>See <a href=\"x\">her|</a>.</p>", "e too",
            "<p>See <a href=\"x\">here</a> too.</p>");
        row("blank over a blank behind a link", "<p>See <a href=\"x\">here|</a> now</p>", " x",
            "<p>See <a href=\"x\">here</a> xnow</p>");
        row("behind a link in a menu", "<ul><li><a href=\"x\">Home|</a></li></ul>", " page",
            "<ul><li><a href=\"x\">Home page</a></li></ul>");
        row("new text of a link", "<p>See <a href=\"x\">[here]</a>.</p>", "the<Backspace>e page",
            "<p>See <a href=\"x\">the page</a>.</p>");
        row("behind the new text of a link", "<p>See <a href=\"x\">[here]</a></p>", "there<Left><Right> now",
            "<p>See <a href=\"x\">there</a> now</p>");
        row("bold before Enter", "<p>one|</p>", "<Bold><Enter>two", "<p>one</p><p><b>two</b></p>");
        row("bold off over a blank", "<p><b>one| two</b></p>", "<Bold> x", "<p><b>one </b>x<b>two</b></p>");
        row("page that begins with a template", "<template><p>t</p></template>|one", "x",
            "<template><p>t</p></template>xone");
        row("page that begins with an element of its own", "<x-top><p>t</p></x-top>o|ne", "x",
            "<x-top><p>t</p></x-top>oxne");
        row("enter behind an element with blocks", "<x-top><p>t</p></x-top>one|", "<Enter>x",
            "<x-top><p>t</p></x-top><p>one</p><p>x</p>");
        row("in front of a field", "<p>a|<input id=\"i\">b</p>", "xy", "<p>axy<input id=\"i\">b</p>");
        row("block in front of a field", "<form>|<input><select><option>b</option></select></form>", "x",
            "<form>x<input><select><option>b</option></select></form>");
        row("triple click in an item", "<ul><li>[one</li><li>]two</li></ul>", "x",
            "<ul><li>x</li><li>two</li></ul>");
        row("triple click in front of a table",
            "<p>[one</p><table><tbody><tr><td>]a</td></tr></tbody></table>", "x",
            "<p>x</p><table><tbody><tr><td>a</td></tr></tbody></table>");
        row("triple click on bare text", "<div>[one<p>]two</p></div>", "x", "<div>x<p>two</p></div>");
        row("enter in bare text of a division", "<div class=\"d\">one|<p>two</p></div>", "<Enter>x",
            "<div class=\"d\"><p>one</p><p>x</p><p>two</p></div>");
        row("deletion over items", "<ul><li>o[ne</li><li>x</li><li>tw]o</li></ul>", "<Delete>",
            "<ul><li>oo</li></ul>");
        row("deletion over wrappers keeps them",
            "<section><p>o[ne</p></section><section class=\"s\"><p>tw]o</p><p>x</p></section>", "<Delete>",
            "<section><p>oo</p></section><section class=\"s\"><p>x</p></section>");
        row("deletion keeps a drawing's parts",
            "<p>a[b</p><svg viewBox=\"0 0 1 1\"><g><path d=\"M0 0\"></path></g></svg><p>c]d</p>", "<Delete>",
            "<p>ad</p>");
        row("deletion of table and text",
            "<p>a[b</p><table><tbody><tr><td>x</td></tr></tbody></table><p>c]d</p>", "<Delete>", "<p>ad</p>");
        row("deletion from text into cells",
            "<p>a[b</p><table><tbody><tr><td>x</td><td>y]z</td></tr></tbody></table>", "<Delete>",
            "<p>a</p><table><tbody><tr><td><br></td><td>z</td></tr></tbody></table>");
        row("own styles stay", "<p><span style=\"color: red\">a|</span> <font color=\"red\">b</font></p>",
            "x", "<p><span style=\"color: red\">ax</span> <font color=\"red\">b</font></p>");
    }
    void keys()
    {
        QFETCH(QByteArray, before);
        QFETCH(QByteArray, keys);
        QFETCH(QByteArray, after);
        QVERIFY(web->showMarked(before));
        press(keys);
        QCOMPARE(bodyAfter(), QString::fromUtf8(after));
    }

    void commands_data()
    {
        columns("script");
        row("bold", "<p>o[n]e</p>", "doCommand('Bold')", "<p>o<b>n</b>e</p>");
        row("bold of a word", "<p>one t|wo</p>", "applyStyle('Bold')", "<p>one <b>two</b></p>");
        row("bold off", "<p><strong>o[n]e</strong></p>", "doCommand('Bold')",
            "<p><strong>o</strong>n<strong>e</strong></p>");
        row("bold in a heading", "<h1>o[n]e</h1>", "doCommand('Bold')", "<h1>o<b>n</b>e</h1>");
        row("italic over blocks", "<p>o[ne</p><p>tw]o</p>", "applyStyle('Italic')",
            "<p>o<i>ne</i></p><p><i>tw</i>o</p>");
        row("strike", "<p>[one]</p>", "doCommand('Strike Through')", "<p><s>one</s></p>");
        row("sub", "<p>H[2]O</p>", "doCommand('Subscript')", "<p>H<sub>2</sub>O</p>");
        row("super", "<p>x[2]</p>", "doCommand('Superscript')", "<p>x<sup>2</sup></p>");
        row("remove one", "<p><b><i>[one]</i></b></p>", "removeStyle('Bold')", "<p><i>one</i></p>");
        row("remove all", "<p><b>x<i>[one]</i></b><a href=\"#\">y</a></p>", "removeStyle('')",
            "<p><b>x</b>one<a href=\"#\">y</a></p>");
        row("remove format", "<p><b>[one]</b></p>", "doCommand('Remove Format')", "<p>one</p>");
        row("heading", "<p class=\"a\">o|ne</p>", "applyStyle('Heading 2')", "<h2 class=\"a\">one</h2>");
        row("heading of bare text", "o|ne<p>x</p>", "applyStyle('Heading 1')", "<h1>one</h1><p>x</p>");
        row("heading off", "<h3>o|ne</h3>", "doCommand('Heading 3')", "<p>one</p>");
        row("paragraphs", "<h1>[a</h1><h2>b]</h2>", "doCommand('Paragraph')", "<p>a</p><p>b</p>");
        row("preformatted", "<p>a|</p>", "applyStyle('Preformatted')", "<pre>a</pre>");
        row("block quote", "<p>[a</p><p>b]</p>", "doCommand('Block Quote')",
            "<blockquote><p>a</p><p>b</p></blockquote>");
        row("block quote off", "<blockquote><p>a|</p></blockquote>", "removeStyle('Block Quote')",
            "<p>a</p>");
        row("list", "<p>[a</p><p>b]</p>", "doCommand('Ordered List')", "<ol><li>a</li><li>b</li></ol>");
        row("list keeps attributes", "<p id=\"i\" class=\"c\">a|</p>", "doCommand('Ordered List')",
            "<ol><li id=\"i\" class=\"c\">a</li></ol>");
        row("list off keeps attributes", "<ul><li id=\"i\">a|</li></ul>", "doCommand('Unordered List')",
            "<p id=\"i\">a</p>");
        row("list off", "<ul><li>[a</li><li>b]</li></ul>", "doCommand('Unordered List')", "<p>a</p><p>b</p>");
        row("other list", "<ul class=\"x\"><li>a|</li></ul>", "applyStyle('Ordered List')",
            "<ol class=\"x\"><li>a</li></ol>");
        row("indent item", "<ul><li>a</li><li>b|</li></ul>", "doCommand('Indent')",
            "<ul><li>a<ul><li>b</li></ul></li></ul>");
        row("outdent item", "<ul><li>a<ul><li>b|</li><li>c</li></ul></li></ul>", "doCommand('Outdent')",
            "<ul><li>a</li><li>b<ul><li>c</li></ul></li></ul>");
        row("indent paragraph", "<p>a|</p>", "doCommand('Indent')", "<blockquote><p>a</p></blockquote>");
        row("outdent paragraph", "<blockquote><p>a|</p></blockquote>", "doCommand('Outdent')", "<p>a</p>");
        row("centre", "<p>a|</p>", "doCommand('Justify Center')", "<p style=\"text-align: center;\">a</p>");
        row("left", "<p style=\"color: red; text-align: right;\">a|</p>", "doCommand('Justify Left')",
            "<p style=\"color: red;\">a</p>");
        row("full", "<p align=\"right\">a|</p>", "doCommand('Justify Full')",
            "<p style=\"text-align: justify;\">a</p>");
        row("no justification", "<p style=\"text-align: right\">a|</p>", "removeJustfication('')",
            "<p>a</p>");
        row("link", "<p>[a]</p>", "doCommand('Create Link', 'x.html')", "<p><a href=\"x.html\">a</a></p>");
        row("link without a selection", "<p>a|</p>", "doCommand('Create Link', 'x')",
            "<p>a<a href=\"x\">x</a></p>");
        row("unlink", "<p><a href=\"x\">a|b</a></p>", "doCommand('Unlink')", "<p>ab</p>");
        row("image", "<p>a|b</p>", "doCommand('Insert Image', 'x y.png')",
            "<p>a<img src=\"x y.png\" alt=\"\">b</p>");
        row("list in a cell", "<table><tbody><tr><td>[a</td><td>b]</td></tr></tbody></table>",
            "doCommand('Ordered List')",
            "<table><tbody><tr><td><ol><li>a</li></ol></td><td><ol><li>b</li></ol></td></tr></tbody></table>");
        row("quote of bare text", "<footer>o|ne<p>two</p></footer>", "doCommand('Block Quote')",
            "<footer><blockquote><p>one</p></blockquote><p>two</p></footer>");
        row("indent in a cell", "<table><tbody><tr><td>a|</td></tr></tbody></table>", "doCommand('Indent')",
            "<table><tbody><tr><td><blockquote><p>a</p></blockquote></td></tr></tbody></table>");
        row("heading in a summary", "<details><summary>a|</summary>b</details>", "doCommand('Heading 2')",
            "<details><summary><h2>a</h2></summary>b</details>");
        row("heading off in a caption", "<table><caption><h2>a|</h2></caption></table>",
            "doCommand('Heading 2')", "<table><caption>a</caption></table>");
        row("no list in a summary", "<details><summary>a|</summary>b</details>", "doCommand('Ordered List')",
            "<details><summary>a</summary>b</details>");
        row("list of bare text", "<section><h2>h</h2>o|ne<p>x</p></section>", "doCommand('Unordered List')",
            "<section><h2>h</h2><ul><li>one</li></ul><p>x</p></section>");
        row("indent of bare text", "<div class=\"d\">o|ne <b>two</b></div>", "doCommand('Indent')",
            "<div class=\"d\"><blockquote><p>one <b>two</b></p></blockquote></div>");
        row("quote over cells",
            "<table><tbody><tr><td>[a</td><td><p>b</p></td><td>c]</td></tr></tbody></table>",
            "doCommand('Block Quote')",
            "<table><tbody><tr><td><blockquote><p>a</p></blockquote></td><td><blockquote><p>b</p></blockquote></td>"
            "<td><blockquote><p>c</p></blockquote></td></tr></tbody></table>");
        row("quote off in a cell",
            "<blockquote><table><tbody><tr><td><blockquote><p>a|</p></blockquote></td></tr></tbody></table></blockquote>",
            "doCommand('Block Quote')",
            "<blockquote><table><tbody><tr><td><p>a</p></td></tr></tbody></table></blockquote>");
        row("quote in a cell of a quote",
            "<blockquote><table><tbody><tr><td>a|</td></tr></tbody></table></blockquote>",
            "doCommand('Block Quote')",
            "<blockquote><table><tbody><tr><td><blockquote><p>a</p></blockquote></td></tr></tbody></table></blockquote>");
        row("outdent in a cell of a quote",
            "<blockquote><table><tbody><tr><td><p>a|</p></td></tr></tbody></table></blockquote>",
            "doCommand('Outdent')",
            "<blockquote><table><tbody><tr><td><p>a</p></td></tr></tbody></table></blockquote>");
        row("list off in a cell of an item",
            "<ul><li>x<table><tbody><tr><td>a|</td></tr></tbody></table></li></ul>",
            "doCommand('Unordered List')",
            "<ul><li>x<table><tbody><tr><td><ul><li>a</li></ul></td></tr></tbody></table></li></ul>");
        row("list off of an item with a class",
            "<ol class=\"o\"><li class=\"c\"><p>a|</p></li><li>b</li></ol>", "doCommand('Ordered List')",
            "<p class=\"c\">a</p><ol class=\"o\"><li>b</li></ol>");
        row("heading of a cell", "<table><tbody><tr><td>a|</td></tr></tbody></table>",
            "doCommand('Heading 2')", "<table><tbody><tr><td><h2>a</h2></td></tr></tbody></table>");
        row("heading of an item", "<ul><li>a|<ul><li>b</li></ul></li></ul>", "doCommand('Heading 2')",
            "<ul><li><h2>a</h2><ul><li>b</li></ul></li></ul>");
        row("link over blocks", "<p>a[b</p><p>c]d</p>", "doCommand('Create Link', 'y')",
            "<p>a<a href=\"y\">b</a></p><p><a href=\"y\">c</a>d</p>");
        row("link of an icon", "<p>[<i class=\"icon\"></i> a]</p>", "doCommand('Create Link', 'y')",
            "<p><a href=\"y\"><i class=\"icon\"></i> a</a></p>");
        row("unlink a part", "<p><a href=\"x\" class=\"c\">a[b]c</a></p>", "doCommand('Unlink')",
            "<p><a href=\"x\" class=\"c\">a</a>b<a href=\"x\" class=\"c\">c</a></p>");
        row("justification keeps importance", "<p style=\"color:red !important;background:url(a;b)\">a|</p>",
            "doCommand('Justify Right')",
            "<p style=\"color:red !important;background:url(a;b); text-align: right;\">a</p>");
        row("edit link", "<p><a class=\"c\" target=\"t\" href=\"x\" id=\"i\"><b>a|</b></a></p>",
            "doCommand('Edit Link', 'y')",
            "<p><a class=\"c\" target=\"t\" href=\"y\" id=\"i\"><b>a</b></a></p>");
        row("link in a link", "<p><a class=\"c\" href=\"x\">[a]b</a></p>", "doCommand('Create Link', 'y')",
            "<p><a class=\"c\" href=\"y\">ab</a></p>");
        row("unlink an image", "<p>[a<a href=\"x\"><img src=\"y\"></a>]</p>", "doCommand('Unlink')",
            "<p>a<img src=\"y\"></p>");
        row("justification keeps what is unknown",
            "<p style=\"-x-a:1;text-align:right;b: url('a;b')\">a|</p>", "doCommand('Justify Center')",
            "<p style=\"-x-a:1;b: url('a;b'); text-align: center;\">a</p>");
        row("unknown", "<p>a|</p>", "doCommand('constructor'); applyStyle('toString'); removeStyle('x')",
            "<p>a</p>");
    }
    void commands()
    {
        QFETCH(QByteArray, before);
        QFETCH(QByteArray, script);
        QFETCH(QByteArray, after);
        QVERIFY(web->showMarked(before));
        QCOMPARE(bodyAfter(QString::fromUtf8(script)), QString::fromUtf8(after));
    }

    void state_followsTheSelection_data()
    {
        columns("script");
        row("styles", "<ul><li><b>a<em>|b</em></b></li></ul>", "getTextTags().join()",
            "Bold,Italic,Unordered List");
        row("block", "<blockquote><h2>|b</h2></blockquote>", "getTextTags().join()", "Heading 2,Block Quote");
        row("all of it", "<p>[a<b>b</b>]</p>", "getTextTags().join()", "Paragraph");
        row("left", "<p>a|</p>", "getCurrentJustification().join()", "Justify Left");
        row("right to left", "<p dir=\"rtl\">a|</p>", "getCurrentJustification().join()", "Justify Right");
        row("inherited", "<div align=\"center\"><p>a|</p></div>", "getCurrentJustification().join()",
            "Justify Center");
        row("link", "<p><a href=\"a'b.html\">x|</a></p>", "getLink()", "a'b.html");
        row("link selected", "<p>[a <a href=\"b\">x</a>]</p>", "getLink()", "b");
        row("no link", "<p>x|</p>", "getLink()", "");
    }
    void state_followsTheSelection()
    {
        QFETCH(QByteArray, before);
        QFETCH(QByteArray, script);
        QFETCH(QByteArray, after);
        QVERIFY(web->showMarked(before));
        QCOMPARE(web->answer(QString::fromUtf8(script)), QString::fromUtf8(after));
    }

    void paste_data()
    {
        columns("clipboard");
        row("inline", "<p>a|b</p>", "x <b class=\"c\" style=\"color:red\">y</b>", "<p>ax <b>y</b>b</p>");
        row("blocks", "<p>a|b</p>", "<h2 id=\"x\">one</h2><div class=\"MsoNormal\">two</div>",
            "<p>a</p><h2>one</h2><p>two</p><p>b</p>");
        row("into an empty paragraph", "<p>|</p>", "<ul><li>one</li></ul>", "<ul><li>one</li></ul>");
        row("into an item", "<ul><li>a|</li></ul>", "<span>b</span>", "<ul><li>ab</li></ul>");
        row("scripts", "<p>a|</p>",
            "x<script>document.body.remove()</script><img src=x onerror=\"alert(1)\">"
            "<a href=\"java\nscript:alert(1)\">y</a><svg onload=\"alert(1)\"></svg>",
            "<p>ax<img src=\"x\">y</p>");
        row("word processor", "<p>|</p>",
            "<meta charset=\"utf-8\"><b style=\"font-weight:normal\"><p dir=\"ltr\" "
            "style=\"margin:0\"><span style=\"font-size:11pt\">one</span></p></b>",
            "<p>one</p>");
        row("table", "<p>a|</p>", "<table border=1 class=x><tr><td style=\"x\">1</td></tr></table>",
            "<p>a</p><table><tbody><tr><td>1</td></tr></tbody></table>");
        row("into pre", "<pre>a|</pre>", "<b>x</b>", "<pre>ax</pre>");
        row("empty page", "|", "one", "<p>one</p>");
        row("into bare text", "a|b", "<i>x</i>", "a<i>x</i>b");
        row("plain words", "<p>a|b</p>", "text:x <b>y", "<p>ax &lt;b&gt;yb</p>");
        row("plain lines", "<p>a|</p>", "text:x\ny", "<p>ax<br>y</p>");
        row("plain paragraphs", "<p>a|b</p>", "text:x\ny\n\nz", "<p>a</p><p>x<br>y</p><p>z</p><p>b</p>");
    }
    void paste()
    {
        QFETCH(QByteArray, before);
        QFETCH(QByteArray, clipboard);
        QFETCH(QByteArray, after);
        QVERIFY(web->showMarked(before));
        const bool isPlain = clipboard.startsWith("text:");
        auto* data = new QMimeData;
        data->setHtml(isPlain ? "<h1>styled</h1>" : QString::fromUtf8(clipboard));
        data->setText(isPlain ? QString::fromUtf8(clipboard.mid(5)) : "x");
        QGuiApplication::clipboard()->setMimeData(data);
        press(isPlain ? "<PastePlain>" : "<Paste>");
        QTRY_COMPARE(bodyAfter(), QString::fromUtf8(after));
    }

    void cutText_isPastedAgain()
    {
        QVERIFY(web->showMarked("<p>a <b>[one]</b> b</p><p>c</p>"));
        press("<Cut>");
        web->select("c", WebFixture::Caret::End);
        press("<Paste>");
        QTRY_COMPARE(bodyAfter(), "<p>a  b</p><p>c<b>one</b></p>");
        QCOMPARE(QGuiApplication::clipboard()->text(), "one");
    }

    void cutMarkup_keepsItsIds()
    {
        QVERIFY(web->showMarked("<div>[<p id=\"a\" class=\"k\">x</p><p>y</p>]</div><div>c</div>"));
        press("<Cut>");
        web->select("c", WebFixture::Caret::End);
        press("<Paste>");
        QTRY_VERIFY2(bodyAfter().endsWith("<div><p>c</p><p id=\"a\" class=\"k\">x</p><p>y</p></div>"),
                     qPrintable(bodyAfter()));
    }

    void ownMarkup_isKept_data()
    {
        columns("target");
        row("everything",
            "<p>[a <i class=\"icon\" onclick=\"x()\"></i> "
            "<img src=\"x.png\" class=\"c\" srcset=\"y.png 2x\" loading=\"lazy\"> b]</p><p>c</p>",
            "c",
            "<p>a <i class=\"icon\" onclick=\"x()\"></i> <img src=\"x.png\" class=\"c\" srcset=\"y.png 2x\" "
            "loading=\"lazy\"> b</p><p>ca <i class=\"icon\" onclick=\"x()\"></i> <img src=\"x.png\" class=\"c\" "
            "srcset=\"y.png 2x\" loading=\"lazy\"> b</p>");
        row("ids",
            "<div>[<p id=\"a\">x</p><form class=\"f\"><label for=\"b\">y</label><input id=\"b\"><a "
            "href=\"#a\">z</a></form>]</div><div>c</div>",
            "c",
            "<div><p id=\"a\">x</p><form class=\"f\"><label for=\"b\">y</label><input id=\"b\"><a "
            "href=\"#a\">z</a></form></div><div><p>c</p><p id=\"a-2\">x</p><form class=\"f\"><label "
            "for=\"b-2\">y</label><input id=\"b-2\"><a href=\"#a-2\">z</a></form></div>");
        row("media",
            "<div>[<video controls=\"\" poster=\"p.png\"><source src=\"v.webm\"><track src=\"t.vtt\"></video><picture><source "
            "srcset=\"a.webp\"><img src=\"a.png\" alt=\"\"></picture><iframe class=\"f\"></iframe><!-- n --><x-y></x-y>"
            "<svg viewBox=\"0 0 1 1\"><path d=\"M0 0\"></path></svg> x]</div><div>c</div>",
            "c",
            "<div><video controls=\"\" poster=\"p.png\"><source src=\"v.webm\"><track src=\"t.vtt\"></video><picture><source "
            "srcset=\"a.webp\"><img src=\"a.png\" alt=\"\"></picture><iframe class=\"f\"></iframe><!-- n --><x-y></x-y>"
            "<svg viewBox=\"0 0 1 1\"><path d=\"M0 0\"></path></svg> x</div><div>c<video controls=\"\" poster=\"p.png\"><source "
            "src=\"v.webm\"><track src=\"t.vtt\"></video><picture><source srcset=\"a.webp\"><img src=\"a.png\" alt=\"\">"
            "</picture><iframe class=\"f\"></iframe><!-- n --><x-y></x-y><svg viewBox=\"0 0 1 1\"><path d=\"M0 0\"></path></svg> "
            "x</div>");
        row("items", "<ul class=\"l\">[<li id=\"i\">a</li><li>b</li>]</ul><ul><li>c</li></ul>", "c",
            "<ul class=\"l\"><li id=\"i\">a</li><li>b</li></ul><ul><li>c</li><li id=\"i-2\">a</li><li>b</li></ul>");
        row("a link in a link", "<p><a href=\"x\">a[<b class=\"k\">b</b>]</a></p><p><a href=\"y\">c</a></p>",
            "c",
            "<p><a href=\"x\">a<b class=\"k\">b</b></a></p><p><a href=\"y\">c<b class=\"k\">b</b></a></p>");
    }
    void ownMarkup_isKept()
    {
        QFETCH(QByteArray, before);
        QFETCH(QByteArray, target);
        QFETCH(QByteArray, after);
        QVERIFY(web->showMarked(before));
        QGuiApplication::clipboard()->clear();
        press("<Copy>");
        QTRY_VERIFY(!QGuiApplication::clipboard()->text().isEmpty());
        web->select(QString::fromUtf8(target), WebFixture::Caret::End);
        press("<Paste>");
        QTRY_COMPARE(bodyAfter(), QString::fromUtf8(after));
    }

    void linksFromAnotherPage_leadToTheSameFiles()
    {
        QVERIFY(web->showBody("<p>x</p>"));
        const auto rebased = [this](const char* address) {
            return web->answer(
                QStringLiteral("rebasedAddress('%1', new URL('sub/q.html', document.baseURI).href)")
                    .arg(QLatin1String(address)));
        };
        QCOMPARE(rebased("a b.png?c#d"), "sub/a%20b.png?c#d");
        QCOMPARE(rebased("../x/y.html"), "x/y.html");
        QCOMPARE(rebased("../../z"), "../z");
        QCOMPARE(rebased("#here"), "sub/q.html#here");
        for (const char* const kept : {"/root.css", "https://example.org/", "mailto:a@b", "<?php e() ?>", ""})
            QCOMPARE(rebased(kept), kept);
    }

    void clicks_changeNothing()
    {
        const QByteArray before =
            "<details><summary>s</summary>d</details><input type=\"checkbox\"><input id=\"i\">"
            "<p><a href=\"x.html\"><img src=\"y.png\" width=\"40\" height=\"40\"></a></p>";
        QVERIFY(web->showBody(before));
        const QString clickOn = "document.querySelector('%1').dispatchEvent(new MouseEvent('click',"
                                " { bubbles: true, cancelable: true, ctrlKey: %2 }))";
        for (const char* target : {"summary", "input"})
            (void)web->answer(clickOn.arg(target, "false"));
        QCOMPARE(
            web->answer(
                "[document.querySelector('details').open, document.querySelector('input').checked].join()"),
            "false,false");
        (void)web->answer(clickOn.arg("img", "false"));
        QCOMPARE(web->answer("getSelection().getRangeAt(0).cloneContents().firstChild.localName"), "img");
        (void)web->answer("document.querySelector('#i').focus()");
        press("x");
        (void)web->answer(clickOn.arg("summary", "true"));
        QCOMPARE(web->answer("document.querySelector('details').open"), "true");
        QCOMPARE(web->answer("countOfChanges()"), "0");
        QVERIFY(web->answer("document.documentElement.outerHTML").contains(QString::fromUtf8(before)));
    }

    // After one letter the page differs only in that text.
    void typedLetter_changesItsTextNodeAlone()
    {
        const QByteArray page =
            "<!DOCTYPE html><!-- before --><html lang=\"de\" data-x='\"'><head><title>t &amp; u</title>"
            "<style>p > b { }</style><script>if (a < b) c();</script></head><body class=\"b  c\">"
            "<x-unknown odd:name=\"1\">u</x-unknown><p>First <span style=\"color:red\">s</span> word|s</p>"
            "<svg viewBox=\"0 0 1 1\"><path d=\"M0 0\"></path></svg><template><p>in</p></template>"
            "<math><mi>x</mi></math><noscript><b>n</b></noscript><pre>\n\nkept  </pre><!-- c -->\n"
            "<textarea> t "
            "</textarea><details><summary>s</summary>d</details>&nbsp;<table><tr><td>1</table></body>"
            "</html>";
        const QString outer = "document.documentElement.outerHTML";
        QVERIFY(web->show(page));
        (void)web->answer(WebFixture::setMarks);
        QString expected = web->answer(outer);
        QCOMPARE(expected.count(" words</p>"), 1);
        expected.replace(" words</p>", " wordxs</p>");
        press("x");
        QCOMPARE(web->answer(outer), expected);
    }
};

LUMA_TEST(tst_editing)
#include "tst_editing.moc"
