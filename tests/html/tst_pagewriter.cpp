// SPDX-License-Identifier: GPL-3.0-or-later
#include "html/characterdata.h"
#include "html/element.h"
#include "html/pagewriter.h"
#include "html/tagtraits.h"
#include "tests/html/pages.h"
#include "tests/support/registry.h"

#include <QRandomGenerator>
#include <QTest>

#include <algorithm>
#include <functional>
#include <map>

using namespace luma;
using namespace luma::html;

namespace {

using Documents = std::unique_ptr<Document>;

std::string withoutMark(std::string_view source)
{
    return std::string(source.starts_with("\xEF\xBB\xBF") ? source.substr(3) : source);
}

// Pages that browsers forgive, each in a way of its own.
std::vector<test::Page> uglyPages()
{
    return {
        {"no tags at all", "just text"},
        {"implied elements", "<title>t</title><p>one<p>two <b>three"},
        {"line ends", "<!DOCTYPE html>\r\n<html>\r\n<body>\r\n<p>a\r\nb</p>\r\n</body>\r\n</html>\r\n"},
        {"upper case", "<HTML><BODY BGCOLOR=#FFFFFF><P ALIGN=center>A<BR>B</P></BODY></HTML>"},
        {"behind the end", "<html><body><p>a</p></body>\n</html>\n<!-- x -->\nlate <b>bold</b>"},
        {"mis-nested", "<p><b>one <i>two</b> three</i> four</p><a href=x><div>a</div></a>"},
        {"foster parents", "<table>stray<tr><td>a</td></tr><b>bold</b></table><p>b</p>"},
        {"open lists", "<ul><li>a<li>b<ul><li>c</ul><li>d</ul><dl><dt>x<dd>y</dl>"},
        {"open tables", "<table border><tr><td>1<td>2<tr><th>3</table>after"},
        {"repeated attributes", "<p class=a id=b class=c x>t</p><img src=a.png alt/><a x=\"1\"y=\"2\">z</a>"},
        {"references",
         "<p>a &amp b &lt; c&nbsp;d &copy &#65; &notanentity; R&D</p><a href='?a=1&b=2&amp;c'>l</a>"},
        {"forms",
         "<form action=a>Name: <input> required</form>after<form><p>x</p>\n</form>\n<form>\n y </form>"},
        {"stray end tags", "<div>a</span>b</p>c</div></div></section><p>d"},
        {"conditional comments", "<!--[if IE]><p>x</p><![endif]--><![if !IE]><p>y</p><![endif]>"},
        {"noscript in the head",
         "<head><noscript><link rel=stylesheet href=a></noscript><meta name=b></head><p>c"},
        {"svg and math",
         "<svg viewBox='0 0 1 1'><path d='M0'/><title>t</title></svg><math><mi>x</mi></math><p>y</p>"},
        {"raw text",
         "<pre>\n\n a\n</pre><textarea>\nb &amp; c</textarea><script>if (a < b) '<p>'</script><p>d</p>"},
        {"templates", "<template><tr><td>a</td></tr></template><p>b</p>"},
        {"frames", "<frameset cols=*><frame src=a><noframes>x</noframes></frameset>"},
        {"doctypes", "<!-- c -->\n<!DOCTYPE HTML PUBLIC \"-//W3C//DTD HTML 3.2//EN\">\n<p>a</p>"},
        {"strange characters", "<p>a\x01 b\xC2\x85 c</p>\x7F<p title='\x02x'>d</p>"},
        {"second body", "<html a=1><body b=1><p>x</p><body c=2><html d=2><p>y</p>"},
        {"quirks of tables", "<table><td>a<table><td>b</table>c</table><select><option>a<option>b</select>"},
        {"blank", "  \n\n "},
    };
}

/// One edit of a tree and its way back.
struct Edit
{
    std::string name;
    std::function<void()> undo;
    const Node* around = nullptr; // the smallest node that the edit lies in
};

class RandomEdit final
{
public:
    RandomEdit(Document& document, QRandomGenerator& random) : m_random(random)
    {
        for (Node* node = document.body() ? document.body()->firstChild() : nullptr; node;
             node = node->following(*document.body())) {
            if (Element* const element = node->asElement())
                m_elements.push_back(element);
            else if (textOf(*node) && !hasRawText(*node->parent()->asElement()))
                m_texts.push_back(node);
        }
    }

    std::optional<Edit> make(int kind)
    {
        switch (kind) {
        case 0:
            return typeLetter();
        case 1:
            return setAttribute();
        case 2:
            return removeAttribute();
        case 3:
            return insertElement();
        case 4:
            return removeElement();
        case 5:
            return wrapElement();
        default:
            return {};
        }
    }

private:
    template <class List>
    auto one(const List& list)
    {
        return list[m_random.bounded(static_cast<quint32>(list.size()))];
    }

    std::optional<Edit> typeLetter()
    {
        if (m_texts.empty())
            return {};
        auto& text = static_cast<CharacterData&>(*one(m_texts));
        const std::string old = text.data();
        std::size_t at = m_random.bounded(static_cast<quint32>(old.size() + 1));
        while (at < old.size() && (static_cast<unsigned char>(old[at]) & 0xC0U) == 0x80U)
            ++at;
        std::string changed = old;
        changed.insert(at, one(std::vector<std::string>{"x", "<", "&", "amp;", "\xC3\xA9", " "}));
        text.setData(changed);
        return Edit{"letter", [&text, old] { text.setData(old); }, &text};
    }

    std::optional<Edit> setAttribute()
    {
        return withAttributes("attribute", [this](Element& element) {
            const std::string name = element.attributes().empty() || m_random.bounded(2) == 0
                                         ? std::string("data-new")
                                         : one(element.attributes()).name;
            element.setAttr(name,
                            one(std::vector<std::string>{"", "a", "a b", "\"'", "a&amp;b", "x>y", "/"}));
            return true;
        });
    }

    std::optional<Edit> removeAttribute()
    {
        return withAttributes("removed attribute", [this](Element& element) {
            if (element.attributes().empty())
                return false;
            const std::string name = one(element.attributes()).name;
            element.removeAttr(name);
            return true;
        });
    }

    template <class Change>
    std::optional<Edit> withAttributes(const char* name, Change change)
    {
        if (m_elements.empty())
            return {};
        Element& element = *one(m_elements);
        const std::vector<Attribute> old = element.attributes();
        if (!change(element))
            return {};
        return Edit{name,
                    [&element, old] {
                        std::vector<Attribute> attributes = old;
                        element.swapAttributes(attributes);
                    },
                    &element};
    }

    std::optional<Edit> insertElement()
    {
        if (m_texts.empty())
            return {};
        Node& beside = *one(m_texts);
        auto made = std::make_unique<Element>("b");
        made->append(CharacterData::text("new & bold"));
        Node& added = beside.after(std::move(made));
        return Edit{"insertion", [&added] { added.remove(); }, added.parent()};
    }

    std::optional<Edit> removeElement()
    {
        if (m_elements.empty())
            return {};
        Element& element = *one(m_elements);
        const Position place = element.position();
        const auto holder = std::make_shared<NodePtr>(element.detach());
        return Edit{"deletion", [place, holder] { ParentNode::insertAt(place, std::move(*holder)); },
                    place.parent};
    }

    std::optional<Edit> wrapElement()
    {
        if (m_texts.empty())
            return {};
        Node& wrapped = *one(m_texts);
        const Position place = wrapped.position();
        auto span = std::make_unique<Element>("span");
        Node& wrapper = *span;
        span->append(wrapped.detach());
        ParentNode::insertAt(place, std::move(span));
        return Edit{"wrapping",
                    [&wrapped, &wrapper] {
                        NodePtr inner = wrapped.detach();
                        wrapper.before(std::move(inner));
                        wrapper.remove();
                    },
                    place.parent};
    }

    QRandomGenerator& m_random;
    std::vector<Element*> m_elements;
    std::vector<Node*> m_texts;
};

Documents parsedWithSource(const std::string& source)
{
    auto parsed = parseWithSource(source);
    return parsed ? *std::move(parsed) : nullptr;
}

} // namespace

class tst_pagewriter final : public QObject
{
    Q_OBJECT

private:
    std::map<std::string, std::map<WritingWay, int>> m_ways;
    int m_strange = 0;

    // Empty when all is right.
    std::string tryEdits(const test::Page& page, int count, QRandomGenerator& random)
    {
        const Documents document = parsedWithSource(page.source);
        if (!document)
            return {};
        auto untouched = writePage(*document);
        if (!untouched || untouched->text != page.source || untouched->way != WritingWay::Unchanged)
            return page.name + ": not written as it was";
        for (int i = 0; i < count; ++i) {
            const std::optional<Edit> edit = RandomEdit(*document, random).make(i % 6);
            if (!edit)
                continue;
            auto written = writePage(*document);
            if (!written)
                return page.name + ": not written after " + edit->name;
            if (!written->isSame)
                ++m_strange;
            else
                ++m_ways[edit->name][written->way];
            if (written->isSame && written->way == WritingWay::Patched &&
                !staysOutside(*edit, *written, page.source))
                return page.name + ": " + edit->name +
                       " changed more than its element: " + written->text.substr(0, 300);
            edit->undo();
            auto back = writePage(*document);
            if (!back || back->text != page.source)
                return page.name + ": not as it was after " + edit->name + " and its undo";
        }
        return {};
    }

    // Elements whose bytes no other element's lie among.
    static bool standsAlone(const Node& node)
    {
        if (!node.origin().source || !node.origin().source->record(node.origin().record).isWhole)
            return false;
        const SourceRange& own = node.origin().source->record(node.origin().record).extent;
        const Node* const first = node.parent() ? node.parent()->firstChild() : nullptr;
        for (const Node* sibling = first; sibling; sibling = sibling->next()) {
            if (sibling == &node || !sibling->origin().source)
                continue;
            const SourceRange& other = sibling->origin().source->record(sibling->origin().record).extent;
            if (other.begin < own.end && own.begin < other.end)
                return false;
        }
        return true;
    }

    // Whether nothing differs outside the element that the edit lies in.
    static bool staysOutside(const Edit& edit, const WrittenPage& written, const std::string& source)
    {
        const Node* around = edit.around;
        for (const Node* node = around; node; node = node->parent())
            around = standsAlone(*node) ? around : node->parent();
        if (!around)
            return true;
        const SourceRange& extent = around->origin().source->record(around->origin().record).extent;
        const std::string text = withoutMark(written.text);
        const std::string old = withoutMark(source);
        return old.substr(0, extent.begin) == text.substr(0, extent.begin) &&
               text.size() >= old.size() - extent.end &&
               old.substr(extent.end) == text.substr(text.size() - (old.size() - extent.end));
    }

private slots:
    void edits_changeWhatTheyEdit()
    {
        QRandomGenerator random(11);
        std::vector<std::pair<test::Page, int>> pages;
        for (const test::Page& page : uglyPages())
            pages.emplace_back(page, 36);
        for (const test::Page& page : test::allPages(40, 100'000))
            pages.emplace_back(page, 8);
        std::string failures;
        for (const auto& [page, count] : pages) {
            const std::string failure = tryEdits(page, count, random);
            if (!failure.empty())
                failures += failure + "\n";
        }
        QVERIFY2(failures.empty(), failures.c_str());
        int patched = 0;
        int all = 0;
        for (const auto& [name, ways] : m_ways) {
            std::string line = name + ":";
            for (const auto& [way, count] : ways) {
                line += " " + std::to_string(int(way)) + "=" + std::to_string(count);
                patched += way <= WritingWay::EndTagsWritten ? count : 0;
                all += count;
            }
            qInfo("%s", line.c_str());
        }
        qInfo("trees that no markup gives: %d", m_strange);
        QVERIFY2(patched * 100 >= all * 97, "too many pages were printed");
    }
};

LUMA_TEST(tst_pagewriter)

#include "tst_pagewriter.moc"
