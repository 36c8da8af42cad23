// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "html/keptchildren.h"
#include "html/pagewriter.h"
#include "html/reopenedformatting.h"
#include "html/textparts.h"
#include "html/unchangednodes.h"

#include <memory>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace luma::html {

/// Writes a tree in pieces. Works down from the document: what is as it was parsed is one piece; where children changed, the
/// ones that stayed keep their bytes and all that stands between them. What comes out is not checked. Any thread, one
/// writer at a time for a tree.
class PieceWriter final
{
public:
    /// Which tags that the page leaves out are written: of elements that were edited themselves or stand before an edit; also
    /// the tags of formatting that the parser opens again beside these; end tags, or all, of what edits lie in and of
    /// what stands beside it.
    enum class OmittedTags { None, Edited, Reopened, EndTags, All };

    /// What happens to the element around a difference, but for what was edited.
    enum class Around {
        FormattingWritten, // elements that others cut in two get all their tags, at any depth
        TagsWritten,       // all elements do
        Printed
    };

    /// `around` may be null. The document must outlive the writer.
    explicit PieceWriter(const Document& document, OmittedTags tags = OmittedTags::None,
                         const Node* around = nullptr, Around manner = Around::Printed);

    std::vector<WrittenPiece> write();

    /// Whether there is such formatting; asked for OmittedTags::Reopened.
    [[nodiscard]] bool reopensFormatting() const { return !m_reopened.edited().empty(); }

private:
    using Unit = KeptChildren::Unit;

    [[nodiscard]] bool isUntouched(const Node& node) const;
    [[nodiscard]] bool lacksWantedTag(const Unit& unit) const;
    [[nodiscard]] bool wantsStartTag(const Element& element) const;
    [[nodiscard]] bool wantsEndTag(const Element& element, bool isBeforeEdit) const;
    void print(std::string_view text);
    void keep(const PageSource& source, const SourceRange& range);
    void keepBytes(const PageSource& source, const SourceRange& range);
    void keepEntangled(const KeptChildren& children, std::size_t first);
    void writeUnit(const Unit& unit);
    void writeElement(const Element& element, bool isBeforeEdit);
    void writeStartOf(const Element& element);
    void writeText(const Unit& unit);
    void writeParts(const TextParts& parts, const PageSource& source, std::uint32_t begin);
    void keepTokensOf(const ParentNode& parent, const KeptChildren& children, std::size_t number);
    void writeChildren(const ParentNode& parent, const SourceRange& inner);
    void printEndTag(const Element& element);
    [[nodiscard]] std::string markupOf(const Node& node) const;
    void printMarkup(const Node& node);
    void closeOpenEnd();
    void printElement(const Element& element);
    void printAll(const ParentNode& parent);
    [[nodiscard]] std::string withLineEnds(std::string_view text) const;

    const Document& m_document;
    OmittedTags m_tags;
    const Node* m_printed;
    const Node* m_spelledOut;
    OmittedTags m_tagsSpelledOut;
    bool m_isSpellingOut = false;             // m_spelledOut or what is in it
    std::unordered_set<const Node*> m_opened; // what m_printed or m_spelledOut lies in
    ReopenedFormatting m_reopened;
    const PageSource* m_source;
    std::string_view m_lineEnd;
    UnchangedNodes m_unchanged;
    std::vector<Unit> m_edited; // whose bytes lie among those of others
    std::vector<WrittenPiece> m_pieces;
};

} // namespace luma::html
