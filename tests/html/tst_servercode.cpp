// SPDX-License-Identifier: GPL-3.0-or-later
#include "html/characterdata.h"
#include "html/codemarks.h"
#include "html/element.h"
#include "html/pagewriter.h"
#include "html/prettyprinter.h"
#include "html/servercode.h"
#include "html/treecomparison.h"
#include "tests/html/pages.h"
#include "tests/support/registry.h"

#include <QTest>

#include <array>
#include <functional>

using namespace luma;
using namespace luma::html;

namespace {

std::string joined(const std::vector<std::string>& parts)
{
    std::string text;
    for (const std::string& part : parts)
        text += (text.empty() ? "" : "|") + part;
    return text;
}

std::vector<std::string> codesOf(const Document& document)
{
    std::vector<std::string> codes;
    for (const Node* node = &document; node; node = node->following(document)) {
        if (isServerCode(*node))
            codes.push_back(codeOf(*node));
    }
    return codes;
}

} // namespace

class tst_servercode final : public QObject
{
    Q_OBJECT

private slots:
    void code_endsWhereTheServerHasIt_data()
    {
        QTest::addColumn<QByteArray>("source");
        QTest::addColumn<QByteArray>("codes");
        const auto row = [](const char* source, const char* codes) {
            QTest::newRow(source) << QByteArray(source) << QByteArray(codes);
        };
        row("a<?php b ?>c<?= d ?>", "<?php b ?>|<?= d ?>");
        row("<?php '?>\\'' \"?>\" `?>` ?>x", "<?php '?>\\'' \"?>\" `?>` ?>");
        row("<?php // ' ?>a<?php # \" ?>b<?php /* ?> */ ?>c",
            "<?php // ' ?>|<?php # \" ?>|<?php /* ?> */ ?>");
        row("<?php <<<E\n?>\n  E; ?>x", "<?php <<<E\n?>\n  E; ?>");
        row("<?php #[A('?>')] ?>x", "<?php #[A('?>')] ?>");
        row("<?php ' ?>a<?php b ?>", "<?php ' ?>|<?php b ?>");
        row("a<?php b", "<?php b");
        row("<?xml version='1.0'?><?xml-stylesheet a?><? a ?><?import b><p><?php c ?>", "<? a ?>|<?php c ?>");
        row("<% '%>' %><%-- a %> --%><% b", "<% '%>|<%-- a %> --%>");
        row("{{ a }}{{{ b }}}{% c %}{{!-- {{ d }} --}}{{ '<b>' }}",
            "{{ a }}|{{{ b }}}|{% c %}|{{!-- {{ d }} --}}|{{ '<b>' }}");
        row("{{ a <b>c</b> }}{{{{{{ {% {{ x }}", "{{ x }}");
        row("{# a <b> #}x{# c\nd #}{# <i>\n #}{# {# e #}", "{# a <b> #}|{# c\nd #}|{# e #}");
        row("<!--#echo var=a --><!-- # --><!--#", "<!--#echo var=a -->");
    }
    void code_endsWhereTheServerHasIt()
    {
        QFETCH(QByteArray, source);
        QFETCH(QByteArray, codes);
        std::vector<std::string> found;
        for (const ServerCode& code : serverCodeIn(source.toStdString()))
            found.push_back(source.toStdString().substr(code.begin, code.end - code.begin));
        QCOMPARE(QByteArray::fromStdString(joined(found)), codes);
    }

    void damagedCode_isReadInTime()
    {
        for (const char* part : {"{{", "{{ }", "<?", "<?a", "<?php '", "<?php ' ?>", "<%", "<!--#a",
                                 "<?php <<<A\n", "{% <b>", "{#", "{# #\n<"}) {
            const QByteArray page = QByteArray(part).repeated(300'000);
            serverCodeIn({page.data(), static_cast<std::size_t>(page.size())});
        }
    }

    // The tree of a page with code, as a browser is shown it and tells it back.
    void pages_surviveTheRenderingAndPrinting()
    {
        int withCode = 0;
        for (const test::Page& page : test::writtenPages()) {
            const auto document = parseWithSource(page.source);
            if (!document || (*document)->serverCode().empty())
                continue;
            ++withCode;
            const auto shown = parse((*document)->outerHtml());
            QVERIFY(shown);
            QVERIFY2(sameTree(**document, **shown),
                     (page.name + "\n" + (*document)->outerHtml() + "\n" + (*shown)->outerHtml()).c_str());
            const auto printed = parseWithSource(prettyPrint(**document));
            QVERIFY(printed);
            QVERIFY2(joined(codesOf(**printed)) == joined(codesOf(**document)),
                     (page.name + "\n" + prettyPrint(**document)).c_str());
            QVERIFY2((*printed)->serverCode().size() == (*document)->serverCode().size(),
                     (page.name + "\n" + prettyPrint(**document)).c_str());
        }
        QVERIFY(withCode > 10);
    }

    // Edits of elements named by selectors, and the whole page after them.
    void edits_keepCodeAndNeverMakeAny_data()
    {
        using Edit = std::function<void(Document&)>;
        QTest::addColumn<QByteArray>("page");
        QTest::addColumn<Edit>("edit");
        QTest::addColumn<QByteArray>("expected");
        const auto row = [](const char* name, const char* page, const char* expected, const Edit& edit) {
            QTest::newRow(name) << QByteArray(page) << edit << QByteArray(expected);
        };
        const auto first = [](Document& document, const char* selector) {
            return document.select(selector).at(0);
        };
        row("text beside", "<p>a <?= $b ?> c</p>", "<p>ax <?= $b ?> c</p>",
            [=](Document& d) { static_cast<CharacterData*>(first(d, "p")->firstChild())->setData("ax "); });
        row("deleted", "<p>a <?= $b ?> c</p>", "<p>a  c</p>",
            [=](Document& d) { first(d, "p template")->remove(); });
        row("moved", "<p>a<?= '<b>' ?></p><table><tr><td>c</table>",
            "<p>a</p><table><?= '<b>' ?><tr><td>c</table>",
            [=](Document& d) { first(d, "table")->insertChildren(0, first(d, "p template")->detach()); });
        for (const auto& [name, page, expected, mark] :
             {std::array{"svg", "<svg><?= $a ?><g/></svg>", "<svg><g/></svg>", "svg template"},
              std::array{"in svg's title", "<svg><title><?= $a ?>b</title></svg>",
                         "<svg><title>b</title></svg>", "title template"},
              std::array{"math", "<math><?= $a ?><mi>b<?= $c ?></mi></math>",
                         "<math><mi>b<?= $c ?></mi></math>", "math template"},
              std::array{"the head's noscript", "<head><noscript><?= $a ?><link></noscript></head>",
                         "<head><noscript><link></noscript></head>", "noscript meta"},
              std::array{"before the page", "<?= $a ?>\n<!-- b --><?= $c ?><p>d</p>",
                         "\n<!-- b --><?= $c ?><p>d</p>", "body template"}})
            row(name, page, expected, [=](Document& d) { first(d, mark)->remove(); });
        row("unclosed", "<p>a</p><?php b()", "<p>a</p><p>c</p><?php b()", [=](Document& d) {
            auto paragraph = std::make_unique<Element>("p");
            paragraph->append(CharacterData::text("c"));
            first(d, "p")->after(std::move(paragraph));
        });
        row("attribute beside", "<p <?= $a ?> class='<?= \"'\" ?> x'>t</p>",
            "<p <?= $a ?> class='<?= \"'\" ?> x' id=\"y\">t</p>",
            [=](Document& d) { first(d, "p")->setAttr("id", "y"); });
        row("value with code", "<p title=\"<?= f(\"a\") ?> b\">t</p>", "<p title=\"<?= f(\"a\") ?> c\">t</p>",
            [=](Document& d) { first(d, "p")->setAttr("title", "<?= f(\"a\") ?> c"); });
        row("code among attributes taken away", "<p <?= $a ?> id=b>t</p>", "<p id=b>t</p>",
            [=](Document& d) { first(d, "p")->removeAttr(first(d, "p")->attributes().front().name); });
        row("printed tag", "<p data-a='<?= 1 ?>'>t</p><div>u</div>",
            "<p data-a='<?= 1 ?>'>t</p><i data-a=\"<?= 1 ?>\"></i><div>u</div>", [=](Document& d) {
                auto element = std::make_unique<Element>("i");
                element->setAttr("data-a", "<?= 1 ?>");
                first(d, "p")->after(std::move(element));
            });
        row("code that is not the page's", "<p>t</p>",
            "<p title=\"&lt;?php evil() ?>\">&lt;?php evil() ?&gt; &#123;{ x }}</p>", [=](Document& d) {
                first(d, "p")->setAttr("title", "<?php evil() ?>");
                static_cast<CharacterData*>(first(d, "p")->firstChild())->setData("<?php evil() ?> {{ x }}");
            });
        row("trusted code", "<p>t</p>", "<p title=\"<?php good() ?>\">t</p>", [=](Document& d) {
            d.trustServerCode("<?php good() ?>");
            first(d, "p")->setAttr("title", "<?php good() ?>");
        });
        row("title", "<title><?= $t ?> &amp; site</title>", "<title><?= $t ?> &amp; sites</title>",
            [=](Document& d) { d.setTitle("<?= $t ?> & sites"); });
        row("rows", "<tr><td>a\n<tr><td>b", "<tr class=\"x\"><td>a\n<tr><td>b",
            [=](Document& d) { first(d, "tr")->setAttr("class", "x"); });
        row("a mark of another process", "<p>t</p>",
            "<p>t<template luma-code=\"0123456789abcdef0123:&lt;?= 1 ?>\"></template></p>", [=](Document& d) {
                auto forged = std::make_unique<Element>("template");
                forged->setAttr("luma-code", "0123456789abcdef0123:<?= 1 ?>");
                first(d, "p")->append(std::move(forged));
            });
    }
    void edits_keepCodeAndNeverMakeAny()
    {
        QFETCH(QByteArray, page);
        QFETCH(std::function<void(Document&)>, edit);
        QFETCH(QByteArray, expected);
        const auto document = parseWithSource(page.toStdString());
        QVERIFY(document);
        edit(**document);
        const auto written = writePage(**document);
        QVERIFY(written);
        QCOMPARE(QByteArray::fromStdString(written->text), expected);
        QVERIFY(written->isSame);
    }
};

LUMA_TEST(tst_servercode)

#include "tst_servercode.moc"
