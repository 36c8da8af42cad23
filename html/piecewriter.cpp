// SPDX-License-Identifier: GPL-3.0-or-later
#include "html/piecewriter.h"

#include "base/ascii.h"
#include "base/utf8.h"
#include "html/characterdata.h"
#include "html/codemarks.h"
#include "html/element.h"
#include "html/omittedtags.h"
#include "html/serializer.h"
#include "html/sourcepatch.h"
#include "html/tagtraits.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace luma::html {

namespace {

TextPlace placeOf(const Node& text)
{
    const Element* const parent = text.parent() ? text.parent()->asElement() : nullptr;
    if (!parent)
        return TextPlace::Text;
    return hasRawText(*parent)            ? TextPlace::RawText
           : hasEscapableRawText(*parent) ? TextPlace::EscapableText
                                          : TextPlace::Text;
}

/// The parts of a text among whose bytes others may lie; nothing where they don't say what the text does.
std::optional<TextParts> partsOf(const ParentNode& parent, const PageSource& source, std::uint32_t number)
{
    const Element* const element = parent.asElement();
    const SourceRecord& record = source.record(number);
    if (source.text(record.extent).find('<') == std::string_view::npos)
        return {};
    TextParts parts(source.text(record.extent), element && element->nameSpace() != NameSpace::Html);
    if (!record.hasContent(PageSource::textHash(parts.text())))
        return {};
    return parts;
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

PieceWriter::PieceWriter(const Document& document, OmittedTags tags, const Node* around, Around manner)
    : m_document(document),
      m_tags(tags),
      m_printed(manner == Around::Printed ? around : nullptr),
      m_spelledOut(manner == Around::Printed ? nullptr : around),
      m_tagsSpelledOut(manner == Around::TagsWritten ? OmittedTags::All : OmittedTags::Edited),
      m_source(document.origin().source),
      m_lineEnd(m_source ? m_source->lineEnd() : "\n"),
      m_unchanged(document)
{
    for (const Node* node = around; node; node = node->parent())
        m_opened.insert(node);
    if (tags == OmittedTags::Reopened && m_source)
        m_reopened = ReopenedFormatting(document);
    for (const Node* node : m_reopened.edited()) {
        for (; node; node = node->parent())
            m_opened.insert(node);
    }
}

std::vector<WrittenPiece> PieceWriter::write()
{
    if (m_document.hasByteOrderMark())
        print(utf8ByteOrderMark);
    const auto size = static_cast<std::uint32_t>(m_source ? m_source->text().size() : 0);
    if (!m_source || m_printed == &m_document)
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
    closeOpenEnd();
    if (m_pieces.empty() || m_pieces.back().source)
        m_pieces.push_back({nullptr, {}, {}});
    m_pieces.back().text += text;
}

// At the end of a page a comment or server code may be left open, but not where something follows.
void PieceWriter::closeOpenEnd()
{
    if (m_pieces.empty() || !m_source || m_pieces.back().source.get() != m_source ||
        m_pieces.back().range.end != m_source->text().size())
        return;
    for (const Node* node = &m_document; node; node = node->following(m_document)) {
        if (!isComment(*node) || node->origin().source != m_source)
            continue;
        const SourceRange& extent = PageSource::recordOf(*node).extent;
        const std::string markup = markupOf(*node);
        if (extent.end != m_pieces.back().range.end || !markup.starts_with(m_source->text(extent)))
            continue;
        m_pieces.push_back({nullptr, {}, markup.substr(extent.end - extent.begin)});
        return;
    }
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
        if (isUntouched(node))
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
    closeOpenEnd();
    if (!m_pieces.empty() && m_pieces.back().source.get() == &source &&
        m_pieces.back().range.end == range.begin)
        m_pieces.back().range.end = range.end;
    else
        m_pieces.push_back({source.shared_from_this(), range, {}});
}

bool PieceWriter::isUntouched(const Node& node) const
{
    return m_unchanged.contains(node) && !m_opened.contains(&node);
}

// Whether an element that is in the page, not edited itself, gets the tags that it lacks.
bool PieceWriter::lacksWantedTag(const Unit& unit) const
{
    const Node& node = *unit.node;
    const Element* const element = node.asElement();
    const bool lacksStart =
        element && !isComment(node) && !isSkeleton(*element) && PageSource::recordOf(node).start.isEmpty();
    switch (m_tags) {
    case OmittedTags::None:
        return false;
    case OmittedTags::Edited:
    case OmittedTags::Reopened:
        return (unit.isBeforeEdit && hasOpenEnd(node)) || m_reopened.edited().contains(&node);
    case OmittedTags::EndTags:
        return hasOpenEnd(node);
    case OmittedTags::All:
        break;
    }
    return hasOpenEnd(node) || lacksStart;
}

bool PieceWriter::wantsStartTag(const Element& element) const
{
    if (m_isSpellingOut && isFormatting(element))
        return true;
    switch (m_tags) {
    case OmittedTags::Reopened:
        if (m_reopened.wantsStartTag(element))
            return true;
        [[fallthrough]];
    case OmittedTags::Edited:
        return needsStartTag(element) &&
               (UnchangedNodes::isEdited(element) ||
                (element.is("body") && element.firstChild() && !isUntouched(*element.firstChild())));
    case OmittedTags::All:
        return !isSkeleton(element) || needsStartTag(element);
    default:
        return false;
    }
}

bool PieceWriter::wantsEndTag(const Element& element, bool isBeforeEdit) const
{
    if (isSkeleton(element) || closesItself(element))
        return false;
    if (m_isSpellingOut && isFormatting(element))
        return true;
    switch (m_tags) {
    case OmittedTags::None:
        return false;
    case OmittedTags::Edited:
    case OmittedTags::Reopened:
        return isBeforeEdit || UnchangedNodes::isEdited(element) || m_reopened.wantsEndTag(element);
    case OmittedTags::EndTags:
        return !PageSource::recordOf(element).start.isEmpty();
    case OmittedTags::All:
        break;
    }
    return true;
}

// What stays at its place may hold bytes of others (a comment behind </html>, text that a table gives up); elsewhere it is
// printed then.
void PieceWriter::writeUnit(const Unit& unit)
{
    const Node& node = *unit.node;
    if (m_printed == &node) {
        printMarkup(node);
        return;
    }
    if (textOf(node)) {
        writeText(unit);
        return;
    }
    const Element* const element = node.asElement();
    const bool hasSource = node.origin().source && (unit.kept || PageSource::isWhole(node));
    const bool isDescended = m_isSpellingOut && !isComment(node);
    if (hasSource && isUntouched(node) && !isDescended && !lacksWantedTag(unit)) {
        keep(*node.origin().source, PageSource::recordOf(node).extent);
    } else if (!element || isComment(node)) {
        printMarkup(node);
    } else {
        const bool begins = m_spelledOut == &node;
        const OmittedTags tags = std::exchange(m_tags, begins ? m_tagsSpelledOut : m_tags);
        m_isSpellingOut = m_isSpellingOut || begins;
        hasSource ? writeElement(*element, unit.isBeforeEdit) : printElement(*element);
        m_isSpellingOut = m_isSpellingOut && !begins;
        m_tags = tags;
    }
}

void PieceWriter::writeElement(const Element& element, bool isBeforeEdit)
{
    const SourceRecord& record = PageSource::recordOf(element);
    const PageSource& source = *element.origin().source;
    writeStartOf(element);
    const std::uint32_t begin = record.start.isEmpty() ? record.extent.begin : record.start.end;
    const std::uint32_t end = record.end.isEmpty() ? record.extent.end : record.end.begin;
    writeChildren(element, {begin, end});
    if (!record.end.isEmpty())
        keep(source, record.end);
    else if (wantsEndTag(element, isBeforeEdit))
        printEndTag(element);
}

void PieceWriter::writeStartOf(const Element& element)
{
    const SourceRecord& record = PageSource::recordOf(element);
    const std::string_view old = element.origin().source->text(record.start);
    const bool isAdded = old.empty() && wantsStartTag(element);
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
    const auto print = [&](std::string_view bytes) {
        this->print(patchedText(bytes, text, place, m_document.serverCode(), m_lineEnd));
    };
    if (!source) {
        print({});
        return;
    }
    const SourceRecord& record = source->record(number);
    auto parts = place == TextPlace::Text ? partsOf(*unit.node->parent(), *source, number) : std::nullopt;
    const bool isAlone = source->isWhole(number) && (!parts || parts->parts().size() <= 1);
    if ((unit.kept || isAlone) && record.hasContent(PageSource::textHash(text))) {
        keep(*source, record.extent);
    } else if (isAlone) {
        print(source->text(record.extent));
    } else if (unit.kept && parts) {
        parts->setText(text);
        writeParts(*parts, *source, record.extent.begin);
    } else {
        print(parts ? parts->ownBytes() : std::string());
    }
}

void PieceWriter::writeParts(const TextParts& parts, const PageSource& source, std::uint32_t begin)
{
    for (const TextParts::Part& part : parts.parts()) {
        const SourceRange range = {begin + static_cast<std::uint32_t>(part.begin),
                                   begin + static_cast<std::uint32_t>(part.end)};
        if (part.wanted == part.text)
            keep(source, range);
        else
            print(
                patchedText(source.text(range), part.wanted, part.place, m_document.serverCode(), m_lineEnd));
    }
}

// Where a text has gone, the tags and comments among its bytes stay.
void PieceWriter::keepTokensOf(const ParentNode& parent, const KeptChildren& children, std::size_t number)
{
    const KeptChildren::Cluster& cluster = children.clusters()[number];
    const PageSource& source = *parent.origin().source;
    const std::uint32_t child = children.childOf(cluster);
    if (cluster.behind - cluster.first > 1)
        return;
    if (auto parts = partsOf(parent, source, child); parts && parts->parts().size() > 1) {
        parts->setText({});
        writeParts(*parts, source, cluster.range.begin);
    }
}

std::string PieceWriter::markupOf(const Node& node) const
{
    std::string markup;
    serialize(node, markup, CodeForm::Code);
    return withLineEnds(markup);
}

void PieceWriter::printMarkup(const Node& node)
{
    print(markupOf(node));
}

// The bytes of others lie among its own, or it has none.
void PieceWriter::printElement(const Element& element)
{
    const PageSource* const source = element.origin().source;
    if (source && !PageSource::recordOf(element).start.isEmpty()) {
        writeStartOf(element);
    } else {
        std::string tag;
        writeStartTag(element, tag, CodeForm::Code);
        print(withLineEnds(tag));
    }
    for (const Unit& unit : KeptChildren::unitsOf(element))
        writeUnit(unit);
    if (source && !PageSource::recordOf(element).end.isEmpty())
        keep(*source, PageSource::recordOf(element).end);
    else if (!closesItself(element))
        printEndTag(element);
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
    for (const Node* child = parent.firstChild(); child; child = child->next())
        printMarkup(*child);
}

void PieceWriter::writeChildren(const ParentNode& parent, const SourceRange& inner)
{
    const KeptChildren children(parent, m_unchanged,
                                m_tags == OmittedTags::None ? KeptChildren::TypedBehindBody::InPlace
                                                            : KeptChildren::TypedBehindBody::InFrontOfEnd);
    const auto& clusters = children.clusters();
    const auto& units = children.units();
    const PageSource& source = *parent.origin().source;
    std::size_t nextCluster = 0;
    std::uint32_t done = 0;
    const std::uint32_t first = inner.begin + lineEndBehindTag(parent, inner);
    keep(source, {inner.begin, first});
    const auto gapBefore = [&](std::size_t cluster) {
        const std::uint32_t begin = cluster == 0 ? first : clusters[cluster - 1].range.end;
        const std::uint32_t end = cluster == clusters.size() ? inner.end : clusters[cluster].range.begin;
        return SourceRange{std::max({begin, first, done}), std::min(std::max({begin, end, done}), inner.end)};
    };
    const auto keepGap = [&](const SourceRange& gap) {
        keep(source, gap);
        done = std::max(done, gap.end);
    };
    const auto keepUpTo = [&](std::size_t cluster) {
        for (; nextCluster <= cluster; ++nextCluster) {
            keepGap(gapBefore(nextCluster));
            if (nextCluster < cluster)
                keepTokensOf(parent, children, nextCluster);
        }
    };
    for (std::size_t i = 0; i < units.size(); i += units[i].kept ? units[i].length : 1) {
        if (units[i].kept)
            keepUpTo(static_cast<std::size_t>(units[i].cluster));
        else if (const SourceRange gap = gapBefore(nextCluster); isBlank(source.text(gap)))
            keepGap(gap); // white space that means nothing here would be text behind what is new
        if (!units[i].kept || units[i].length == 1) {
            writeUnit(units[i]);
        } else if (!m_isSpellingOut) {
            keepEntangled(children, i);
        } else {
            for (std::size_t k = i; k < i + units[i].length; ++k) {
                Unit member = units[k];
                member.kept = false;
                writeUnit(member);
            }
        }
    }
    keepUpTo(clusters.size());
}

} // namespace luma::html
