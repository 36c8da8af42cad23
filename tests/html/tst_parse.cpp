// SPDX-License-Identifier: GPL-3.0-or-later
#include "html/element.h"
#include "html/parse.h"
#include "tests/support/registry.h"
#include "tests/support/rows.h"

#include <QTest>

using namespace luma::html;

namespace {

std::string repeated(std::string_view text, int count)
{
    std::string result;
    for (int i = 0; i < count; ++i)
        result += text;
    return result;
}

std::string numbered(const std::string& before, const std::string& after, int count)
{
    std::string result;
    for (int i = 0; i < count; ++i)
        result += before + std::to_string(i) + after;
    return result;
}

std::string written(std::string_view page)
{
    const auto document = parse(page);
    return document ? (*document)->outerHtml() : document.error().text;
}

} // namespace

class tst_parse final : public QObject
{
    Q_OBJECT

private slots:
    void parse_keepsEverything_data()
    {
        const luma::test::Rows<QByteArray, QByteArray> row("page", "expected");
        row("empty", "", "<html><head></head><body></body></html>");
        row("doctype as written", "<!doctype HTML PUBLIC '-//a' \"b\" >x",
            "<!doctype HTML PUBLIC '-//a' \"b\" ><html><head></head><body>x</body></html>");
        row("unfinished doctype", "<!doctype html", "<!DOCTYPE html><html><head></head><body></body></html>");
        row("comments around the doctype",
            "<!--a--><?b?><!doctype html><!--c--><html><!--d--></html><!--e-->",
            "<!--a--><!--?b?--><!doctype "
            "html><!--c--><html><!--d--><head></head><body></body></html><!--e-->");
        row("a comment that holds a doctype", "<!-- <!doctype a> --><!doctype html>",
            "<!-- <!doctype a> --><!doctype html><html><head></head><body></body></html>");
        row("byte-order mark", "\xEF\xBB\xBF<p>a",
            "\xEF\xBB\xBF<html><head></head><body><p>a</p></body></html>");
        row("attributes in order, doubles dropped", "<p Z=1 a b='\"' z=2 @x=\"&amp;<>\xC2\xA0\">",
            "<html><head></head><body><p z=\"1\" a=\"\" b=\"&quot;\" "
            "@x=\"&amp;<>&nbsp;\"></p></body></html>");
        row("doubles without a value", "<p a=1 A b=2 class class/id=x&amp; b c\xC2\x81 c>",
            "<html><head></head><body><p a=\"1\" b=\"2\" class=\"\" id=\"x&amp;\" c\xC2\x81=\"\" "
            "c=\"\"></p></body></html>");
        row("text before the end tags of forms",
            "<form><i>a</i>b</form>c<form><div><form>d</form>e</div>f</form>g",
            "<html><head></head><body><form><i>a</i>b</form>c<form><div>de</div></form>fg</body></html>");
        row("unknown and foreign names", "<O:p><svg VIEWBOX=1><foreignobject/><X-y xlink:href=a></svg>",
            "<html><head></head><body><o:p><svg viewBox=\"1\"><foreignObject></foreignObject>"
            "<x-y xlink:href=\"a\"></x-y></svg></o:p></body></html>");
        row("template, noscript", "<head><noscript><link></noscript></head><b></b><template><td>a</template>",
            "<html><head><noscript><link></noscript></head><body><b></b><template><td>a</td></template></"
            "body></html>");
        row("line feed after pre", "<pre>\n\na</pre><pre>\nb</pre>",
            "<html><head></head><body><pre>\n\na</pre><pre>b</pre></body></html>");
        row("raw text is not escaped", "<style>a > b&amp;</style><script>a && b<c</script><xmp>&lt;</xmp>",
            "<html><head><style>a > b&amp;</style><script>a && b<c</script></head><body><xmp>&lt;</xmp></body>"
            "</html>");
        row("escapable raw text", "<title>a &amp; <b></title><textarea>\n\n&lt;</textarea>",
            "<html><head><title>a &amp; &lt;b&gt;</title></head><body><textarea>\n\n&lt;</textarea></body>"
            "</html>");
        row("void elements", "<p><br><image src=a><wbr></p><hr>",
            "<html><head></head><body><p><br><img src=\"a\"><wbr></p><hr></body></html>");
        row("CDATA joins its neighbours", "<svg>a<![CDATA[<b>]]>c</svg>",
            "<html><head></head><body><svg>a&lt;b&gt;c</svg></body></html>");
        row("controls and non-characters", "<p a=\x01>\xC2\x85\x7F\xEF\xBF\xBF\xF4\x8F\xBF\xBF&#13;",
            "<html><head></head><body><p "
            "a=\"\x01\">\xC2\x85\x7F\xEF\xBF\xBF\xF4\x8F\xBF\xBF&#13;</p></body></html>");
        row("private-use characters beside a control", "\xF3\xB0\x80\x80\x01\xF3\xB0\x81\x80",
            "<html><head></head><body>\xF3\xB0\x80\x80\x01\xF3\xB0\x81\x80</body></html>");
    }
    void parse_keepsEverything()
    {
        QFETCH(QByteArray, page);
        QFETCH(QByteArray, expected);
        QCOMPARE(QByteArray::fromStdString(written(page.toStdString())), expected);
        QCOMPARE(QByteArray::fromStdString(written(expected.toStdString())), expected);
    }

    // Each of these would occupy the parser for minutes, fill the memory, or could not be written back.
    void parse_refuses_data()
    {
        const luma::test::Rows<QByteArray, QByteArray> row("page", "reason");
        row("100,000 levels", repeated("<div>", 100'000), "too deeply");
        row("with end tags of others", repeated("<div></x></p></span>", 100'000), "too deeply");
        row("formatting elements", numbered("<font color=", ">", 100'000), "too deeply");
        row("tables in tables", repeated("<table><tr><td>", 50'000), "too deeply");
        row("adoption", numbered("<a href=", "><div></a>", 100'000), "too deeply");
        row("templates", repeated("<template>", 100'000), "too deeply");
        row("foreign", repeated("<svg><g>", 100'000), "too deeply");
        row("unclosed fonts in paragraphs", numbered("<p><font size=", ">", 100'000), "multiply");
        row("attributes of one tag", "<p " + numbered("a", " ", 200'000) + ">", "too many attributes");
        row("attributes of many body tags", "<body>" + numbered("<body a", ">", 200'000),
            "too many attributes");
        row("large", std::string((std::size_t{16} << 20U) + 1, 'x'), "larger than 16 MB");
        row("not UTF-8", "<p>caf\xE9</p>", "not UTF-8");
        row("surrogate", "\xED\xA0\x80", "not UTF-8");
    }
    void parse_refuses()
    {
        QFETCH(QByteArray, page);
        QFETCH(QByteArray, reason);
        const auto document = parse(page.toStdString());
        QVERIFY(!document);
        QVERIFY2(QByteArray::fromStdString(document.error().text).contains(reason),
                 document.error().text.c_str());
        const auto place = placeOfRefusal(page.toStdString());
        QVERIFY(place && *place < static_cast<std::size_t>(page.size()));
        const QByteArray tag = page.mid(static_cast<qsizetype>(*place), 3);
        QVERIFY2(tag.startsWith('<') || reason.contains("UTF-8") || reason.contains("larger"),
                 tag.constData());
        QVERIFY(!placeOfRefusal("<p>x"));
    }

    void parse_takesLongPagesOfUnclosedTags_data()
    {
        QTest::addColumn<QByteArray>("tag");
        for (const char* tag : {"<p>", "<li>", "<td>", "<tr><td>", "<dt>", "<option>", "<b>", "<br>",
                                "<p><b>x", "<a href=x>", "</p>", "<h1></h2>", "<div></div>"})
            QTest::newRow(tag) << QByteArray(tag);
    }
    void parse_takesLongPagesOfUnclosedTags()
    {
        QFETCH(QByteArray, tag);
        const bool cell = tag.startsWith("<t");
        const auto document = parse((cell ? "<table>" : "") + repeated(tag.toStdString(), 20'000));
        // Only unclosed bold elements nest.
        QCOMPARE(static_cast<bool>(document), tag != "<b>");
    }

    void parse_nestsUpToTheLimit()
    {
        QVERIFY(parse(repeated("<div>", 4000)));
        QVERIFY(!parse(repeated("<div>", 100), {1024, 50}));
        QVERIFY(!parse(repeated("a", 2000), {1024, 50}));
    }

    void setHtml_parsesInItsContext()
    {
        const auto document = parse("<table><tr id=r></table><style></style><div></div><svg></svg>");
        QVERIFY(document);
        QVERIFY((*document)->select("#r").front()->setHtml("<td>1<td>2"));
        QVERIFY((*document)->select("style").front()->setHtml("a > b {}"));
        QVERIFY((*document)->select("div").front()->setHtml("<td>x<p>y&amp;z"));
        QVERIFY((*document)->select("svg").front()->setHtml("<clippath/>"));
        QCOMPARE(
            (*document)->body()->html(),
            std::string("<table><tbody><tr id=\"r\"><td>1</td><td>2</td></tr></tbody></table>"
                        "<style>a > b {}</style><div>x<p>y&amp;z</p></div><svg><clipPath></clipPath></svg>"));
        QVERIFY(!(*document)->body()->setHtml(repeated("<div>", 100'000)));
        QCOMPARE((*document)->body()->children().size(), std::size_t{4});
    }
};

LUMA_TEST(tst_parse)
#include "tst_parse.moc"
