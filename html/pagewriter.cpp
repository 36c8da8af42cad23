// SPDX-License-Identifier: GPL-3.0-or-later
#include "html/pagewriter.h"

#include "html/characterdata.h"
#include "html/element.h"
#include "html/serializer.h"
#include "html/sourcepatch.h"
#include "html/tagtraits.h"
#include "html/treecomparison.h"

#include <algorithm>
#include <optional>
#include <unordered_map>
#include <unordered_set>
#include <utility>

namespace luma::html {

namespace {

/// Writes a tree in pieces. Works down from the document: what is as it was parsed is one piece; where children changed, the
/// ones that stayed keep their bytes and all that stands between them.
class PieceWriter final
{
public:
    enum class EndTags { AsTheyWere, Written };

    PieceWriter(const Document& document, EndTags endTags, const std::unordered_set<const Node*>& printed)
        : m_endTags(endTags), m_printed(printed), m_source(document.origin().source)
    {
        const std::string_view text = m_source ? m_source->text() : std::string_view();
        const std::size_t line = text.find('\n');
        m_lineEnd = line != std::string_view::npos && line > 0 && text[line - 1] == '\r' ? "\r\n" : "\n";
        findUnchanged(document);
    }

    std::vector<WrittenPiece> write(const Document& document)
    {
        if (document.hasByteOrderMark())
            print("\xEF\xBB\xBF");
        const auto size = static_cast<std::uint32_t>(m_source ? m_source->text().size() : 0);
        if (!m_source || m_printed.contains(&document))
            printAll(document);
        else if (isUnchanged(document))
            keep(m_source, {0, size});
        else
            writeChildren(document, {0, size});
        return std::move(m_pieces);
    }

private:
    /// Children of an element whose bytes belong together: one, or several whose bytes are entangled.
    struct Cluster
    {
        SourceRange range;
        std::uint32_t first;
        std::uint32_t behind; // in the list of the parent's records
    };
    /// A child of the tree, or several text nodes that touch.
    struct Unit
    {
        const Node* node;
        const Node* behind; // the node after it
        const Origin* origin;
        std::ptrdiff_t cluster = -1;
        std::size_t length = 1;          // in units: entangled children are kept together
        const Element* around = nullptr; // the one of them that was edited, and holds the others' bytes
        bool kept = false;
    };

    // ---- What is unchanged ----

    static bool isEmptyText(const Node& node)
    {
        const std::string* const text = textOf(node);
        return text && text->empty();
    }

    [[nodiscard]] static const SourceRecord& recordOf(const Node& node)
    {
        return node.origin().source->record(node.origin().record);
    }

    // Bottom up, so that an element knows of its children.
    void findUnchanged(const Document& document)
    {
        std::vector<const Node*> nodes;
        for (const Node* node = &document; node; node = node->following(document))
            nodes.push_back(node);
        for (std::size_t i = nodes.size(); i-- > 0;) {
            const Node& node = *nodes[i];
            if (node.origin().source && hasSameContent(node) && hasSameChildren(node))
                m_unchanged.insert(&node);
        }
    }

    static bool hasSameContent(const Node& node)
    {
        return PageSource::contentHash(node) == recordOf(node).content;
    }

    [[nodiscard]] bool hasSameChildren(const Node& node) const
    {
        const ParentNode* const parent = node.asParent();
        if (!parent)
            return true;
        const std::uint32_t number = node.origin().record;
        const PageSource& source = *node.origin().source;
        std::uint32_t expected = number + 1;
        for (const Node* child = parent->firstChild(); child; child = child->next()) {
            if (isEmptyText(*child))
                continue;
            if (expected >= recordOf(node).after || child->origin().source.get() != &source ||
                child->origin().record != expected || !m_unchanged.contains(child))
                return false;
            expected = source.record(expected).after;
        }
        return expected == recordOf(node).after;
    }

    [[nodiscard]] bool isUnchanged(const Node& node) const { return m_unchanged.contains(&node); }

    // ---- Pieces ----

    void print(std::string_view text)
    {
        if (text.empty())
            return;
        if (m_pieces.empty() || m_pieces.back().source)
            m_pieces.push_back({nullptr, {}, {}});
        m_pieces.back().text += text;
    }

    void keep(const std::shared_ptr<const PageSource>& source, const SourceRange& range)
    {
        if (range.begin >= range.end)
            return;
        if (!m_pieces.empty() && m_pieces.back().source == source && m_pieces.back().range.end == range.begin)
            m_pieces.back().range.end = range.end;
        else
            m_pieces.push_back({source, range, {}});
    }

    // ---- Nodes ----

    // What stays at its place may hold bytes of others (a comment behind </html>, text that a table gives up); elsewhere it is
    // printed then.
    void writeUnit(const Unit& unit)
    {
        const Node& node = *unit.node;
        if (m_printed.contains(&node)) {
            std::string markup;
            serialize(node, markup);
            print(withLineEnds(markup));
        } else if (textOf(node)) {
            writeText(unit);
        } else if (!node.origin().source || !(unit.kept || recordOf(node).isWhole)) {
            printNode(node);
        } else if (isUnchanged(node) && !(m_endTags == EndTags::Written && hasOpenEnd(node))) {
            keep(node.origin().source, recordOf(node).extent);
        } else if (const Element* const element = node.asElement()) {
            writeElement(*element);
        } else {
            printNode(node);
        }
    }

    static bool hasOpenEnd(const Node& node)
    {
        const Element* const element = node.asElement();
        return element && recordOf(node).end.isEmpty() && !isVoid(*element);
    }

    void writeElement(const Element& element)
    {
        const SourceRecord& record = recordOf(element);
        const std::shared_ptr<const PageSource>& source = element.origin().source;
        if (!hasSameContent(element)) {
            const auto patched = patchedStartTag(source->text(record.start), element, m_lineEnd);
            std::string tag;
            if (!patched)
                writeStartTag(element, tag);
            print(patched ? *patched : tag);
        } else {
            keep(source, record.start);
        }
        const std::uint32_t begin = record.start.isEmpty() ? record.extent.begin : record.start.end;
        const std::uint32_t end = record.end.isEmpty() ? record.extent.end : record.end.begin;
        writeChildren(element, {begin, end});
        if (!record.end.isEmpty())
            keep(source, record.end);
        else if (m_endTags == EndTags::Written && !record.start.isEmpty())
            printEndTag(element);
    }

    void printEndTag(const Element& element)
    {
        std::string tag;
        writeEndTag(element, tag);
        print(tag);
    }

    // Text nodes that touch are one text.
    static std::string joinedText(const Node& first, const Node* behind)
    {
        std::string text;
        for (const Node* node = &first; node != behind; node = node->next())
            text += *textOf(*node);
        return text;
    }

    static bool holdsRawText(const Node& text)
    {
        const Element* const parent = text.parent() ? text.parent()->asElement() : nullptr;
        return parent && hasRawText(*parent);
    }

    void writeText(const Unit& unit)
    {
        const std::string text = joinedText(*unit.node, unit.behind);
        const bool isRaw = holdsRawText(*unit.node);
        const std::shared_ptr<const PageSource>& source = unit.origin->source;
        if (!source || !(unit.kept || source->record(unit.origin->record).isWhole)) {
            print(withLineEnds(isRaw ? text : escapedText(text)));
            return;
        }
        const SourceRecord& record = source->record(unit.origin->record);
        if (PageSource::textHash(text) == record.content)
            keep(source, record.extent);
        else
            print(patchedText(source->text(record.extent), text, isRaw ? TextPlace::RawText : TextPlace::Text,
                              m_lineEnd));
    }

    // Without the node's own bytes; those of its children may still be kept.
    void printNode(const Node& node)
    {
        const Element* const element = node.asElement();
        if (!element) {
            std::string markup;
            serialize(node, markup);
            print(withLineEnds(markup));
            return;
        }
        std::string tag;
        writeStartTag(*element, tag);
        print(withLineEnds(tag));
        printChildren(*element);
        printEndTag(*element);
    }

    std::string withLineEnds(std::string_view text) const
    {
        std::string result;
        for (const char c : text)
            c == '\n' ? result.append(m_lineEnd) : result.append(1, c);
        return result;
    }

    void printAll(const ParentNode& parent)
    {
        for (const Node* child = parent.firstChild(); child; child = child->next()) {
            std::string markup;
            serialize(*child, markup);
            print(withLineEnds(markup));
        }
    }

    void printChildren(const ParentNode& parent)
    {
        for (const Unit& unit : unitsOf(parent))
            writeUnit(unit);
    }

    // ---- Children ----

    static std::vector<Unit> unitsOf(const ParentNode& parent)
    {
        std::vector<Unit> units;
        for (const Node* child = parent.firstChild(); child;) {
            const Node* behind = child->next();
            const Origin* origin = &child->origin();
            // Of texts that touch, the first that came from the page speaks for all.
            while (textOf(*child) && behind && textOf(*behind)) {
                if (!origin->source)
                    origin = &behind->origin();
                behind = behind->next();
            }
            units.push_back({child, behind, origin});
            child = behind;
        }
        return units;
    }

    std::vector<Cluster> clustersOf(const Node& parent, std::vector<std::uint32_t>& children) const
    {
        const PageSource& source = *parent.origin().source;
        const SourceRecord& record = recordOf(parent);
        std::vector<Cluster> clusters;
        for (std::uint32_t number = parent.origin().record + 1; number < record.after;
             number = source.record(number).after) {
            const SourceRange& extent = source.record(number).extent;
            const auto index = static_cast<std::uint32_t>(children.size());
            children.push_back(number);
            Cluster added{extent, index, index + 1};
            while (!clusters.empty() && clusters.back().range.end > added.range.begin) {
                added.range = {std::min(clusters.back().range.begin, added.range.begin),
                               std::max(clusters.back().range.end, added.range.end)};
                added.first = clusters.back().first;
                clusters.pop_back();
            }
            clusters.push_back(added);
        }
        return clusters;
    }

    // Which units stand for which cluster: a cluster of several only when all its children are there, unchanged.
    void match(const Node& parent, std::vector<Unit>& units, const std::vector<Cluster>& clusters,
               const std::vector<std::uint32_t>& children) const
    {
        std::unordered_map<std::uint32_t, std::size_t> clusterOf;
        for (std::size_t i = 0; i < clusters.size(); ++i) {
            for (std::uint32_t child = clusters[i].first; child < clusters[i].behind; ++child)
                clusterOf[children[child]] = i;
        }
        for (std::size_t i = 0; i < units.size(); ++i) {
            const Origin& origin = *units[i].origin;
            if (origin.source != parent.origin().source)
                continue;
            const auto found = clusterOf.find(origin.record);
            if (found == clusterOf.end())
                continue;
            const Cluster& cluster = clusters[found->second];
            const std::size_t length = cluster.behind - cluster.first;
            bool complete = i + length <= units.size() && children[cluster.first] == origin.record;
            for (std::size_t k = 0; complete && length > 1 && k < length; ++k) {
                const Unit& member = units[i + k];
                complete = member.origin->source == origin.source &&
                           member.origin->record == children[cluster.first + k] &&
                           member.node->next() == member.behind;
                if (!complete || isUnchanged(*member.node))
                    continue;
                const bool holdsAll = recordOf(*member.node).extent == cluster.range;
                complete = !units[i].around && holdsAll && member.node->asElement();
                units[i].around = member.node->asElement();
            }
            if (!complete)
                continue;
            units[i].cluster = static_cast<std::ptrdiff_t>(found->second);
            units[i].length = length;
            clusterOf.erase(found);
        }
    }

    // Of the units that stand for clusters those stay that are in the source's order, as many as can be.
    static void chooseKept(std::vector<Unit>& units)
    {
        std::vector<std::size_t> tails;
        std::vector<std::size_t> before(units.size(), units.size());
        for (std::size_t i = 0; i < units.size(); ++i) {
            if (units[i].cluster < 0)
                continue;
            const auto place = std::lower_bound(
                tails.begin(), tails.end(), units[i].cluster,
                [&units](std::size_t tail, std::ptrdiff_t cluster) { return units[tail].cluster < cluster; });
            before[i] = place == tails.begin() ? units.size() : *std::prev(place);
            if (place == tails.end())
                tails.push_back(i);
            else
                *place = i;
        }
        for (std::size_t i = tails.empty() ? units.size() : tails.back(); i < units.size(); i = before[i])
            units[i].kept = true;
    }

    // What stands between the children that stay (tags that mean nothing) stays too; new ones follow right behind the one
    // before them.
    void writeChildren(const ParentNode& parent, const SourceRange& inner)
    {
        std::vector<std::uint32_t> children;
        const std::vector<Cluster> clusters = clustersOf(parent, children);
        std::vector<Unit> units = unitsOf(parent);
        match(parent, units, clusters, children);
        chooseKept(units);
        const std::shared_ptr<const PageSource>& source = parent.origin().source;
        std::size_t nextCluster = 0;
        const auto gapBefore = [&](std::size_t cluster) {
            const std::uint32_t begin = cluster == 0 ? inner.begin : clusters[cluster - 1].range.end;
            const std::uint32_t end = cluster == clusters.size() ? inner.end : clusters[cluster].range.begin;
            return SourceRange{std::max(begin, inner.begin), std::min(std::max(begin, end), inner.end)};
        };
        for (std::size_t i = 0; i < units.size(); i += units[i].length) {
            if (!units[i].kept) {
                units[i].length = 1;
                writeUnit(units[i]);
                continue;
            }
            const auto cluster = static_cast<std::size_t>(units[i].cluster);
            for (; nextCluster <= cluster; ++nextCluster)
                keep(source, gapBefore(nextCluster));
            if (units[i].around)
                writeElement(*units[i].around);
            else if (units[i].length > 1)
                keep(source, clusters[cluster].range);
            else
                writeUnit(units[i]);
        }
        for (; nextCluster <= clusters.size(); ++nextCluster)
            keep(source, gapBefore(nextCluster));
    }

    EndTags m_endTags;
    const std::unordered_set<const Node*>& m_printed;
    std::shared_ptr<const PageSource> m_source;
    std::string_view m_lineEnd;
    std::unordered_set<const Node*> m_unchanged;
    std::vector<WrittenPiece> m_pieces;
};

} // namespace

namespace {

std::string joined(const std::vector<WrittenPiece>& pieces)
{
    std::string text;
    for (const WrittenPiece& piece : pieces)
        text += piece.source ? piece.source->text(piece.range) : std::string_view(piece.text);
    return text;
}

std::size_t printedIn(const std::vector<WrittenPiece>& pieces)
{
    std::size_t count = 0;
    for (const WrittenPiece& piece : pieces)
        count += piece.text.size();
    return count;
}

/// Writes one page again and again, each time printing more, until what is read is what was written.
class CheckedWriting final
{
public:
    CheckedWriting(const Document& document, const ParseLimits& limits)
        : m_document(document), m_limits(limits)
    {}

    Result<WrittenPage> run()
    {
        using EndTags = PieceWriter::EndTags;
        if (attempt(EndTags::AsTheyWere, WritingWay::Patched) ||
            attempt(EndTags::Written, WritingWay::EndTagsWritten))
            return std::move(m_result);
        constexpr int mostParents = 4;
        const Node* around = m_difference;
        for (int i = 0; i <= mostParents && around && around->kind() == Node::Kind::Element; ++i) {
            m_printed = {around};
            if (attempt(EndTags::Written, WritingWay::ElementPrinted))
                return std::move(m_result);
            around = around->parent();
        }
        m_printed = {&m_document};
        attempt(EndTags::Written, WritingWay::PagePrinted);
        if (m_error)
            return *m_error;
        return std::move(m_result);
    }

private:
    // True when there is nothing more to try.
    bool attempt(PieceWriter::EndTags endTags, WritingWay way)
    {
        m_result.pieces = PieceWriter(m_document, endTags, m_printed).write(m_document);
        m_result.text = joined(m_result.pieces);
        m_result.printed = printedIn(m_result.pieces);
        m_result.way = way;
        auto parsed = parseWithSource(m_result.text, m_limits);
        m_error.reset();
        if (!parsed) {
            m_error = parsed.error();
            m_difference = nullptr;
            return false;
        }
        m_result.parsed = *std::move(parsed);
        m_difference = smallestDifferent(m_document, *m_result.parsed);
        m_result.isSame = m_difference == nullptr;
        if (m_result.isSame && way == WritingWay::Patched && isAsItWas())
            m_result.way = WritingWay::Unchanged;
        return m_result.isSame;
    }

    [[nodiscard]] bool isAsItWas() const
    {
        const std::shared_ptr<const PageSource>& source = m_document.origin().source;
        return source && std::string_view(m_result.text).ends_with(source->text()) &&
               m_result.text.size() == source->text().size() + (m_document.hasByteOrderMark() ? 3 : 0);
    }

    const Document& m_document;
    const ParseLimits& m_limits;
    std::unordered_set<const Node*> m_printed;
    const Node* m_difference = nullptr;
    std::optional<Error> m_error;
    WrittenPage m_result;
};

} // namespace

Result<WrittenPage> writePage(const Document& document, const ParseLimits& limits)
{
    return CheckedWriting(document, limits).run();
}

std::string patchedPage(const Document& document)
{
    return joined(PieceWriter(document, PieceWriter::EndTags::AsTheyWere, {}).write(document));
}

} // namespace luma::html
