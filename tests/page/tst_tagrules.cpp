// SPDX-License-Identifier: GPL-3.0-or-later
#include "html/element.h"
#include "html/parse.h"
#include "page/tagmenu.h"
#include "tests/support/registry.h"
#include "tests/support/rows.h"

#include <QTest>

using namespace luma;

class tst_tagrules final : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<html::Document> m_page;
    TagRules m_rules;

    html::Element* find(std::string_view selector) const
    {
        const auto found = m_page->select(selector);
        return found.empty() ? nullptr : found.front();
    }

    /// The menu as a line: "Insert[ul] - Add Class[a b] - Delete".
    static QString written(const std::vector<TagMenuEntry>& menu)
    {
        QStringList words;
        for (const TagMenuEntry& entry : menu) {
            QStringList titles;
            for (const TagMenuEntry& each : entry.submenu)
                titles.append(each.title);
            words.append(entry.isSeparator  ? u"-"_qs
                         : titles.isEmpty() ? entry.title
                                            : entry.title + u"["_qs + titles.join(u' ') + u"]"_qs);
        }
        return words.join(u' ');
    }

private slots:
    void init()
    {
        auto page =
            html::parse("<head><title>t</title><meta charset=utf-8><meta name=a></head><body class=x>"
                        "<div id=plain></div><div id=boxed class='navbar  box'></div><p></p><nav></nav>"
                        "<section><article><b></b></article></section><ul class=' '><li class=a>x</li></ul>");
        QVERIFY(page);
        m_page = std::move(*page);
    }

    void itemArrayForMenu_answersByKey_data()
    {
        QTest::addColumn<QByteArray>("selector");
        QTest::addColumn<QString>("answers"); // E(nable) D(elete) C, c (class: add, remove) I, i (id)
        const auto row = [](const char* selector, const char* answers) {
            QTest::newRow(selector) << QByteArray(selector) << QString::fromLatin1(answers);
        };
        row("html", "");
        row("head", "E");
        row("body", "Ec");
        row("title", "");
        row("meta[charset]", "");
        row("meta[name]", "D");
        row("#plain", "DCi");
        row("#boxed", "DCci");
        row("p", "DCI");
        row("section", "EDCI");
        row("article", "EDCI");
        row("nav", "EDCI");
        row("ul", "EDCcI");
        row("none", "");
    }
    void itemArrayForMenu_answersByKey()
    {
        QFETCH(QByteArray, selector);
        QFETCH(QString, answers);
        const html::Element* element = find(selector.toStdString());
        QString found;
        const std::pair<const char*, char> keys[] = {{"canEnable", 'E'},   {"canDelete", 'D'},
                                                     {"canAddClass", 'C'}, {"canRemoveClass", 'c'},
                                                     {"canAddID", 'I'},    {"canRemoveID", 'i'}};
        for (const auto& [key, letter] : keys) {
            if (m_rules.itemArrayForMenu(QString::fromLatin1(key), element).toBool())
                found += QLatin1Char(letter);
        }
        QCOMPARE(found, answers);
        QVERIFY(!m_rules.itemArrayForMenu(u"canFly"_qs, element).isValid());
        QCOMPARE(m_rules.itemArrayForMenu(u"itemArrayForMenu"_qs, element).isValid(), answers.contains(u'E'));
        QCOMPARE(m_rules.canDrag(element),
                 selector != "html" && selector != "head" && selector != "body" && element);
    }

    void insertableTags_followTheTables()
    {
        QCOMPARE(m_rules.insertableTags(find("head")).join(u' '), u"style meta link script base"_qs);
        QCOMPARE(m_rules.insertableTags(find("body")).join(u' '),
                 u"header footer nav section details main mark time div span"_qs);
        QCOMPARE(m_rules.insertableTags(find("section")).join(u' '),
                 u"article summary aside figure figcaption h1 h2 h3 h4 h5 h6 div"_qs);
        QCOMPARE(m_rules.insertableTags(find("article")).join(u' '), u"p h1 h2 h3 h4 h5 h6 img href"_qs);
        QCOMPARE(m_rules.insertableTags(find("ul")).join(u' '), u"li"_qs);
        QVERIFY(m_rules.insertableTags(find("p")).isEmpty());
        QVERIFY(m_rules.headTags.contains(u"title"_qs));
    }

    void menu_isBuiltByTheRules_data()
    {
        const test::Rows<QByteArray, QString, QString, QString> row("selector", "classes", "ids", "menu");
        row("no element", "none", "a", "a", "");
        row("html", "html", "a", "a", "");
        row("head", "head", "a", "a", "Insert[style meta link script base]");
        row("body keeps its class removable", "body", "a", "b",
            "Insert[header footer nav section details main mark time div span] - Remove Class[x]");
        row("nothing but delete", "p", "", "", "Delete");
        row("class and id", "p", "a b", "new plain", "Add Class[a b] - Add ID[new] - Delete");
        row("substrings are not offered", "#boxed", "nav box bo other", "new",
            "Add Class[other] Remove Class[navbar box] - Remove ID - Delete");
        row("separators at the top", "li", "a", "", "- Remove Class[a] - Delete");
        row("id alone at the top", "#plain", "", "", "- Remove ID - Delete");
        row("nothing to remove", "ul", "", "", "Insert[li] - Delete");
        row("nav", "nav", "a", "", "Insert[ul] - Add Class[a] - Delete");
    }
    void menu_isBuiltByTheRules()
    {
        QFETCH(QByteArray, selector);
        QFETCH(QString, classes);
        QFETCH(QString, ids);
        const auto built =
            buildTagMenu(m_rules, find(selector.toStdString()), classes.split(u' ', Qt::SkipEmptyParts),
                         ids.split(u' ', Qt::SkipEmptyParts));
        QTEST(written(built), "menu");
        for (const TagMenuEntry& entry : built) {
            QCOMPARE(entry.submenuTitle, entry.title == u"Insert" ? u"Insert /(tagName)"_qs : QString());
            if (entry.title == u"Add Class")
                QCOMPARE(entry.submenu.front().action, TagAction::AddClass);
        }
    }

    void newElement_comesWithItsMarkup_data()
    {
        const test::Rows<QString> row("markup");
        row("p", "<p>Lorem</p>");
        row("h2", "<h2>Header</h2>");
        row("h6", "<h6>Header</h6>");
        row("href", "<href>Header</href>");
        row("li", "<li>Lorem</li>");
        row("section", "<section> <h2>Header</h2></section>");
        row("article", "<article> <h2>Header</h2><p>Lorem</p></article>");
        row("img", "<img>");
        for (const char* none : {"div", "nav", "header", "style", "meta", "ul", ""})
            row(none, "");
    }
    void newElement_comesWithItsMarkup()
    {
        const html::NodePtr element = m_rules.newElement(QString::fromLatin1(QTest::currentDataTag()));
        QTEST(element ? QString::fromStdString(element->outerHtml()) : QString(), "markup");
    }
};

LUMA_TEST(tst_tagrules)
#include "tst_tagrules.moc"
