// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/files.h"
#include "html/characterdata.h"
#include "html/parse.h"
#include "page/lostelements.h"
#include "page/pagecommands.h"
#include "page/pagestore.h"
#include "page/pagetree.h"
#include "tests/support/registry.h"
#include "tests/support/rows.h"

#include <QTemporaryDir>
#include <QTest>
#include <QUndoStack>

#include <unistd.h>

#include <filesystem>

using namespace luma;
namespace fs = std::filesystem;

class tst_pagestore final : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<QTemporaryDir> folder;
    std::unique_ptr<PageTree> tree;
    std::unique_ptr<QUndoStack> stack;
    std::unique_ptr<PageStore> store;

    fs::path at(const std::string& name) const { return fs::path(folder->path().toStdString()) / name; }
    void put(const std::string& name, std::string_view bytes) const
    {
        fs::create_directories(at(name).parent_path());
        QVERIFY(writeFile(at(name), bytes));
    }
    Result<void> open(const std::string& name)
    {
        store->setLocation(at(name), PageStore::Origin::File);
        return store->load(QString());
    }
    void setTitle(const char* title) { PageCommands(*tree, *stack).setTitle(QString::fromLatin1(title)); }

private slots:
    void init()
    {
        folder = std::make_unique<QTemporaryDir>();
        tree = std::make_unique<PageTree>();
        stack = std::make_unique<QUndoStack>();
        store = std::make_unique<PageStore>(*tree, *stack);
    }

    void badFile_isRefusedWithAReason_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<bool>("refused");
        QTest::newRow("empty") << QByteArray("") << false;
        QTest::newRow("plain text") << QByteArray("no page at all") << false;
        QTest::newRow("binary") << QByteArray("\x89PNG\0\1\2", 7) << true;
        QTest::newRow("not UTF-8") << QByteArray("<p>caf\xe9") << false;
        QTest::newRow("50 MB") << QByteArray(50 << 20, 'x') << true;
        QTest::newRow("100,000 levels") << QByteArray("<div>").repeated(100'000) << true;
    }
    void badFile_isRefusedWithAReason()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(bool, refused);
        put("page.html", {bytes.data(), static_cast<std::size_t>(bytes.size())});
        const auto loaded = open("page.html");
        QCOMPARE(!loaded, refused);
        QCOMPARE(tree->document() == nullptr, refused);
        if (refused)
            QVERIFY(loaded.error().text.size() > at("page.html").native().size());
    }

    void xmlThatIsNoPage_isRefused_data()
    {
        QTest::addColumn<QByteArray>("name");
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QByteArray>("root");
        QTest::addColumn<bool>("isXhtml");
        const auto row = [](const char* what, const char* name, const char* bytes, const char* root,
                            bool isXhtml = false) {
            QTest::newRow(what) << QByteArray(name) << QByteArray(bytes) << QByteArray(root) << isXhtml;
        };
        row("feed", "feed.xml", "<?xml version='1.0'?>\n<!-- <html> --><rss version='2.0'/>", "<rss>");
        row("feed without a declaration", "feed.rss", "<rss version='2.0'><channel/></rss>", "<rss>");
        row("picture", "logo.svg", "<svg xmlns='http://www.w3.org/2000/svg'/>", "<svg>");
        row("style sheet instruction", "a.html", "<?xml-stylesheet href='a.xsl'?><d:doc xmlns:d='d'/>",
            "<d:doc>");
        row("doctype with a subset", "a.xml", "\xEF\xBB\xBF <!DOCTYPE a [<!ENTITY e '<html/>'>]><a>&e;</a>",
            "<a>");
        row("XHTML", "a.html", "<?xml version='1.0'?><!DOCTYPE html><html><body/></html>", "", true);
        row("XHTML by its name", "a.xhtml", "<html xmlns='http://www.w3.org/1999/xhtml'/>", "", true);
        row("damaged XHTML", "a.xml", "<?xml version='1.0'?><html lang=en><p>", "", true);
        row("empty", "a.xml", "", "", true);
        row("picture in a page", "a.html", "<svg xmlns='http://www.w3.org/2000/svg'></svg><p>", "");
        row("HTML with a name space", "a.htm", "<html xmlns='http://www.w3.org/1999/xhtml'></html>", "");
        row("server code", "a.php", "<?php echo '<rss>' ?><html></html>", "");
    }
    void xmlThatIsNoPage_isRefused()
    {
        QFETCH(QByteArray, name);
        QFETCH(QByteArray, bytes);
        QFETCH(QByteArray, root);
        QFETCH(bool, isXhtml);
        put(name.toStdString(), bytes.toStdString());
        const auto loaded = open(name.toStdString());
        QCOMPARE(!loaded, !root.isEmpty());
        if (!root.isEmpty())
            QVERIFY(loaded.error().text.find(root.toStdString()) != std::string::npos);
        QCOMPARE(store->isXhtml(), isXhtml);
    }

    void elementsThatTheTreeLacks_areKnown_data()
    {
        QTest::addColumn<QByteArray>("markup");
        QTest::addColumn<QByteArray>("lost");
        QTest::newRow("none") << QByteArray("<select><option>a<optgroup></select><hr><button>b")
                              << QByteArray();
        QTest::newRow("some") << QByteArray("<select><option>a<HR><option>b<button><b>c</select><i>d")
                              << QByteArray("hr button b");
        QTest::newRow("in two") << QByteArray("<select><hr></select><select><hr><img></select>")
                                << QByteArray("hr img");
        QTest::newRow("ended by a field") << QByteArray("<select><input><hr>") << QByteArray();
        QTest::newRow("in a template")
            << QByteArray("<select><template><b>x</b></template><u></select>") << QByteArray("u");
        QTest::newRow("in a script") << QByteArray("<script>'<select><hr>'</script><!-- <select> --><hr>")
                                     << QByteArray();
        QTest::newRow("in server code")
            << QByteArray("<select><?php e('<b>') ?><option>{{ '<i>' }}</select>") << QByteArray();
    }
    void elementsThatTheTreeLacks_areKnown()
    {
        QFETCH(QByteArray, markup);
        QFETCH(QByteArray, lost);
        const std::string page = markup.toStdString();
        put("page.html", page);
        QVERIFY(open("page.html"));
        QByteArrayList names;
        for (const std::string& name : lostElements(page)) {
            names += QByteArray::fromStdString(name);
            QVERIFY(tree->document()->select("select " + name).empty());
        }
        QCOMPARE(names.join(' '), lost);
        QVERIFY(store->lossOfSaving().elements.empty());
        QVERIFY(store->save(at("page.html")));
        QCOMPARE(*readFile(at("page.html")), page);
        for (html::Element* select : tree->document()->select("select"))
            select->remove();
        QCOMPARE(store->lossOfSaving().elements, lostElements(page));
    }

    void folderOfAPagesLinks_isTheHighestThatOneNeeds_data()
    {
        const test::Rows<QByteArray, QByteArray> row("markup", "found");
        row("none", "<a href=x.html>", "a/b");
        row("up", "<img src=../x.png><link href=../c.css>", "a");
        row("missing", "<img src=../../none.png>", "a/b");
        row("from the root", "<link href=/css/m.css>", "");
        row("out of the home folder", "<img src=../../../../../../../../../../etc/passwd>", "a/b");
    }
    void folderOfAPagesLinks_isTheHighestThatOneNeeds()
    {
        QFETCH(QByteArray, markup);
        QFETCH(QByteArray, found);
        put("a/b/page.html", markup.toStdString());
        put("a/x.png", "");
        put("css/m.css", "");
        QVERIFY(open("a/b/page.html"));
        QCOMPARE(store->folderOfLinks() / "", at(found.toStdString()) / "");
    }

    void xhtml_staysXmlWhereEditsCan()
    {
        const std::string page =
            "<?xml version='1.0'?>\n<html><head><title>A</title></head><body><br/><p>x</p></body></html>";
        put("page.xhtml", page);
        QVERIFY(open("page.xhtml"));
        setTitle("B");
        QVERIFY(!store->lossOfSaving().isXml);
        QVERIFY(store->save(at("page.xhtml")));
        QVERIFY(store->isXhtml());
        tree->document()->body()->append(std::make_unique<html::Element>("hr"));
        QVERIFY(store->lossOfSaving().isXml);
        QVERIFY(store->save(at("page.xhtml")));
        QVERIFY(!store->isXhtml());
    }

    void noFile_isRefused()
    {
        put("page.html", "<p>");
        QVERIFY(!open("."));
        QVERIFY(!open("gone.html"));
    }

    void unreadableFile_isRefused()
    {
        constexpr uid_t nobody = 65534;
        put("page.html", "<p>");
        put("open.html", "<p>");
        fs::permissions(at("."), fs::perms(0755));
        fs::permissions(at("open.html"), fs::perms(0644));
        fs::permissions(at("page.html"), fs::perms::none);
        const bool isRoot = ::geteuid() == 0;
        if (isRoot && ::seteuid(nobody) != 0)
            QSKIP("root reads every file, and may not become another user here");
        const bool canRead = static_cast<bool>(readFile(at("open.html")));
        const auto loaded = open("page.html");
        if (isRoot)
            QCOMPARE(::seteuid(0), 0);
        QVERIFY(canRead);
        QVERIFY(!loaded);
        QVERIFY2(loaded.error().text.find("ermission") != std::string::npos, loaded.error().text.c_str());
    }

    void save_changesWhatWasEdited_data()
    {
        QTest::addColumn<QByteArray>("page");
        QTest::newRow("line feeds") << QByteArray("<!DOCTYPE html>\n<title>A</title>\n<p>x</p>\n");
        QTest::newRow("CR LF") << QByteArray("<!doctype html>\r\n<html>\r\n<title>A</title>\r\n\r\n<p>x\r\n");
        QTest::newRow("byte-order mark") << QByteArray("\xEF\xBB\xBF<title>A</title><p>x");
        QTest::newRow("upper case") << QByteArray(
            "<HTML><HEAD><TITLE>A</TITLE></HEAD><BODY BGCOLOR=#FFFFFF><P>x<BR>y</BODY></HTML>\n\n");
        QTest::newRow("no end tags") << QByteArray(
            "<title>A</title><ul><li>a<li>b</ul><table><tr><td>c</table>");
        QTest::newRow("unusual blanks")
            << QByteArray("<title >A</title ><p\nid = 'a'class=b >&eacute;&lt;<!--x--!>");
        QTest::newRow("behind the end")
            << QByteArray("<title>A</title><body></body></html>\n<!-- end -->\n<p>x");
    }
    void save_changesWhatWasEdited()
    {
        QFETCH(QByteArray, page);
        put("page.html", page.toStdString());
        QVERIFY(open("page.html"));
        QVERIFY(store->save(at("page.html")));
        QCOMPARE(QByteArray::fromStdString(*readFile(at("page.html"))), page);
        setTitle("B");
        QVERIFY(!stack->isClean());
        for (int i = 0; i < 2; ++i) { // the second save has the first one's file as its source
            QVERIFY(store->save(at("page.html")));
            QVERIFY(stack->isClean());
            QVERIFY(!store->changedOnDisk());
            QCOMPARE(QByteArray::fromStdString(*readFile(at("page.html"))),
                     QByteArray(page).replace(">A<", ">B<"));
        }
        stack->undo();
        QVERIFY(!stack->isClean());
        QCOMPARE(QByteArray::fromStdString(store->markup()), page);
    }

    // The rendering gives the whole page anew, in the parser's spelling.
    void editInTheRendering_changesItsBytes_data()
    {
        QTest::addColumn<QByteArray>("page");
        QTest::addColumn<QByteArray>("from"); // in the rendering's markup
        QTest::addColumn<QByteArray>("to");
        QTest::addColumn<QByteArray>("expected");
        const auto row = [](const char* name, const char* page, const char* from, const char* to,
                            const char* expected) {
            QTest::newRow(name) << QByteArray(page) << QByteArray(from) << QByteArray(to)
                                << QByteArray(expected);
        };
        row("letter", "<TITLE>A</TITLE>\r\n<P ID=a>one &eacute;<BR>two", "two", "twoq",
            "<TITLE>A</TITLE>\r\n<P ID=a>one &eacute;<BR>twoq");
        row("two letters", "<UL><LI>one<LI>two<LI>three</UL><P>x&nbsp;y", "three</li></ul><p>",
            "thre</li></ul><p>q", "<UL><LI>one<LI>two<LI>thre</UL><P>qx&nbsp;y");
        row("wrapped", "<P>one <B CLASS=x>two</B> three</P>", "<b class=\"x\">two</b>",
            "<i><b class=\"x\">two</b></i>", "<P>one <i><B CLASS=x>two</B></i> three</P>");
        row("split", "<P>one</P>\r\n<P>two <B>three</B></P>\r\n<P>four</P>", "two <b>three</b></p>",
            "two </p><p><b>three</b></p>", "<P>one</P>\r\n<P>two </P><p><B>three</B></p>\r\n<P>four</P>");
        row("inserted between", "<P>one\n<P>two\n<P>three", "<p>two", "<p>new</p><p>two",
            "<P>one\n<p>new</p><P>two\n<P>three");
        row("moved", "<P>1</P><P ID=x>2</P><P>3</P><P>4</P>", "<p id=\"x\">2</p><p>3</p>",
            "<p>3</p><p id=\"x\">2</p>", "<P>1</P><P>3</P><P ID=x>2</P><P>4</P>");
        row("attributes in two", "<P ALIGN=left>1<P CLASS=a\nTITLE='y'>2",
            "align=\"left\">1</p><p class=\"a\"", "align=\"right\">1</p><p class=\"b\"",
            "<P ALIGN=right>1<P CLASS=b\nTITLE='y'>2");
    }
    void editInTheRendering_changesItsBytes()
    {
        QFETCH(QByteArray, page);
        QFETCH(QByteArray, from);
        QFETCH(QByteArray, to);
        QFETCH(QByteArray, expected);
        put("page.html", page.toStdString());
        QVERIFY(open("page.html"));
        QByteArray rendered = QByteArray::fromStdString(tree->document()->outerHtml());
        QVERIFY2(rendered.contains(from), rendered.constData());
        auto edited = html::parse(rendered.replace(from, to).toStdString());
        PageCommands(*tree, *stack)
            .apply(differenceTo(*tree->document(), **edited), QString(), PageCommands::Merging::Separate);
        for (int i = 0; i < 2; ++i) { // also over a save
            QCOMPARE(QByteArray::fromStdString(store->markup()), expected);
            stack->undo();
            QCOMPARE(QByteArray::fromStdString(store->markup()), page);
            stack->redo();
            QVERIFY(store->save(at("page.html")));
            QCOMPARE(QByteArray::fromStdString(*readFile(at("page.html"))), expected);
        }
    }

    // Writing the edit moves tags and white space that are no part of it.
    void editUndoneAfterASave_leavesTheFileAsItWas()
    {
        const QByteArray page = "<p>a</p></body>\n<!-- d -->\n</html>\n";
        put("page.html", page.toStdString());
        QVERIFY(open("page.html"));
        QByteArray rendered = QByteArray::fromStdString(tree->document()->outerHtml());
        auto edited = html::parse(rendered.replace("</p>", "</p>e").toStdString());
        PageCommands(*tree, *stack)
            .apply(differenceTo(*tree->document(), **edited), QString(), PageCommands::Merging::Separate);
        QVERIFY(store->save(at("page.html")));
        const QByteArray saved = "<p>a</p>e\n\n\n</body><!-- d --></html>";
        QCOMPARE(QByteArray::fromStdString(*readFile(at("page.html"))), saved);
        stack->undo();
        QVERIFY(store->save(at("page.html")));
        QCOMPARE(QByteArray::fromStdString(*readFile(at("page.html"))), page);
    }

    void elementAtTheEndOfTheBody_standsBeforeItsEndTag()
    {
        const QByteArray page = "<html>\n<body>\n<h1>b</h1>\n<p>a</p>\n</body>\n</html>\n";
        put("page.html", page.toStdString());
        QVERIFY(open("page.html"));
        html::Element& body = *tree->document()->body();
        PageCommands commands(*tree, *stack);
        commands.insert(std::make_unique<html::Element>("hr"), {&body, nullptr}, QString());
        QCOMPARE(QByteArray::fromStdString(store->markup()), QByteArray(page).replace("</p>", "</p><hr>"));
        commands.move(*body.firstElement(), {&body, nullptr});
        QCOMPARE(QByteArray::fromStdString(store->markup()),
                 QByteArray(page).replace("<h1>b</h1>\n<p>a</p>", "\n<p>a</p><hr><h1>b</h1>"));
        stack->undo();
        stack->undo();
        QCOMPARE(QByteArray::fromStdString(store->markup()), page);
    }

    void encodings_areKept_data()
    {
        QTest::addColumn<QByteArray>("page");
        QTest::addColumn<QByteArray>("typed"); // behind the paragraph's text, UTF-8
        QTest::addColumn<QByteArray>("written");
        const auto row = [](const char* name, const QByteArray& page, const char* typed,
                            const QByteArray& written) {
            QTest::newRow(name) << page << QByteArray(typed) << written;
        };
        const auto utf16 = [](const char* ascii) {
            QByteArray bytes = "\xFF\xFE";
            for (const char* at = ascii; *at; ++at)
                bytes.append(*at).append('\0');
            return bytes;
        };
        row("windows-1252", "<!-- \xE9\x81 --><P>caf\xE9 \x80", "\xC3\xBC\xD0\x96",
            "<!-- \xE9\x81 --><P>caf\xE9 \x80\xFC&#1046;");
        row("ISO-8859-15", "<meta charset=iso-8859-15><p>\xA4", "\xE2\x82\xAC",
            "<meta charset=iso-8859-15><p>\xA4\xA4");
        row("Shift_JIS", "<meta charset=shift_jis><p title='\x83\x5C'>\x93\xFA\xB1\x81<b>\x5C</b><p>\x96\x7B",
            "\xE6\x97\xA5",
            "<meta charset=shift_jis><p title='\x83\x5C'>\x93\xFA\xB1\x81<b>\x5C</b><p>\x96\x7B\x93\xFA");
        row("UTF-16", utf16("<title>A</title>\r\n<p>x"), "\xE2\x82\xAC",
            utf16("<title>A</title>\r\n<p>x") + QByteArray("\xAC\x20"));
        row("damaged UTF-8", "<meta charset=utf-8><i>\xC3</i>\xFF<p>x", "\xC3\xBC",
            "<meta charset=utf-8><i>\xC3</i>\xFF<p>x\xC3\xBC");
        row("XML", "<?xml version='1.0' encoding='iso-8859-1'?><html><body>\xE9<p>x</p></body></html>",
            "\xC3\xBC",
            "<?xml version='1.0' encoding='iso-8859-1'?><html><body>\xE9<p>x\xFC</p></body></html>");
        row("ISO-2022-JP", "<meta charset=iso-2022-jp><p>\x1B$BF|K\\\x1B(B<i>x</i><p>a", "\xE6\x97\xA5",
            "<meta charset=iso-2022-jp><p>\x1B$BF|K\\\x1B(B<i>x</i><p>a\x1B$BF|\x1B(B");
    }
    void encodings_areKept()
    {
        QFETCH(QByteArray, page);
        QFETCH(QByteArray, typed);
        QFETCH(QByteArray, written);
        put("page.html", page.toStdString());
        QVERIFY(open("page.html"));
        QVERIFY(store->save(at("page.html")));
        QCOMPARE(QByteArray::fromStdString(*readFile(at("page.html"))), page);
        html::Element* const paragraph = tree->document()->select("p").back();
        auto& text = static_cast<html::CharacterData&>(*paragraph->firstChild());
        const std::string before = text.data();
        for (int i = 0; i < 2; ++i) { // again from what was written
            text.setData(before + typed.toStdString());
            QVERIFY(store->save(at("page.html")));
            QCOMPARE(QByteArray::fromStdString(*readFile(at("page.html"))), written);
            text.setData(before);
            QVERIFY(store->save(at("page.html")));
            QCOMPARE(QByteArray::fromStdString(*readFile(at("page.html"))), page);
        }
    }

    void otherDeclaredEncoding_isWritten()
    {
        put("page.html", "<meta charset=windows-1252><p>\xE9</p>");
        QVERIFY(open("page.html"));
        tree->document()->select("meta").front()->setAttr("charset", "utf-8");
        QVERIFY(store->save(at("page.html")));
        QCOMPARE(*readFile(at("page.html")), std::string("<meta charset=utf-8><p>\xC3\xA9</p>"));
    }

    void characterThatTheEncodingLacks_isRefusedInAScript()
    {
        const std::string page = "<meta charset=windows-1252><script>x='\xE9'</script>";
        put("page.html", page);
        QVERIFY(open("page.html"));
        QVERIFY(tree->document()->select("script").front()->setHtml("x='\xD0\x96'"));
        const auto saved = store->save(at("page.html"));
        QVERIFY(!saved);
        QVERIFY2(saved.error().text.find("windows-1252") != std::string::npos, saved.error().text.c_str());
        QCOMPARE(*readFile(at("page.html")), page);
    }

    void tidy_isOneStep_data()
    {
        QTest::addColumn<QByteArray>("page");
        QTest::addColumn<QByteArray>("tidied");
        QTest::newRow("UTF-8") << QByteArray("<!doctype html><TITLE>A</TITLE>\r\n<P>x")
                               << QByteArray(
                                      "<!doctype html>\n<html>\n <head>\n  <title>A</title>\n </head>\n"
                                      " <body>\n  <p>x</p>\n </body>\n</html>\n");
        QTest::newRow("windows-1252")
            << QByteArray("<P>\xE9")
            << QByteArray("<html>\n <head>\n </head>\n <body>\n  <p>\xE9</p>\n </body>\n"
                          "</html>\n");
    }
    void tidy_isOneStep()
    {
        QFETCH(QByteArray, page);
        QFETCH(QByteArray, tidied);
        put("page.html", page.toStdString());
        QVERIFY(open("page.html"));
        QVERIFY(store->tidy());
        QVERIFY(store->tidy()); // nothing is left to do
        QCOMPARE(stack->count(), 1);
        for (int i = 0; i < 2; ++i) {
            QVERIFY(store->save(at("page.html")));
            QCOMPARE(QByteArray::fromStdString(*readFile(at("page.html"))), tidied);
            stack->undo();
            QVERIFY(store->save(at("page.html")));
            QCOMPARE(QByteArray::fromStdString(*readFile(at("page.html"))), page);
            stack->redo();
        }
    }

    void saveOfATreeThatNoMarkupGives_writesTheNearest()
    {
        put("page.html", "<p>x</p><hr>");
        QVERIFY(open("page.html"));
        tree->document()->select("p").front()->append(std::make_unique<html::Element>("div"));
        QVERIFY(store->save(at("page.html")));
        const std::string written = *readFile(at("page.html"));
        QVERIFY2(written.find("<div>") != std::string::npos, written.c_str());
        QVERIFY(store->save(at("page.html")));
        QCOMPARE(*readFile(at("page.html")), written);
    }

    void saveElsewhere_rebasesLinks()
    {
        put("site/page.html", "<link href=css/a.css><body background=../b.png><a href='news/'>n</a>"
                              "<img src='http://x/y.png'><a href='#top'></a><a href='/abs.html'></a>");
        QVERIFY(open("site/page.html"));
        fs::create_directories(at("site/deep"));
        QVERIFY(store->save(at("site/deep/copy.html")));
        QCOMPARE(store->docURL(), at("site/deep/copy.html"));
        const std::string copy = *readFile(at("site/deep/copy.html"));
        for (const char* part : {"href=../css/a.css", "background=../../b.png", "href='../news",
                                 "src='http://x/y.png'", "href='#top'", "href='/abs.html'"})
            QVERIFY2(copy.find(part) != std::string::npos, part);
        QVERIFY(readFile(at("site/page.html"))->find("href=css/a.css") != std::string::npos);
    }

    void undoAfterSaveElsewhere_leavesLinksRight()
    {
        put("page.html", "<title>A</title><a href=x.html>x</a><a href=y.html>y</a>");
        QVERIFY(open("page.html"));
        PageCommands commands(*tree, *stack);
        setTitle("B");
        html::Element& first = *tree->document()->select("a").front();
        commands.setAttributes(first, {{"href", "z.html"}}, "Change Attribute");
        commands.remove(*tree->document()->select("a").back());
        fs::create_directories(at("deep"));
        QVERIFY(store->save(at("deep/page.html")));
        QVERIFY(stack->isClean());
        QCOMPARE(stack->undoText(), "Delete <a>");
        const char* const titles[] = {"B", "B", "A"};
        const char* const addresses[] = {"../z.html", "../x.html", "../x.html"};
        for (int i = 0; i < 3; ++i) {
            stack->undo();
            QCOMPARE(tree->document()->title(), std::string(titles[i]));
            QCOMPARE(tree->document()->select("a").size(), 2U);
            QCOMPARE(tree->document()->select("a").front()->attr("href"), std::string_view(addresses[i]));
            QCOMPARE(tree->document()->select("a").back()->attr("href"), std::string_view("../y.html"));
        }
        QVERIFY(store->save(at("deep/page.html")));
        QCOMPARE(*readFile(at("deep/page.html")),
                 std::string("<title>A</title><a href=../x.html>x</a><a href=../y.html>y</a>"));
    }

    void editsWhileAPageIsWritten_areNotInIt()
    {
        std::string lines;
        for (int i = 0; i < 20'000; ++i)
            lines += "<P id=p" + std::to_string(i) + ">x &amp; y\n";
        put("page.html", "<title>A</title>" + lines);
        QVERIFY(open("page.html"));
        setTitle("B");
        int saved = 0;
        const auto count = [&saved](const Result<void>& result) { saved += result ? 1 : 100; };
        store->startSaving(at("page.html"), count);
        QVERIFY(store->isSaving());
        setTitle("C");
        QTRY_COMPARE(saved, 1);
        QCOMPARE(*readFile(at("page.html")), "<title>B</title>" + lines);
        QVERIFY(!stack->isClean() && !store->changedOnDisk());
        stack->undo();
        QVERIFY(!stack->isClean());
        store->startSaving(at("page.html"), count);
        store->startSaving(at("page.html"), count); // waits for the first
        QTRY_COMPARE(saved, 3);
        QVERIFY(stack->isClean());
        setTitle("D");
        store->startSaving(at("page.html"), count);
        store.reset();
        QCOMPARE(*readFile(at("page.html")), "<title>D</title>" + lines);
        QCOMPARE(saved, 3);
    }

    void failedSave_leavesEverything()
    {
        put("page.html", "<title>A</title><a href=x.html>x</a>");
        QVERIFY(open("page.html"));
        setTitle("B");
        const std::string before = tree->document()->outerHtml();
        QVERIFY(!store->save(at("no/such/folder/page.html")));
        QCOMPARE(tree->document()->outerHtml(), before);
        QVERIFY(!stack->isClean());
        QCOMPARE(store->docURL(), at("page.html"));
        QCOMPARE(*readFile(at("page.html")), std::string("<title>A</title><a href=x.html>x</a>"));
    }

    void loadAgain_canBeUndone()
    {
        const std::string theirs = "<!DOCTYPE  HTML><title>Theirs</title><p>x";
        put("page.html", "<!doctype html><title>A</title><p>x");
        QVERIFY(open("page.html"));
        setTitle("Mine");
        put("page.html", theirs);
        QVERIFY(store->changedOnDisk());
        QVERIFY(store->load(QStringLiteral("Revert")));
        QVERIFY(!store->changedOnDisk());
        QCOMPARE(store->markup(), theirs);
        QVERIFY(stack->isClean());
        stack->undo();
        QCOMPARE(tree->document()->title(), std::string("Mine"));
        fs::remove(at("page.html"));
        QVERIFY(!store->changedOnDisk());
    }
};

LUMA_TEST(tst_pagestore)
#include "tst_pagestore.moc"
