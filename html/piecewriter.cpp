// SPDX-License-Identifier: GPL-3.0-or-later
#include "html/piecewriter.h"

#include "base/utf8.h"
#include "html/characterdata.h"
#include "html/codemarks.h"
#include "html/element.h"
#include "html/serializer.h"
#include "html/sourcepatch.h"
#include "html/tagtraits.h"

#include <algorithm>
#include <utility>

namespace luma::html {

namespace {

bool isFrame(const Element& element)
{
    return element.is("html") || element.is("head") || element.is("body");
}

// Whether the element needs a start tag to hold what it does where the page leaves it out. A comment at the beginning of
// html or head would stand before it, all else in the body may belong to the head.
bool needsStartTag(const Element& element)
{
    return !isFrame(element) || element.is("body") ||
           (element.firstChild() && !element.firstChild()->asElement());
}

bool hasOpenEnd(const Node& node)
{
    const Element* const element = node.asElement();
    return element && PageSource::recordOf(node).end.isEmpty() && !isVoid(*element) && !isFrame(*element) &&
           !isServerCode(*element);
}

// Text nodes that touch are one text.
std::string joinedText(const Node& first, const Node* behind)
{
    std::string text;
    for (const Node* node = &first; node != behind; node = node->next())
        text += *textOf(*node);
    return text;
}

TextPlace placeOf(const Node& text)
{
    const Element* const parent = text.parent() ? text.parent()->asElement() : nullptr;
    if (!parent)
        return TextPlace::Text;
    return hasRawText(*parent)            ? TextPlace::RawText
           : hasEscapableRawText(*parent) ? TextPlace::EscapableText
                                          : TextPlace::Text;
}

/// The length of the line end that the parser drops behind the start tag of a pre: it belongs to the tag.
std::uint32_t lineEndBehindTag(const ParentNode& parent, const SourceRange& inner)
{
    const Element* const element = parent.asElement();
    if (!element || !swallowsFirstLineFeed(*element) || PageSource::recordOf(parent).start.isEmpty())
        return 0;
    const std::string_view text = parent.origin().source->text(inner);
    return text.starts_with("\r\n") ? 2 : text.starts_with('\n') || text.starts_with('\r') ? 1 : 0;
}

} // namespace

PieceWriter::PieceWriter(const Document& document, OmittedTags tags,
                         const std::unordered_set<const Node*>& printed)
    : m_document(document),
      m_tags(tags),
      m_printed(printed),
      m_source(document.origin().source),
      m_lineEnd(m_source ? m_source->lineEnd() : "\n"),
      m_unchanged(document)
{}

std::vector<WrittenPiece> PieceWriter::write()
{
    if (m_document.hasByteOrderMark())
        print(utf8ByteOrderMark);
    const auto size = static_cast<std::uint32_t>(m_source ? m_source->text().size() : 0);
    if (!m_source || m_printed.contains(&m_document))
        printAll(m_document);
    else if (m_unchanged.contains(m_document))
        keep(*m_source, {0, size});
    else
        writeChildren(m_document, {0, size});
    return std::move(m_pieces);
}

void PieceWriter::print(std::string_view text)
{
    if (text.empty())
        return;
    if (m_pieces.empty() || m_pieces.back().source)
        m_pieces.push_back({nullptr, {}, {}});
    m_pieces.back().text += text;
}

void PieceWriter::keep(const PageSource& source, const SourceRange& range)
{
    SourceRange rest = range;
    const auto extent = [](const Unit& unit) {
        return unit.origin.source->record(unit.origin.record).extent;
    };
    for (;;) {
        auto first = m_edited.end();
        for (auto unit = m_edited.begin(); unit != m_edited.end(); ++unit) {
            const bool isHere = unit->origin.source == &source && rest.contains(extent(*unit));
            const bool isEarlier = first == m_edited.end() || extent(*unit).begin < extent(*first).begin ||
                                   extent(*unit).contains(extent(*first));
            if (isHere && isEarlier)
                first = unit;
        }
        if (first == m_edited.end())
            break;
        const Unit unit = *first;
        m_edited.erase(first);
        keepBytes(source, {rest.begin, extent(unit).begin});
        writeUnit(unit);
        rest.begin = extent(unit).end;
    }
    keepBytes(source, rest);
}

// Children whose bytes are entangled stay where they are; those that were edited are written at their places.
void PieceWriter::keepEntangled(const KeptChildren& children, std::size_t first)
{
    const Unit& unit = children.units()[first];
    for (std::size_t i = first; i < first + unit.length; ++i) {
        const Node& node = *children.units()[i].node;
        if (m_unchanged.contains(node) && !m_printed.contains(&node))
            continue;
        m_edited.push_back(children.units()[i]);
        m_edited.back().kept = true;
    }
    keep(*unit.origin.source, children.clusters()[static_cast<std::size_t>(unit.cluster)].range);
}

void PieceWriter::keepBytes(const PageSource& source, const SourceRange& range)
{
    if (range.begin >= range.end)
        return;
    if (!m_pieces.empty() && m_pieces.back().source.get() == &source &&
        m_pieces.back().range.end == range.begin)
        m_pieces.back().range.end = range.end;
    else
        m_pieces.push_back({source.shared_from_this(), range, {}});
}

// What stays at its place may hold bytes of others (a comment behind </html>, text that a table gives up); elsewhere it is
// printed then.
void PieceWriter::writeUnit(const Unit& unit)
{
    const Node& node = *unit.node;
    if (m_printed.contains(&node)) {
        std::string markup;
        serialize(node, markup, CodeForm::Code);
        print(withLineEnds(markup));
        return;
    }
    if (textOf(node)) {
        writeText(unit);
        return;
    }
    const bool hasSource = node.origin().source && (unit.kept || PageSource::isWhole(node));
    if (hasSource && m_unchanged.contains(node) && (m_tags == OmittedTags::None || !hasOpenEnd(node))) {
        keep(*node.origin().source, PageSource::recordOf(node).extent);
    } else if (const Element* const element = node.asElement(); hasSource && element) {
        writeElement(*element);
    } else {
        printNode(node);
    }
}

void PieceWriter::writeElement(const Element& element)
{
    const SourceRecord& record = PageSource::recordOf(element);
    const PageSource& source = *element.origin().source;
    writeStartOf(element);
    const std::uint32_t begin = record.start.isEmpty() ? record.extent.begin : record.start.end;
    const std::uint32_t end = record.end.isEmpty() ? record.extent.end : record.end.begin;
    writeChildren(element, {begin, end});
    if (!record.end.isEmpty())
        keep(source, record.end);
    else if (!isFrame(element) &&
             (m_tags == OmittedTags::All || (m_tags == OmittedTags::EndTags && !record.start.isEmpty())))
        printEndTag(element);
}

void PieceWriter::writeStartOf(const Element& element)
{
    const SourceRecord& record = PageSource::recordOf(element);
    const std::string_view old = element.origin().source->text(record.start);
    const bool isAdded = old.empty() && m_tags == OmittedTags::All && needsStartTag(element);
    if (UnchangedNodes::hasSameContent(element) && !isAdded) {
        keep(*element.origin().source, record.start);
        return;
    }
    if (const auto tag = patchedStartTag(old, element, m_document.serverCode(), m_lineEnd)) {
        print(*tag);
        return;
    }
    std::string tag;
    writeStartTag(element, tag, CodeForm::Code);
    print(withLineEnds(tag));
}

void PieceWriter::printEndTag(const Element& element)
{
    std::string tag;
    writeEndTag(element, tag, CodeForm::Code);
    print(tag);
}

void PieceWriter::writeText(const Unit& unit)
{
    const std::string text = joinedText(*unit.node, unit.behind);
    const TextPlace place = placeOf(*unit.node);
    const auto& [source, number] = unit.origin;
    const bool hasBytes = source && (unit.kept || source->isWhole(number));
    if (hasBytes && source->record(number).hasContent(PageSource::textHash(text)))
        keep(*source, source->record(number).extent);
    else
        print(patchedText(hasBytes ? source->text(source->record(number).extent) : std::string_view(), text,
                          place, m_document.serverCode(), m_lineEnd));
}

// Without the node's own bytes; those of its children may still be kept.
void PieceWriter::printNode(const Node& node)
{
    const Element* const element = node.asElement();
    if (!element) {
        std::string markup;
        serialize(node, markup, CodeForm::Code);
        print(withLineEnds(markup));
        return;
    }
    std::string tag;
    writeStartTag(*element, tag, CodeForm::Code);
    print(withLineEnds(tag));
    for (const Unit& unit : KeptChildren::unitsOf(*element))
        writeUnit(unit);
    printEndTag(*element);
}

std::string PieceWriter::withLineEnds(std::string_view text) const
{
    std::string result;
    for (const char c : text)
        c == '\n' ? result.append(m_lineEnd) : result.append(1, c);
    return result;
}

void PieceWriter::printAll(const ParentNode& parent)
{
    for (const Node* child = parent.firstChild(); child; child = child->next()) {
        std::string markup;
        serialize(*child, markup, CodeForm::Code);
        print(withLineEnds(markup));
    }
}

void PieceWriter::writeChildren(const ParentNode& parent, const SourceRange& inner)
{
    const KeptChildren children(parent, m_unchanged);
    const auto& clusters = children.clusters();
    const auto& units = children.units();
    const PageSource& source = *parent.origin().source;
    std::size_t nextCluster = 0;
    const std::uint32_t first = inner.begin + lineEndBehindTag(parent, inner);
    keep(source, {inner.begin, first});
    const auto gapBefore = [&](std::size_t cluster) {
        const std::uint32_t begin = cluster == 0 ? first : clusters[cluster - 1].range.end;
        const std::uint32_t end = cluster == clusters.size() ? inner.end : clusters[cluster].range.begin;
        return SourceRange{std::max(begin, first), std::min(std::max(begin, end), inner.end)};
    };
    for (std::size_t i = 0; i < units.size(); i += units[i].kept ? units[i].length : 1) {
        if (!units[i].kept) {
            writeUnit(units[i]);
            continue;
        }
        const auto cluster = static_cast<std::size_t>(units[i].cluster);
        for (; nextCluster <= cluster; ++nextCluster)
            keep(source, gapBefore(nextCluster));
        if (units[i].length > 1)
            keepEntangled(children, i);
        else
            writeUnit(units[i]);
    }
    for (; nextCluster <= clusters.size(); ++nextCluster)
        keep(source, gapBefore(nextCluster));
}

} // namespace luma::html
