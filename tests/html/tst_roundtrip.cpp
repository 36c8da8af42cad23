// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/ascii.h"
#include "html/characterdata.h"
#include "html/element.h"
#include "html/parse.h"
#include "html/prettyprinter.h"
#include "tests/html/html5lib.h"
#include "tests/html/pages.h"
#include "tests/support/registry.h"

#include <QTest>

#include <set>

using namespace luma;
using namespace luma::html;

namespace {

bool isNested(const Node& node, std::string_view name)
{
    for (const Node* above = node.parent(); above; above = above->parent()) {
        if (above->asElement() && above->asElement()->is(name))
            return true;
    }
    return false;
}

/// An end tag of a `p` or `br` that is not open creates one, which the parser leaves inside svg or math.
bool isStray(const Element& element)
{
    const Element* parent = element.parent()->asElement();
    return parent && parent->nameSpace() != NameSpace::Html && (element.is("p") || element.is("br")) &&
           parent->tagName() != "foreignObject";
}

/// Trees that no markup produces (HTML standard, 13.3, warning): the contents of `plaintext`, a script with an
/// unclosed comment, elements that foster parenting nested in themselves, strays.
bool hasNoMarkup(const Document& document)
{
    for (const Node* node = &document; node; node = node->following(document)) {
        const Element* element = node->asElement();
        if (!element)
            continue;
        static const std::set<std::string> neverNested = {"a", "form", "nobr", "p"};
        const bool isNestedInItself =
            neverNested.contains(element->tagName()) && isNested(*element, element->tagName());
        if (element->is("plaintext") || isStray(*element) || isNestedInItself)
            return true;
        const std::string* script = element->firstChild() ? textOf(*element->firstChild()) : nullptr;
        if (element->is("script") && script && script->find("<!--") != std::string::npos)
            return true;
    }
    return false;
}

std::string withoutWhiteSpace(std::string text)
{
    std::erase_if(text, isWhiteSpace);
    return text;
}

/// What goes wrong when the page is written and read again; empty if nothing does.
QByteArray fault(std::string_view source)
{
    const auto first = parse(source);
    if (!first)
        return {};
    const auto again = parse((*first)->outerHtml());
    if (!again || !sameTree(**first, **again))
        return "serialised, it reads otherwise";
    const std::string printed = prettyPrint(**first);
    const auto reread = parse(printed);
    if (!reread || prettyPrint(**reread) != printed)
        return "printed twice, it differs";
    if (withoutWhiteSpace((*reread)->text()) != withoutWhiteSpace((*first)->text()))
        return "printed, its text differs";
    return {};
}

} // namespace

class tst_roundtrip final : public QObject
{
    Q_OBJECT

private slots:
    void pages_surviveWritingAndPrinting()
    {
        const auto pages = test::allPages(200, 1'000'000);
        QVERIFY(pages.size() > 13);
        for (const test::Page& page : pages)
            QVERIFY2(fault(page.source).isEmpty(), (page.name + ": " + fault(page.source).data()).c_str());
    }

    void html5libPages_surviveWritingAndPrinting()
    {
        const auto cases = test::allTreeCases();
        if (cases.empty())
            QSKIP("html5lib's cases were not found (HTML5LIB_TESTS)");
        std::size_t withoutMarkup = 0;
        for (const test::TreeCase& each : cases) {
            const auto document = parse(each.data);
            if (document && hasNoMarkup(**document))
                ++withoutMarkup;
            else
                QVERIFY2(fault(each.data).isEmpty(), (each.place + ": " + fault(each.data).data()).c_str());
        }
        qInfo("%zu of %zu cases survive; %zu trees have no markup", cases.size() - withoutMarkup,
              cases.size(), withoutMarkup);
    }
};

LUMA_TEST(tst_roundtrip)
#include "tst_roundtrip.moc"
