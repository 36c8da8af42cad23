// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/editor/pagewindow.h"
#include "tests/support/registry.h"

#include <QDirIterator>
#include <QFileInfo>
#include <QTest>
#include <QUndoStack>

#include <algorithm>

using namespace luma;
namespace fs = std::filesystem;

namespace {

/// The text node in the middle of all that a reader would edit gets the caret, in its middle.
const QString caretIntoTheMiddle = QStringLiteral(R"(
(function () {
    const walker = document.createTreeWalker(document.body, NodeFilter.SHOW_TEXT);
    const texts = [];
    for (let node; (node = walker.nextNode());)
        if (/\p{L}{3}/u.test(node.data) && !closestAt(node, 'script, style, noscript, textarea, template, iframe')
            && getComputedStyle(node.parentElement).visibility === 'visible'
            && node.parentElement.getClientRects().length > 0)
            texts.push(node);
    if (texts.length === 0)
        return 'none';
    const text = texts[Math.floor(texts.length / 2)];
    getSelection().collapse(text, text.data.search(/\p{L}{3}/u) + 1);
    return 'set';
})())");

/// Pages below the folder: all of them, or some when there are many, always the same. LUMA_MOST_PAGES says
/// how many there may be.
QStringList pagesBelow(const QString& folder)
{
    const qsizetype most = std::max(5, qEnvironmentVariableIntValue("LUMA_MOST_PAGES"));
    QStringList pages;
    QDirIterator files(folder, {"*.html"}, QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext())
        pages.append(files.next());
    pages.sort();
    QStringList some;
    const qsizetype step = std::max<qsizetype>(1, pages.size() / most);
    for (qsizetype i = 0; i < pages.size(); i += step)
        some.append(pages[i]);
    return some;
}

void addPages(const char* name, const QString& folder)
{
    const QStringList pages = pagesBelow(folder);
    for (const QString& page : pages)
        QTest::addRow("%s %s", name, qPrintable(page.mid(folder.size() + 1))) << page << folder;
}

const std::string everything =
    "<!DOCTYPE html PUBLIC \"-//W3C//DTD XHTML 1.0 Strict//EN\" \"x.dtd\"><!-- before -->"
    "<html lang=\"de\" data-x='\"' odd:name=1><head><title>t &amp; u</title><meta name=a content=b>"
    "<!-- in the head --><style>p > b { }</style><script>if (a < b) c();</script></head>"
    "<body class=\"b  c\" onload=\"f('x')\"><x-unknown odd:name=\"1\">u</x-unknown>"
    "<!-- c --><main><p id=it class=\"k  l\" data-p=1>First words <!-- d --> here</p></main>"
    "<svg viewBox=\"0 0 1 1\"><path d=\"M0 0\"></path></svg><template><p>in</p></template>"
    "<math><mi>x</mi></math><noscript><b>n</b></noscript><pre>\n\nkept  </pre>\n"
    "<textarea> t </textarea><details><summary>s</summary>d</details>10&nbsp;km"
    "<table><tr><td>1</table><?php echo 1 ?></body></html><!-- after -->";

} // namespace

/// What the user did not touch stays as it is.
class tst_untouched final : public QObject, private luma::test::PageWindow
{
    Q_OBJECT

private slots:
    void typedLetter_changesNothingElse_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QString>("site");
        addPages("sample", qEnvironmentVariable("LUMA_SOURCE_DIR") + "/resources/sample-site");
        addPages("python", QFileInfo("/usr/share/doc/python3-doc/html").canonicalFilePath());
        addPages("postgresql", QFileInfo("/usr/share/doc/postgresql-doc-15/html").canonicalFilePath());
    }
    void typedLetter_changesNothingElse()
    {
        QFETCH(QString, file);
        QFETCH(QString, site);
        open(fs::path(file.toStdString()), fs::path(site.toStdString()));
        focusPage();
        if (answer(caretIntoTheMiddle) == "none")
            QSKIP("a page without text");
        const QByteArray before = tree();
        type("q");
        QTRY_VERIFY(tree() != before);
        const QByteArray after = tree();
        const auto same = std::mismatch(before.begin(), before.end(), after.begin(), after.end());
        const qsizetype at = same.first - before.begin();
        QCOMPARE(after.mid(at - 20, 60).replace("q", ""), before.mid(at - 20, 59).replace("q", ""));
        QCOMPARE(after, before.left(at) + "q" + before.mid(at));
        QCOMPARE(window->undoStack()->count(), 1);
        window->undoStack()->undo();
        QCOMPARE(tree(), before);
    }

    void everyCommand_leavesTheRest_data()
    {
        QTest::addColumn<QString>("script");
        for (const char* title :
             {"Bold",          "Italic",       "Underline",      "Strike Through", "Superscript",
              "Subscript",     "Code",         "Paragraph",      "Heading 2",      "Block Quote",
              "Preformatted",  "Ordered List", "Unordered List", "Indent",         "Outdent",
              "Remove Format", "Justify Left", "Justify Center", "Justify Right",  "Justify Full",
              "Unlink"})
            QTest::newRow(title) << QStringLiteral("doCommand('%1')").arg(QLatin1String(title));
        QTest::newRow("link") << "doCommand('Create Link', 'x.html')";
        QTest::newRow("image") << "doCommand('Insert Image', 'x.png')";
        QTest::newRow("enter") << "document.execCommand('insertParagraph')";
        QTest::newRow("delete") << "document.execCommand('delete')";
        QTest::newRow("letter") << "document.execCommand('insertText', false, 'x')";
        QTest::newRow("all deleted and written anew")
            << "document.execCommand('selectAll'); deleteSelection();"
               "document.execCommand('insertText', false, 'x')";
    }
    void everyCommand_leavesTheRest()
    {
        QFETCH(QString, script);
        open(everything);
        select("words");
        const QByteArray before = tree();
        (void)answer(script + "; 1");
        rendering().catchUp();
        const QByteArray after = tree();
        const auto partOf = [](const QByteArray& tree, const char* from, const char* to) {
            const qsizetype start = tree.indexOf(from);
            return tree.mid(start, tree.indexOf(to, start) - start);
        };
        const QByteArray body = "<body class=\"b  c\" onload=\"f('x')\">";
        QCOMPARE(after.left(after.indexOf(body)), before.left(before.indexOf(body)));
        QVERIFY(after.contains(body));
        QVERIFY(after.endsWith("</body></html><!-- after -->"));
        if (QByteArray(QTest::currentDataTag()).startsWith("all"))
            return;
        QCOMPARE(partOf(after, "<x-unknown", "<main"), partOf(before, "<x-unknown", "<main"));
        QCOMPARE(after.mid(after.indexOf("</main>")), before.mid(before.indexOf("</main>")));
        QVERIFY(after.contains("<!-- d -->"));
        QVERIFY(after.contains("id=\"it\""));
        QVERIFY(after.contains("class=\"k  l\" data-p=\"1\""));
    }
};

LUMA_TEST(tst_untouched)
#include "tst_untouched.moc"
