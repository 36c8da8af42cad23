// SPDX-License-Identifier: GPL-3.0-or-later
#include "html/pagesource.h"

#include "base/ascii.h"
#include "base/utf8.h"
#include "html/characterdata.h"
#include "html/codemarks.h"
#include "html/doctype.h"
#include "html/document.h"
#include "html/element.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <functional>
#include <type_traits>
#include <unordered_set>
#include <utility>

namespace luma::html {

namespace {

constexpr std::uint32_t unset = ~std::uint32_t(0);

std::uint64_t mixed(std::uint64_t hash, std::uint64_t value)
{
    // The golden ratio's bits, as in other hash combiners.
    return hash ^ (value + 0x9E3779B97F4A7C15U + (hash << 6U) + (hash >> 2U));
}

std::uint64_t mixed(std::uint64_t hash, std::string_view text)
{
    return mixed(hash, std::hash<std::string_view>()(text));
}

std::vector<Node*> nodesOf(Document& document)
{
    std::vector<Node*> nodes;
    for (Node* node = &document; node; node = node->following(document))
        nodes.push_back(node);
    return nodes;
}

bool isEndTagOf(std::string_view tag, std::string_view name)
{
    constexpr std::string_view ends = " \t\n\f\r/>";
    return tag.starts_with("</") && tag.size() > name.size() + 2 &&
           equalIgnoringAsciiCase(tag.substr(2, name.size()), name) &&
           ends.find(tag[name.size() + 2]) != std::string_view::npos;
}

/// The smallest and the largest of a range of numbers, asked for often.
class RangeBounds final
{
public:
    explicit RangeBounds(const std::vector<std::uint32_t>& values)
    {
        m_least.push_back(values);
        m_most.push_back(values);
        for (std::size_t step = 1; step * 2 <= values.size(); step *= 2) {
            const std::vector<std::uint32_t>& least = m_least.back();
            const std::vector<std::uint32_t>& most = m_most.back();
            std::vector<std::uint32_t> nextLeast;
            std::vector<std::uint32_t> nextMost;
            for (std::size_t i = 0; i + step * 2 <= values.size(); ++i) {
                nextLeast.push_back(std::min(least[i], least[i + step]));
                nextMost.push_back(std::max(most[i], most[i + step]));
            }
            m_least.push_back(std::move(nextLeast));
            m_most.push_back(std::move(nextMost));
        }
    }

    /// Of the values from `begin` to `end`, at least one.
    [[nodiscard]] bool areWithin(std::size_t begin, std::size_t end, std::uint32_t first,
                                 std::uint32_t behind) const
    {
        const std::size_t level = std::bit_width(end - begin) - 1U;
        const std::size_t last = end - (std::size_t(1) << level);
        return std::min(m_least[level][begin], m_least[level][last]) >= first &&
               std::max(m_most[level][begin], m_most[level][last]) < behind;
    }

private:
    std::vector<std::vector<std::uint32_t>> m_least;
    std::vector<std::vector<std::uint32_t>> m_most;
};

} // namespace

std::string_view PageSource::lineEnd() const
{
    const std::size_t line = text().find('\n');
    return line != std::string_view::npos && line > 0 && text()[line - 1] == '\r' ? "\r\n" : "\n";
}

namespace {

QByteArray packed(const void* bytes, std::size_t size)
{
    constexpr int quickly = 1;
    QByteArray result = qCompress(static_cast<const uchar*>(bytes), static_cast<qsizetype>(size), quickly);
    result.squeeze();
    return result;
}

} // namespace

void PageSource::pack() const
{
    static_assert(std::is_trivially_copyable_v<SourceRecord>);
    if (!m_packedText.isEmpty() || m_held.text.empty())
        return;
    QByteArray text = packed(m_held.text.data(), m_held.text.size());
    QByteArray records = packed(m_held.records.data(), m_held.records.size() * sizeof(SourceRecord));
    if (text.isEmpty() || records.isEmpty()) // no memory
        return;
    m_packedText = std::move(text);
    m_packedRecords = std::move(records);
    std::string().swap(m_held.text);
    std::vector<SourceRecord>().swap(m_held.records);
}

void PageSource::unpack() const
{
    m_held.text = qUncompress(std::exchange(m_packedText, {})).toStdString();
    const QByteArray records = qUncompress(std::exchange(m_packedRecords, {}));
    m_held.records.resize(static_cast<std::size_t>(records.size()) / sizeof(SourceRecord));
    std::memcpy(m_held.records.data(), records.data(), static_cast<std::size_t>(records.size()));
}

void PageSource::addNode() const
{
    if (m_nodes++ == 0)
        m_self = shared_from_this();
}

void PageSource::removeNode() const
{
    if (--m_nodes == 0)
        m_self.reset();
}

bool PageSource::isWhole(const Node& node)
{
    return node.origin().source->isWhole(node.origin().record);
}

const SourceRecord& PageSource::recordOf(const Node& node)
{
    return node.origin().source->record(node.origin().record);
}

std::uint64_t PageSource::contentHash(const Node& node)
{
    auto hash = static_cast<std::uint64_t>(node.kind());
    if (const Element* const element = node.asElement()) {
        hash = mixed(mixed(hash, static_cast<std::uint64_t>(element->nameSpace())), element->tagName());
        for (const Attribute& attribute : element->attributes())
            hash = mixed(mixed(hash, attribute.name), attribute.value);
    } else if (node.kind() == Node::Kind::Doctype) {
        hash = mixed(hash, static_cast<const Doctype&>(node).declaration());
    } else if (node.kind() != Node::Kind::Document) {
        hash = mixed(hash, static_cast<const CharacterData&>(node).data());
    }
    return hash;
}

std::uint64_t PageSource::textHash(std::string_view text)
{
    return mixed(static_cast<std::uint64_t>(Node::Kind::Text), text);
}

std::shared_ptr<const PageSource> PageSource::attach(std::string text, Document& document,
                                                     const std::vector<SourceMarks>& marks)
{
    const std::shared_ptr<PageSource> source(new PageSource(std::move(text)));
    const std::vector<Node*> nodes = nodesOf(document);
    const std::vector<std::uint32_t> parents = source->addRecords(nodes, marks);
    source->claimEndTags(nodes);
    source->setExtents(nodes, parents);
    source->findWholeOnes(nodes, parents, marks);
    for (std::uint32_t number = 0; number < nodes.size(); ++number)
        nodes[number]->setOrigin({source.get(), number});
    return source;
}

std::vector<std::uint32_t> PageSource::addRecords(const std::vector<Node*>& nodes,
                                                  const std::vector<SourceMarks>& marks)
{
    m_held.records.resize(nodes.size());
    std::vector<std::uint32_t> parents(nodes.size());
    std::vector<std::uint32_t> open;
    for (std::uint32_t number = 0; number < nodes.size(); ++number) {
        SourceRecord& record = m_held.records[number];
        while (!open.empty() && nodes[open.back()] != nodes[number]->parent()) {
            m_held.records[open.back()].after = number;
            open.pop_back();
        }
        parents[number] = open.empty() ? 0 : open.back();
        record.content = static_cast<std::uint32_t>(contentHash(*nodes[number]));
        record.after = number + 1;
        if (number > 0) {
            record.start = marks[nodes[number]->origin().record].start;
            record.end = marks[nodes[number]->origin().record].end;
        }
        if (nodes[number]->asParent())
            open.push_back(number);
    }
    for (const std::uint32_t number : open)
        m_held.records[number].after = size();
    return parents;
}

// The parser tells the tag that made it close an element, which may be another's: each belongs to the innermost element
// of its name. One that has text of its element behind it (white space behind </body>) counts as part of that text.
void PageSource::claimEndTags(const std::vector<Node*>& nodes)
{
    std::vector<SourceRange> texts;
    for (std::uint32_t number = 1; number < size(); ++number) {
        if (textOf(*nodes[number]) && !m_held.records[number].start.isEmpty())
            texts.push_back(m_held.records[number].start);
    }
    std::sort(texts.begin(), texts.end(),
              [](const SourceRange& a, const SourceRange& b) { return a.begin < b.begin; });
    const auto isInText = [&texts](const SourceRange& tag) {
        const auto behind =
            std::upper_bound(texts.begin(), texts.end(), tag.begin,
                             [](std::uint32_t place, const SourceRange& text) { return place < text.begin; });
        return behind != texts.begin() && std::prev(behind)->contains(tag);
    };
    std::unordered_set<std::uint32_t> claimed;
    for (std::uint32_t number = size(); number-- > 1;) {
        SourceRecord& record = m_held.records[number];
        const Element* const element = nodes[number]->asElement();
        const bool own = element && !record.end.isEmpty() &&
                         isEndTagOf(text(record.end), withUnspelledCode(element->tagName())) &&
                         !isInText(record.end) && claimed.insert(record.end.begin).second;
        if (!own)
            record.end = {};
    }
}

// The parser does not tell the end tags of forms.
void PageSource::claimFormEnd(SourceRecord& record) const
{
    if (!record.end.isEmpty() || record.extent.begin == unset)
        return;
    const std::string_view rest = std::string_view(m_held.text).substr(record.extent.end);
    const std::size_t close = rest.find('>');
    if (close != std::string_view::npos && isEndTagOf(rest.substr(0, close + 1), "form"))
        record.end = {record.extent.end, record.extent.end + static_cast<std::uint32_t>(close) + 1};
}

void PageSource::setExtents(const std::vector<Node*>& nodes, const std::vector<std::uint32_t>& parents)
{
    for (SourceRecord& record : m_held.records)
        record.extent = record.start.isEmpty() ? SourceRange{unset, 0} : record.start;
    for (std::uint32_t number = size(); number-- > 1;) {
        SourceRecord& record = m_held.records[number];
        if (const Element* const element = nodes[number]->asElement(); element && element->is("form"))
            claimFormEnd(record);
        // Where a child stands behind the end tag (white space behind </body></html>), the tag is one among the children.
        if (record.extent.end > record.end.begin)
            record.end = {};
        if (!record.end.isEmpty()) // an element may be its end tag alone: </p>
            record.extent = {std::min(record.extent.begin, record.end.begin), record.end.end};
        SourceRange& above = m_held.records[parents[number]].extent;
        if (record.extent.begin == unset)
            continue;
        above.begin = std::min(above.begin, record.extent.begin);
        above.end = std::max(above.end, record.extent.end);
    }
    m_held.records[0].extent = {0, static_cast<std::uint32_t>(m_held.text.size())};
    // What has no markup at all stands behind what comes before it.
    for (std::uint32_t number = 1; number < size(); ++number) {
        SourceRecord& record = m_held.records[number];
        if (record.extent.begin != unset)
            continue;
        const SourceRecord& above = m_held.records[parents[number]];
        std::uint32_t place = above.start.isEmpty() ? above.extent.begin : above.start.end;
        for (std::uint32_t sibling = parents[number] + 1; sibling < number;
             sibling = m_held.records[sibling].after)
            place = std::max(place, m_held.records[sibling].extent.end);
        record.extent = {place, place};
    }
}

void PageSource::findWholeOnes(const std::vector<Node*>& nodes, const std::vector<std::uint32_t>& parents,
                               const std::vector<SourceMarks>& marks)
{
    struct Token
    {
        std::uint32_t begin;
        std::uint32_t owner;
    };
    std::vector<Token> tokens;
    for (std::uint32_t number = 1; number < size(); ++number) {
        if (!m_held.records[number].start.isEmpty())
            tokens.push_back({m_held.records[number].start.begin, number});
        if (!m_held.records[number].end.isEmpty())
            tokens.push_back({m_held.records[number].end.begin, number});
        for (const SourceRange& part : marks[nodes[number]->origin().record].strayParts)
            tokens.push_back({part.begin, number});
    }
    std::sort(tokens.begin(), tokens.end(), [](const Token& a, const Token& b) { return a.begin < b.begin; });
    std::vector<std::uint32_t> owners;
    owners.reserve(tokens.size());
    for (const Token& token : tokens)
        owners.push_back(token.owner);
    const RangeBounds bounds(owners);
    const auto behind = [&tokens](std::uint32_t place) {
        return static_cast<std::size_t>(
            std::lower_bound(tokens.begin(), tokens.end(), place,
                             [](const Token& token, std::uint32_t at) { return token.begin < at; }) -
            tokens.begin());
    };
    for (std::uint32_t number = 0; number < size(); ++number) {
        const SourceRecord& record = m_held.records[number];
        const std::size_t first = behind(record.extent.begin);
        const std::size_t last = behind(record.extent.end);
        m_held.whole.push_back(
            m_held.records[parents[number]].extent.contains(record.extent) &&
            (first == last || bounds.areWithin(first, last, number == 0 ? 1 : number, record.after)));
    }
}

namespace {

// The node behind this one and behind those that a parser would join to it: text that touches, and text of nothing.
Node* followingJoined(const Node& node, const Document& document)
{
    const auto isJoined = [&node](const Node& other) {
        const std::string* const text = textOf(other);
        return text && (text->empty() || (textOf(node) && other.parent() == node.parent() &&
                                          other.previous() && textOf(*other.previous())));
    };
    Node* next = node.following(document);
    while (next && isJoined(*next))
        next = next->following(document);
    return next;
}

} // namespace

void PageSource::transfer(Document& from, Document& to)
{
    to.trustServerCode(from.serverCode());
    Node* source = &from;
    for (Node* node = &to; node && source; node = followingJoined(*node, to)) {
        node->setOrigin(source->origin());
        source = followingJoined(*source, from);
    }
}

std::uint64_t PageSource::treeHash() const
{
    std::uint64_t hash = 0;
    for (const SourceRecord& record : held().records)
        hash = mixed(hash, record.content);
    return hash;
}

std::uint64_t PageSource::treeHash(const Document& document)
{
    std::uint64_t hash = 0;
    for (const Node* node = &document; node; node = followingJoined(*node, document)) {
        const std::uint64_t content = textOf(*node) ? textHash(joinedText(*node)) : contentHash(*node);
        hash = mixed(hash, static_cast<std::uint32_t>(content));
    }
    return hash;
}

} // namespace luma::html
