// SPDX-License-Identifier: GPL-3.0-or-later
#include "links/pagereader.h"
#include "tests/support/registry.h"

#include <QTest>

using namespace luma;

namespace {

// A line a reference: place, value, and what stands in the source where it differs.
QByteArray listed(const std::string& source, PageFormat format)
{
    PageReader reader;
    reader.read(source, format);
    std::string text;
    for (const LinkReference& reference : reader.references()) {
        text.append(nameOf(reference.place)).append(" ").append(reference.value);
        const std::string raw = source.substr(reference.begin, reference.end - reference.begin);
        if (raw != reference.value)
            text.append(" as ").append(raw);
        text += '\n';
    }
    return QByteArray::fromStdString(text);
}

} // namespace

class tst_pagereader final : public QObject
{
    Q_OBJECT

private slots:
    void pages_giveTheirAddresses_data()
    {
        QTest::addColumn<QByteArray>("source");
        QTest::addColumn<QByteArray>("expected");
        const auto row = [](const char* name, const char* source, const char* expected) {
            QTest::newRow(name) << QByteArray(source) << QByteArray(expected);
        };
        row("anchors and images", "<a href=a.html><IMG SRC='b.png'><a href>", "href a.html\nsrc b.png\n");
        row("references", "<a href=\"x?a&amp;b\">", "href x?a&b as x?a&amp;b\n");
        row("no place of addresses", "<div href=x src=y><p data=z><a src=b>", "");
        row("the first of two", "<a href=a href=b>", "href a\n");
        row("candidates", "<img srcset='a.png 1x, b,c.png 2x,d.png'>",
            "srcset a.png\nsrcset b,c.png\nsrcset d.png\n");
        row("candidates with brackets", "<source srcset=', a 1w (x, y), b,'>", "srcset a\nsrcset b\n");
        row("candidates with references", "<img srcset='a&amp;b 1x, c&amp;d 2x'>",
            "srcset a&b as a&amp;b\nsrcset c&d as c&amp;d\n");
        row("image set of a link", "<link imagesrcset='a 1x' href=b>", "imagesrcset a\nhref b\n");
        row("refresh", "<meta http-equiv=Refresh content='5; URL = \"a.html\"'>", "content a.html\n");
        row("refresh without url",
            "<meta http-equiv=refresh content='0;a.html '><meta http-equiv=refresh content=5>",
            "content a.html\n");
        row("refresh of no time", "<meta http-equiv=refresh content='url=a'>", "");
        row("open graph", "<meta property=og:image content=a.png><meta name=description content=b>",
            "content a.png\n");
        row("other elements",
            "<video poster=a><object data=b><form action=c><button formaction=d><q cite=e><a ping='f g'>"
            "<body background=h><img longdesc=i><html manifest=j><img usemap=#k>",
            "poster a\ndata b\naction c\nformaction d\ncite e\nping f\nping g\nbackground h\nlongdesc i\nmanifest j\nusemap #k\n");
        row("svg", "<svg><use xlink:href='#a'/><image href=b /></svg>", "xlink:href #a\nhref b\n");
        row("svg styles", "<svg><g fill='url(a#b)' stroke=red clip-path=\"url('c')\" marker-start=url(d) />",
            "style a#b\nstyle c\nstyle d\n");
        row("style attribute", "<p style=\"background:url(&quot;a.png&quot;)\">", "style a.png\n");
        row("style attribute with an escape", "<p style='background:url(a\\20 b)'>",
            "style a b as a\\20 b\n");
        row("style element", "<style>@import 'a.css'; p { background: url(b.png) }</style><a href=c>",
            "@import a.css\nurl() b.png\nhref c\n");
        row("a frame's own page",
            "<iframe srcdoc=\"<a href='a?x&amp;amp;y'><a href=#b><img src=&quot;c.png&quot; style='d:url(e)'>\">",
            "href a?x&y as a?x&amp;amp;y\nsrc c.png\nstyle e\n");
        row("frames in frames and with a base",
            "<iframe srcdoc=\"<iframe srcdoc='<a href=a>'></iframe>\"></iframe><iframe srcdoc='<base href=b><a href=c>'>"
            "</iframe><p srcdoc='<a href=d>'>",
            "");
        row("no tags", "<!-- <a href=a> --><script>'<a href=b>'</script><textarea><a href=c></textarea>", "");
    }
    void pages_giveTheirAddresses()
    {
        QFETCH(QByteArray, source);
        QTEST(listed(source.toStdString(), PageFormat::Html), "expected");
    }

    void sheets_giveTheirAddresses_data()
    {
        QTest::addColumn<QByteArray>("source");
        QTest::addColumn<QByteArray>("expected");
        const auto row = [](const char* name, const char* source, const char* expected) {
            QTest::newRow(name) << QByteArray(source) << QByteArray(expected);
        };
        row("url", "a { b: URL( x.png ) url('y') url(\"z\") }", "url() x.png\nurl() y\nurl() z\n");
        row("import", "@import url(a.css) screen; @import \"b.css\" layer(c) supports(d: \"e\");",
            "@import a.css\n@import b.css\n");
        row("no addresses", "@charset \"x\"; @namespace url(y); a { content: \"url(z)\" /* url(w) */ }", "");
        row("image set", "a { b: image-set(\"c.png\" type(\"image/png\"), url(d) 2x); e: \"f\" }",
            "url() c.png\nurl() d\n");
        row("escapes", "a { b: url(c\\)d) url('e\\\nf') url(\"\\66 .png\") }",
            "url() c)d as c\\)d\nurl() ef as e\\\nf\nurl() f.png as \\66 .png\n");
        row("damaged", "a { b: url(c d) url(e", "url() e\n");
        row("names that end so", "a { b: my-url(c) curl('d') }", "");
    }
    void sheets_giveTheirAddresses()
    {
        QFETCH(QByteArray, source);
        QTEST(listed(source.toStdString(), PageFormat::StyleSheet), "expected");
    }

    void xml_isReadAsXml()
    {
        QCOMPARE(
            listed(
                "<!DOCTYPE html [<!ENTITY x '<a href=\"n\">'>]><?p <a href='n'> ?><html><script src='a'/><a href='b'/>"
                "<![CDATA[<a href='n'>]]></html>",
                PageFormat::Xml),
            QByteArray("src a\nhref b\n"));
        // Entities of its own, and references in styles.
        QCOMPARE(
            listed("<!DOCTYPE svg [<!ENTITY e 'd/'><!ENTITY f \"&e;x\"><!ENTITY e \"n/\">]>"
                   "<a href='&e;&amp;&lt;&f;&;'/><style>a{b:url(&quot;c&quot;)} @import '&#100;';</style>",
                   PageFormat::Xml),
            QByteArray("href d/&<&f;&; as &e;&amp;&lt;&f;&;\nurl() c\n@import d as &#100;\n"));
        // A style sheet's instruction counts before the root element, but not in a comment.
        QCOMPARE(
            listed("<?xml version='1.0'?><?xml-stylesheet  type=\"text/css\" href = 'a&amp;b.css' ?>"
                   "<!--?xml-stylesheet href='n'?--><?xml-stylesheets href='n'?><?xml-stylesheet href=n?>"
                   "<?xml-stylesheet href='n?><a href='c'/><?xml-stylesheet href='n'?>",
                   PageFormat::Xml),
            QByteArray("href a&b.css as a&amp;b.css\nhref c\n"));
        QCOMPARE(listed("<?xml-stylesheet href='n'?><a href=b>", PageFormat::Html), QByteArray("href b\n"));
    }

    void anchorsAndBase_areTold()
    {
        PageReader reader;
        reader.read(
            "<base target=x><base href='a/'><base href=b><p id=i><a name='n&amp;m'><map name=k><p name=x>",
            PageFormat::Html);
        QCOMPARE(reader.base(), std::string_view("a/"));
        QCOMPARE(reader.anchors(), (std::vector<std::string_view>{"i", "n&m", "\1k"}));
        QVERIFY(reader.references().empty());
    }

    // What encodedCss writes is read back as it was.
    void cssTexts_comeBack()
    {
        for (const std::string_view text : {"a.png", "a b", "a\"b'c(d)", "a\\b", "a\nb\tc", "\xC3\xA9"}) {
            for (const auto& [quotes, before, after] :
                 {std::tuple(CssQuotes::None, "url(", ")"), std::tuple(CssQuotes::Single, "url('", "')"),
                  std::tuple(CssQuotes::Double, "url(\"", "\")")}) {
                const std::string sheet = "a { b: " + (before + encodedCss(text, quotes)) + after + "; }";
                PageReader reader;
                reader.read(sheet, PageFormat::StyleSheet);
                QCOMPARE(reader.references().size(), std::size_t(1));
                QCOMPARE(reader.references().front().value, text);
            }
        }
    }
};

LUMA_TEST(tst_pagereader)

#include "tst_pagereader.moc"
