// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "html/keptchildren.h"
#include "html/pagewriter.h"
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
    /// Which tags that the page leaves out are written, in and beside what was edited.
    enum class OmittedTags { None, EndTags, All };

    /// Prints the elements in `printed` anew. Both arguments must outlive the writer.
    PieceWriter(const Document& document, OmittedTags tags, const std::unordered_set<const Node*>& printed);

    std::vector<WrittenPiece> write();

private:
    using Unit = KeptChildren::Unit;

    void print(std::string_view text);
    void keep(const PageSource& source, const SourceRange& range);
    void keepBytes(const PageSource& source, const SourceRange& range);
    void keepEntangled(const KeptChildren& children, std::size_t first);
    void writeUnit(const Unit& unit);
    void writeElement(const Element& element);
    void writeStartOf(const Element& element);
    void writeText(const Unit& unit);
    void writeChildren(const ParentNode& parent, const SourceRange& inner);
    void printEndTag(const Element& element);
    void printNode(const Node& node);
    void printAll(const ParentNode& parent);
    [[nodiscard]] std::string withLineEnds(std::string_view text) const;

    const Document& m_document;
    OmittedTags m_tags;
    const std::unordered_set<const Node*>& m_printed;
    const PageSource* m_source;
    std::string_view m_lineEnd;
    UnchangedNodes m_unchanged;
    std::vector<Unit> m_edited; // whose bytes lie among those of others
    std::vector<WrittenPiece> m_pieces;
};

} // namespace luma::html
