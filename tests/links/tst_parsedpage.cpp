// SPDX-License-Identifier: GPL-3.0-or-later
#include "links/linkmapping.h"
#include "tests/support/registry.h"
#include "tests/support/site.h"

#include <QTest>

using namespace luma;

class tst_parsedpage final : public QObject
{
    Q_OBJECT

private slots:
    void withChangedLinks_writesOnlyTheValue_data()
    {
        QTest::addColumn<std::string>("source");
        QTest::addColumn<std::string>("value");
        QTest::addColumn<std::string>("expected");
        const auto row = [](const char* name, const std::string& source, const std::string& value,
                            const std::string& expected) {
            QTest::newRow(name) << source << value << expected;
        };
        row("double quotes", "<A  HREF = \"x\"\t>", "y", "<A  HREF = \"y\"\t>");
        row("escapes", "<a href=\"x\">", "a\"b&c'", "<a href=\"a&quot;b&amp;c'\">");
        row("single quotes", "<a href='x'>", "a\"b'c", "<a href='a\"b&#39;c'>");
        row("unquoted stays so", "<a href=x>", "../y.html", "<a href=../y.html>");
        row("unquoted gets quotes", "<a href=x.html id=1>", "a b/x.html", "<a href=\"a b/x.html\" id=1>");
        row("unquoted with both quotes", "<a href=x\"'.html>", "a b/x\"'.html",
            "<a href=\"a b/x&quot;'.html\">");
        row("unquoted before the end", "<a href=x>", "y/", "<a href=\"y/\">");
        row("no value", "<a href>", "y", "<a href=\"y\">");
        row("equals sign and no value", "<a href=>", "y", "<a href=y>");
        row("kept spelling", "<a href='p&amp;q/x?a&b'>", "../p&q/x?a&b", "<a href='../p&amp;q/x?a&b'>");
        row("spelling kept in front", "<a href='p&q/x.html'>", "p&q/y.html", "<a href='p&q/y.html'>");
        row("reference that would grow", "<a href='&not.x'>", "\u00ACin.x", "<a href='\u00ACin.x'>");
        row("byte-order mark and the rest", "\uFEFF<?xml?><!DOCTYPE x>\r\n<a href='x'/>&nbsp;<?php ?>", "y",
            "\uFEFF<?xml?><!DOCTYPE x>\r\n<a href='y'/>&nbsp;<?php ?>");
        row("emptied", "<a href=x>", "", "<a href=\"\">");
    }
    void withChangedLinks_writesOnlyTheValue()
    {
        QFETCH(std::string, source);
        QFETCH(std::string, value);
        QFETCH(std::string, expected);
        const auto page = parsePage(source);
        QVERIFY(page);
        const std::string changed = withChangedLinks(*page, {{0, value}});
        QCOMPARE(changed, expected);
        QCOMPARE(parsePage(changed)->links.front().value, value);
    }

    void withChangedLinks_withoutChanges_givesTheSource()
    {
        const std::string source = "<a href=1><img src='2' background=\"3\"></A><!-- x";
        QCOMPARE(withChangedLinks(*parsePage(source), {}), source);
    }

    void rebasedLink_leadsToTheSameFile()
    {
        for (const auto& [value, expected] :
             std::vector<std::pair<std::string, std::string>>{{"img/p.png", "../a/img/p.png"},
                                                              {"../b/y.html", "y.html"},
                                                              {"x.html#top", "../a/x.html#top"},
                                                              {"/abs/x.css", "../../abs/x.css"},
                                                              {"", "../a"},
                                                              {"./x", "../a/./x"},
                                                              {"a%20b?x", "../a/a%20b?x"}})
            QCOMPARE(rebasedLink(value, "/s/a", "/s/b"), expected);
        for (const std::string unchanged : {"..", "../c/x", "../", "http://x/y", "#top", "mailto:me",
                                            "javascript:void(0)", "//host/x", "data:,x"})
            QCOMPARE(rebasedLink(unchanged, "/s/a", "/s/b"), unchanged);
    }

    void parsePage_needsUtf8()
    {
        QVERIFY(!parsePage("<a href='caf\xE9'>"));
        QVERIFY(!parsePage("<a href=x>\xE2\x82"));
        QVERIFY(parsePage(""));
    }

    void styleContents_areAsWritten()
    {
        const std::vector<std::string_view> styles =
            styleContents("<style>a</STYLE><svg><style>b<![CDATA[c]]></style></svg><!--<style>--><style>d");
        QCOMPARE(styles, (std::vector<std::string_view>{"a", "b<![CDATA[c]]>", "d"}));
    }
};

LUMA_TEST(tst_parsedpage)
#include "tst_parsedpage.moc"
