// SPDX-License-Identifier: GPL-3.0-or-later
#include "page/nodechange.h"

#include "base/ascii.h"
#include "html/characterdata.h"
#include "html/codemarks.h"
#include "html/parse.h"
#include "html/serializer.h"
#include "html/tagtraits.h"
#include "page/elementchange.h"
#include "page/tagrules.h"

#include <QCoreApplication>

#include <algorithm>
#include <memory>
#include <set>
#include <string>
#include <utility>

namespace luma {

namespace {

constexpr std::size_t longestLine = 500; // bytes

struct NodeTexts
{
    Q_DECLARE_TR_FUNCTIONS(luma::NodeChange)
};

Error noChange(const QString& reason)
{
    return Error{reason.toStdString()};
}

const std::string* editableText(const html::Node& node)
{
    const bool isText = node.kind() == html::Node::Kind::Text || node.kind() == html::Node::Kind::Comment;
    return isText && !html::isServerCode(node) ? &static_cast<const html::CharacterData&>(node).data()
                                               : nullptr;
}

/// A text with its runs of white space as blanks, and where each byte of it comes from.
struct Line
{
    std::string text;
    std::vector<std::size_t> places; // and, at last, the end of the last byte
};

Line lineOf(const std::string& data)
{
    Line line;
    const auto isSpace = [](char c) { return isWhiteSpace(c); };
    const auto end =
        static_cast<std::size_t>(data.rend() - std::find_if_not(data.rbegin(), data.rend(), isSpace));
    for (std::size_t at = 0; at < end; ++at) {
        const char c = isSpace(data[at]) ? ' ' : data[at];
        if (c == ' ' && (line.text.empty() || line.text.back() == ' '))
            continue;
        line.text += c;
        line.places.push_back(at);
    }
    line.places.push_back(line.text.empty() ? 0 : end);
    return line;
}

/// The data after its line has become `wanted`; only what differs is exchanged.
std::string withLine(const std::string& data, const std::string& wanted)
{
    const Line line = lineOf(data);
    const std::string& before = line.text;
    const auto same = std::mismatch(before.begin(), before.end(), wanted.begin(), wanted.end());
    const auto start = static_cast<std::size_t>(same.first - before.begin());
    std::size_t rest = 0;
    while (rest < std::min(before.size(), wanted.size()) - start &&
           before[before.size() - 1 - rest] == wanted[wanted.size() - 1 - rest])
        ++rest;
    const std::size_t from = line.places[start];
    const std::size_t to = line.places[before.size() - rest];
    return data.substr(0, from) + wanted.substr(start, wanted.size() - rest - start) + data.substr(to);
}

/// A comment ends at these (HTML standard, 13.1.6).
bool endsComment(std::string_view text)
{
    return text.starts_with('>') || text.starts_with("->") || text.find("-->") != std::string_view::npos ||
           text.find("--!>") != std::string_view::npos || text.ends_with("<!-") || text.ends_with("--");
}

MarkupDifference exchanged(html::Node& node, html::NodePtr other)
{
    MarkupDifference difference;
    difference.parent = node.parent();
    difference.previous = node.previous();
    difference.next = node.next();
    if (other)
        difference.nodes.push_back(std::move(other));
    return difference;
}

std::set<std::string_view> idsOutside(const html::Node& inner)
{
    std::set<std::string_view> ids;
    const html::Node& page = inner.root();
    for (const html::Node* node = &page; node; node = node->following(page)) {
        const html::Element* const element = node->asElement();
        if (element && !element->attr("id").empty() && !element->isInside(inner))
            ids.insert(element->attr("id"));
    }
    return ids;
}

/// Of an id that is there already.
QString idTaken(std::set<std::string_view>& ids, const html::Node& added)
{
    for (const html::Node* node = &added; node; node = node->following(added)) {
        const html::Element* const element = node->asElement();
        if (element && !element->attr("id").empty() && !ids.insert(element->attr("id")).second)
            return NodeTexts::tr("Another element has the ID %1 already.")
                .arg(QString::fromStdString(std::string(element->attr("id"))));
    }
    return {};
}

QString reasonAgainstNode(const TagRules& rules, const html::Node& old, const html::Element& added)
{
    const html::Element& parent = *old.parent()->asElement();
    const bool isOfSameName = old.asElement() && old.asElement()->tagName() == added.tagName();
    if ((isOfSameName || html::isServerCode(added) || rules.canDrop(&added, &parent)) &&
        isReadSo(added, parent))
        return {};
    return NodeTexts::tr("<%1> can't stand here, or not with these contents.").arg(tagNameOf(added));
}

} // namespace

QString textInLine(const html::Node& node)
{
    const std::string* const text = editableText(node);
    return text ? QString::fromStdString(lineOf(*text).text) : QString();
}

bool isTextForLine(const html::Node& node)
{
    const std::string* const text = editableText(node);
    const html::Element* const parent = node.parent() ? node.parent()->asElement() : nullptr;
    const bool keepsSpace = parent && node.kind() == html::Node::Kind::Text &&
                            (html::hasRawText(*parent) || html::swallowsFirstLineFeed(*parent));
    return text && !keepsSpace && text->size() <= longestLine;
}

Result<MarkupDifference> withTextInLine(html::Node& node, const QString& text)
{
    const std::string* const data = editableText(node);
    const std::string wanted = simplified(text.toStdString());
    if (!data || wanted == lineOf(*data).text)
        return MarkupDifference();
    if (node.kind() == html::Node::Kind::Text)
        return exchanged(node, wanted.empty() ? nullptr : html::CharacterData::text(withLine(*data, wanted)));
    if (endsComment(wanted))
        return noChange(NodeTexts::tr("A comment can't hold \u201c-->\u201d or end in \u201c--\u201d."));
    return exchanged(node, html::CharacterData::comment(withLine(*data, wanted)));
}

QString markupToEdit(const html::Node& node)
{
    std::string markup;
    html::serialize(node, markup, html::CodeForm::Code);
    return QString::fromStdString(markup);
}

Result<MarkupDifference> withMarkup(const TagRules& rules, html::Node& node, const QString& markup)
{
    html::Element* const parent = node.parent() ? node.parent()->asElement() : nullptr;
    if (!parent || parent->is("html") || !rules.canDelete(&node))
        return noChange(NodeTexts::tr("This is edited in the page's source."));
    if (markup == markupToEdit(node))
        return MarkupDifference();
    auto nodes = html::parseSourceFragment(markup.toStdString(), *parent);
    if (!nodes)
        return nodes.error();
    auto ids = idsOutside(node);
    html::Element holder(parent->tagName(), parent->nameSpace(), parent->attributes());
    for (html::NodePtr& each : *nodes) {
        QString reason = each->asElement() ? reasonAgainstNode(rules, node, *each->asElement()) : QString();
        if (reason.isEmpty())
            reason = idTaken(ids, *each);
        if (!reason.isEmpty())
            return noChange(reason);
    }
    for (html::NodePtr& each : *nodes)
        holder.append(std::move(each));
    return differenceInRun(*parent, &node, node.next(), holder);
}

} // namespace luma
