// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "html/document.h"
#include "html/pageencoding.h"
#include "html/pagewriter.h"
#include "html/prettyprinter.h"

#include <QByteArray>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace luma::html {

/// A page in its encoding: reads the bytes of its file, and writes the edited tree with the bytes that it was read from.
/// One codec belongs to one page. Any thread, one at a time.
class PageCodec final
{
public:
    /// The page in `bytes`, decoded as encodingOf() says and parsed as parseWithSource() does.
    Result<std::unique_ptr<Document>> read(std::string_view bytes, MarkupLanguage language);

    struct Written
    {
        std::string bytes;
        WritingWay way = WritingWay::Unchanged;
        bool isAlike = false; // WrittenPage::isAlike
        /// What the bytes are read as; for PageSource::transfer where it is the same tree. Null when no markup gives the
        /// document: then `bytes` come nearest to it.
        std::unique_ptr<Document> parsed;
    };
    /// The tree as writePage() writes it, in the encoding that the page declares then, else the one that it was read in.
    /// A tree that is what an earlier source of the page said (an edit was saved and is undone) is written with that source's
    /// bytes. What has no bytes in the encoding becomes a character reference. Error: such a character stands where references mean nothing
    /// (in a script, a style sheet, a comment), or what writePage() says. The tree is not changed.
    Result<Written> write(const Document& document, MarkupLanguage language);

    /// The page printed anew (prettyPrint()) and read again in its encoding: a new tree with a new source. Fails as
    /// parse() does.
    Result<std::unique_ptr<Document>> printed(const Document& document, const ShownInLines& inLines = {});

    /// `text`, typed in place of the document, in the document's encoding: a tree of its own. Fails as parse() does.
    Result<std::unique_ptr<Document>> typed(std::string_view text, const Document& document);

private:
    /// The file's bytes of a source that they don't equal.
    struct Bytes
    {
        std::weak_ptr<const PageSource> source;
        Encoding encoding;
        std::string bytes;
        std::vector<std::uint32_t> places; // in `bytes`, of each byte of the source's text and of its end
    };

    /// A source that an edited page was written from.
    struct Version
    {
        std::uint64_t tree = 0; // PageSource::treeHash()
        QByteArray bytes;       // compressed
    };

    void remember(const Document& document);
    std::optional<Written> earlierVersion(const Document& document, MarkupLanguage language);
    [[nodiscard]] Encoding encodingOf(const Document& document) const;
    [[nodiscard]] const Bytes* bytesOf(const PageSource* source) const;
    [[nodiscard]] std::string join(const std::vector<WrittenPiece>& pieces, const Encoding& encoding) const;
    Result<std::unique_ptr<Document>> readAs(std::string_view bytes, const Encoding& encoding);

    std::vector<Bytes> m_bytes;
    std::vector<Version> m_versions; // the last one last
};

} // namespace luma::html
