// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "html/document.h"
#include "html/pagesource.h"
#include "html/parse.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace luma::html {

/// A piece of a written page: bytes of a source as they are, or new text.
struct WrittenPiece
{
    std::shared_ptr<const PageSource> source; // null: `text`
    SourceRange range;
    std::string text;
};

/// How an edited page was written: each way prints more of it than the one before.
enum class WritingWay : std::uint8_t {
    Unchanged,   // every byte as it was
    Patched,     // nothing but what was edited
    TagsWritten, // also tags that the page leaves out, of what the edits lie in or of what stands beside it
    TagsSpelledOut, // also all tags that the smallest element around a difference leaves out
    ElementPrinted, // also the smallest element around a difference
    PagePrinted     // the whole page, every tag explicit
};

struct WrittenPage
{
    std::vector<WrittenPiece> pieces;
    std::string text; // the pieces joined; begins with a byte-order mark where the document has one
    WritingWay way = WritingWay::Unchanged;
    std::size_t printed = 0; // bytes of new text
    /// False for a document that no markup gives (a paragraph in a paragraph): `parsed` is what comes nearest, and no more
    /// is printed than helps.
    bool isSame = true;
    /// Whether `parsed` lacks nothing but white space beside the server code that the page begins with. A <body> in front would
    /// keep it, but the code may send a page's head.
    bool isAlike = false;
    /// What a parser reads from `text`. It knows `text` as its source.
    std::unique_ptr<Document> parsed;
};

/// Whether the page is a part of a table, for a server to include, of which no row, caption or column is left. Markup can't
/// tell that from any other page without tags, so it is never read back as it was.
bool isEmptyPartOfTable(const Document& document);

/// Writes the page with the bytes that it was parsed from (parseWithSource) wherever it was not edited, and reads it again:
/// what comes out is the document, or it is printed more plainly until it is. Error: what was written can't be parsed. The
/// tree is not changed; to make the written text its source, PageSource::transfer from `parsed`. Any thread, one at a time
/// for a tree.
Result<WrittenPage> writePage(const Document& document, const ParseLimits& limits = {});

/// The page written as writePage does and not read again: for showing it, not for saving.
std::string patchedPage(const Document& document);

struct PlacedPage
{
    std::string text;
    std::size_t place = 0; // in bytes
};

/// The same, and where the node begins in it, or the element around a node that has no bytes of its own. May be null.
PlacedPage patchedPage(const Document& document, const Node* node);

} // namespace luma::html
