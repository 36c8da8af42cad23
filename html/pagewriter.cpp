// SPDX-License-Identifier: GPL-3.0-or-later
#include "html/pagewriter.h"

#include "base/ascii.h"
#include "html/characterdata.h"
#include "html/codemarks.h"
#include "html/element.h"
#include "html/omittedtags.h"
#include "html/piecewriter.h"
#include "html/treecomparison.h"
#include "html/unchangednodes.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace luma::html {

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

// A changed start tag is printed between the bytes that end before it and those behind it.
std::optional<std::size_t> placeOf(const Node& node, const std::vector<WrittenPiece>& pieces)
{
    const PageSource* const source = node.origin().source;
    if (!source)
        return {};
    const std::uint32_t begin = PageSource::recordOf(node).extent.begin;
    std::optional<std::size_t> found;
    std::size_t before = 0;
    for (const WrittenPiece& piece : pieces) {
        if (piece.source.get() == source && piece.range.begin <= begin && begin <= piece.range.end)
            found = before + begin - piece.range.begin;
        before += piece.source ? piece.range.end - piece.range.begin : piece.text.size();
    }
    return found;
}

bool hasMarkup(const Element& element)
{
    return !element.origin().source || !PageSource::recordOf(element).start.isEmpty();
}

// The smallest node that all edits lie in.
const Node* smallestEdited(const Document& document)
{
    const UnchangedNodes unchanged(document);
    const Node* around = &document;
    while (around->origin().source && UnchangedNodes::hasSameContent(*around) &&
           UnchangedNodes::hasSameChildren(*around)) {
        const Node* edited = nullptr;
        for (const Node* child = around->asParent()->firstChild(); child; child = child->next()) {
            if (edited && !unchanged.contains(*child))
                return around;
            edited = unchanged.contains(*child) ? edited : child;
        }
        if (!edited || !edited->asParent())
            return around;
        around = edited;
    }
    return around;
}

// The page without the white space beside server code that stands before its first tag, as the parser reads it; null where
// there is none.
NodePtr withoutLeadingBlanks(const Document& document)
{
    NodePtr copy = document.copy();
    const Element* const body = static_cast<const Document&>(*copy).body();
    bool holdsCode = false;
    std::vector<Node*> blanks;
    for (Node* node = body && !hasMarkup(*body) ? body->firstChild() : nullptr; node; node = node->next()) {
        const std::string* const text = textOf(*node);
        if (text ? !isBlank(*text) : !isComment(*node))
            break;
        holdsCode = holdsCode || isServerCode(*node);
        if (text)
            blanks.push_back(node);
    }
    for (Node* const blank : blanks)
        blank->remove();
    return holdsCode && !blanks.empty() ? std::move(copy) : nullptr;
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
        if (attempt(OmittedTags::None, WritingWay::Patched))
            return std::move(m_result);
        if (!m_error && isEmptyPartOfTable(m_document))
            return std::move(m_result);
        if (const NodePtr page = m_error ? nullptr : withoutLeadingBlanks(m_document)) {
            m_result.isAlike = !smallestDifferent(static_cast<const Document&>(*page), *m_result.parsed);
            if (m_result.isAlike)
                return std::move(m_result);
        }
        const std::vector<const Node*> around = elementsAround(m_difference);
        WrittenPage patched = m_error ? WrittenPage() : std::move(m_result);
        if (attempt(OmittedTags::Edited, WritingWay::TagsWritten) ||
            attempt(OmittedTags::Reopened, WritingWay::TagsWritten))
            return std::move(m_result);
        std::optional<WrittenPage> written;
        const auto keepLeast = [&](bool isSame) {
            if (isSame && (!written || m_result.printed < written->printed))
                written = std::move(m_result);
        };
        keepLeast(attempt(OmittedTags::EndTags, WritingWay::TagsWritten) ||
                  attempt(OmittedTags::All, WritingWay::TagsWritten));
        keepLeast(!around.empty() &&
                  (attemptAround({around.front()}, Around::FormattingWritten, WritingWay::TagsSpelledOut) ||
                   attemptAround({around.front()}, Around::TagsWritten, WritingWay::TagsSpelledOut)));
        if (written)
            return *std::move(written);
        const bool isSame = attemptAround(around, Around::FormattingWritten, WritingWay::TagsSpelledOut) ||
                            attemptAround(around, Around::TagsWritten, WritingWay::TagsSpelledOut) ||
                            attemptPage(Around::FormattingWritten) || attemptPage(Around::TagsWritten) ||
                            attemptAround(around, Around::Printed, WritingWay::ElementPrinted) ||
                            attempt(OmittedTags::All, WritingWay::PagePrinted, &m_document);
        const bool isNoNearer =
            m_error || (!isSame && patched.parsed && !smallestDifferent(*patched.parsed, *m_result.parsed));
        if (patched.parsed && isNoNearer)
            return patched;
        if (m_error)
            return *m_error;
        return std::move(m_result);
    }

private:
    using OmittedTags = PieceWriter::OmittedTags;
    using Around = PieceWriter::Around;

    // What the edits and what the difference lies in, the smallest first.
    [[nodiscard]] std::vector<const Node*> elementsAround(const Node* difference) const
    {
        constexpr std::size_t mostElements = 5;
        std::vector<const Node*> elements;
        const Node* edited = smallestEdited(m_document);
        while (elements.size() < mostElements &&
               ((edited && edited->asElement()) || (difference && difference->asElement()))) {
            for (const Node** node : {&edited, &difference}) {
                if (!*node || !(*node)->asElement())
                    continue;
                if (std::find(elements.begin(), elements.end(), *node) == elements.end())
                    elements.push_back(*node);
                *node = (*node)->parent();
            }
        }
        return elements;
    }

    // Formatting that stays open reaches to the page's end.
    bool attemptPage(Around manner)
    {
        const Element* const root = m_document.documentElement();
        return root && attempt(OmittedTags::None, WritingWay::TagsSpelledOut, root, manner);
    }

    bool attemptAround(const std::vector<const Node*>& elements, Around manner, WritingWay way)
    {
        return std::any_of(elements.begin(), elements.end(), [&](const Node* element) {
            return attempt(OmittedTags::None, way, element, manner) ||
                   (manner == Around::Printed && attempt(OmittedTags::All, way, element, manner));
        });
    }

    // True when there is nothing more to try.
    bool attempt(OmittedTags tags, WritingWay way, const Node* around = nullptr,
                 Around manner = Around::Printed)
    {
        PieceWriter writer(m_document, tags, around, manner);
        if (tags == OmittedTags::Reopened && !writer.reopensFormatting())
            return false;
        m_result.pieces = writer.write();
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
        const PageSource* const source = m_document.origin().source;
        return source && std::string_view(m_result.text).ends_with(source->text()) &&
               m_result.text.size() == source->text().size() + (m_document.hasByteOrderMark() ? 3 : 0);
    }

    const Document& m_document;
    const ParseLimits& m_limits;
    const Node* m_difference = nullptr;
    std::optional<Error> m_error;
    WrittenPage m_result;
};

} // namespace

bool isEmptyPartOfTable(const Document& document)
{
    const Element* const body = document.body();
    bool isPart = false;
    for (const Node* node = body ? body->firstChild() : nullptr; node; node = node->following(*body)) {
        const Element* const element = node->asElement();
        const std::string* const text = textOf(*node);
        if (text ? !isBlank(*text) : element && !isServerCode(*node) && hasMarkup(*element))
            return false;
        isPart = isPart || (element && element->is("table"));
    }
    return isPart;
}

Result<WrittenPage> writePage(const Document& document, const ParseLimits& limits)
{
    return CheckedWriting(document, limits).run();
}

std::string patchedPage(const Document& document)
{
    return patchedPage(document, nullptr).text;
}

PlacedPage patchedPage(const Document& document, const Node* node)
{
    const auto pieces = PieceWriter(document).write();
    PlacedPage page;
    page.text = joined(pieces);
    for (; node; node = node->parent()) {
        if (const auto place = placeOf(*node, pieces)) {
            page.place = *place;
            break;
        }
    }
    return page;
}

} // namespace luma::html
