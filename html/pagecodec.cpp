// SPDX-License-Identifier: GPL-3.0-or-later
#include "html/pagecodec.h"

#include "base/usertext.h"
#include "base/utf8.h"
#include "html/pagesource.h"
#include "html/parse.h"
#include "html/placedtext.h"
#include "html/prettyprinter.h"
#include "html/serializer.h"
#include "html/treecomparison.h"

#include <algorithm>

namespace luma::html {

namespace {

bool areTheirText(std::string_view bytes, const Encoding& encoding)
{
    return encoding.isUtf8() && isValidUtf8(bytes);
}

/// `text` with its byte-order mark in the encoding, and so that ASCII may follow.
std::string encodedPiece(std::string_view text, const Encoding& encoding)
{
    std::string_view mark;
    if (text.starts_with(utf8ByteOrderMark)) {
        text.remove_prefix(utf8ByteOrderMark.size());
        if (encoding.isUtf8())
            mark = utf8ByteOrderMark;
        else if (!encoding.holdsAscii())
            mark = encoding.name() == "UTF-16BE" ? "\xFE\xFF" : "\xFF\xFE";
    }
    std::string bytes(mark);
    if (!encoding.canSwitch())
        return bytes + encoding.encodedWithReferences(text);
    bytes += encoding.encodedWithReferences(std::string(text) + '\n');
    bytes.pop_back();
    return bytes;
}

std::string joinedText(const std::vector<WrittenPiece>& pieces)
{
    std::string text;
    for (const WrittenPiece& piece : pieces)
        text += piece.source ? piece.source->text(piece.range) : std::string_view(piece.text);
    return text;
}

} // namespace

Result<std::unique_ptr<Document>> PageCodec::read(std::string_view bytes, MarkupLanguage language)
{
    return readAs(bytes, luma::encodingOf(bytes, language).encoding);
}

Result<std::unique_ptr<Document>> PageCodec::readAs(std::string_view bytes, const Encoding& encoding)
{
    if (areTheirText(bytes, encoding))
        return parseWithSource(bytes);
    PlacedText decoded = decodedWithPlaces(bytes, encoding);
    auto document = parseWithSource(decoded.text);
    if (!document)
        return document;
    if (decoded.text.starts_with(utf8ByteOrderMark))
        decoded.places.erase(decoded.places.begin(), decoded.places.begin() + utf8ByteOrderMark.size());
    std::erase_if(m_bytes, [](const Bytes& known) { return known.source.expired(); });
    m_bytes.push_back({(*document)->origin().source->weak_from_this(), encoding, std::string(bytes),
                       std::move(decoded.places)});
    return document;
}

const PageCodec::Bytes* PageCodec::bytesOf(const PageSource* source) const
{
    const auto found = std::find_if(m_bytes.begin(), m_bytes.end(), [source](const Bytes& known) {
        return known.source.lock().get() == source;
    });
    return found == m_bytes.end() ? nullptr : &*found;
}

std::string PageCodec::join(const std::vector<WrittenPiece>& pieces, const Encoding& encoding) const
{
    std::string bytes;
    for (const WrittenPiece& piece : pieces) {
        const Bytes* const known = piece.source ? bytesOf(piece.source.get()) : nullptr;
        if (known && known->encoding == encoding) {
            const std::uint32_t begin = known->places[piece.range.begin];
            bytes.append(known->bytes, begin, known->places[piece.range.end] - begin);
        } else {
            bytes += encodedPiece(
                piece.source ? piece.source->text(piece.range) : std::string_view(piece.text), encoding);
        }
    }
    return bytes;
}

Encoding PageCodec::encodingOf(const Document& document) const
{
    const PageSource* const source = document.origin().source;
    const Bytes* const known = source ? bytesOf(source) : nullptr;
    return known ? known->encoding : Encoding();
}

Result<std::unique_ptr<Document>> PageCodec::printed(const Document& document, const ShownInLines& inLines)
{
    return typed(prettyPrint(document, inLines), document);
}

Result<std::unique_ptr<Document>> PageCodec::typed(std::string_view text, const Document& document)
{
    const Encoding encoding = encodingOf(document);
    return readAs(encodedPiece(text, encoding), encoding);
}

// The bytes that the tree was read from, before another source takes their place.
void PageCodec::remember(const Document& document)
{
    constexpr std::size_t mostVersions = 16;
    constexpr int quickly = 1;
    const PageSource* const source = document.origin().source;
    if (!source)
        return;
    const Bytes* const known = bytesOf(source);
    std::string bytes(document.hasByteOrderMark() ? utf8ByteOrderMark : std::string_view());
    bytes = known ? known->bytes : bytes.append(source->text());
    Version version{source->treeHash(), qCompress(QByteArray::fromStdString(bytes), quickly)};
    std::erase_if(m_versions, [&version](const Version& other) { return other.bytes == version.bytes; });
    m_versions.push_back(std::move(version));
    if (m_versions.size() > mostVersions) // the file as it was opened stays
        m_versions.erase(m_versions.begin() + 1);
}

std::optional<PageCodec::Written> PageCodec::earlierVersion(const Document& document, MarkupLanguage language)
{
    const std::uint64_t tree = PageSource::treeHash(document);
    const auto found = std::find_if(m_versions.rbegin(), m_versions.rend(),
                                    [tree](const Version& version) { return version.tree == tree; });
    if (found == m_versions.rend())
        return {};
    Written written;
    written.bytes = qUncompress(found->bytes).toStdString();
    auto parsed = read(written.bytes, language);
    if (!parsed || smallestDifferent(document, **parsed) ||
        (*parsed)->hasByteOrderMark() != document.hasByteOrderMark())
        return {};
    written.parsed = *std::move(parsed);
    return written;
}

Result<PageCodec::Written> PageCodec::write(const Document& document, MarkupLanguage language)
{
    auto page = writePage(document);
    if (!page || page->way != WritingWay::Unchanged) {
        remember(document);
        if (auto version = earlierVersion(document, language))
            return *std::move(version);
    }
    if (!page)
        return page.error();
    Written written;
    written.way = page->way;
    Encoding encoding = encodingOf(document);
    written.bytes = join(page->pieces, encoding);
    if (const Encoding declared = luma::encodingOf(written.bytes, language).encoding; declared != encoding) {
        encoding = declared;
        written.bytes = join(page->pieces, encoding);
    }
    const bool isText = areTheirText(written.bytes, encoding) && written.bytes == page->text;
    // What has to be escaped, and bytes that mean something else beside others, show when the bytes are read again.
    const Document& wanted = page->isSame ? document : *page->parsed;
    for (int i = 0; !isText && i < 3; ++i) {
        if (i == 1) {
            written.bytes = encodedPiece(joinedText(page->pieces), encoding);
        } else if (i == 2) {
            std::string markup;
            serialize(document, markup, CodeForm::Code);
            written.bytes = encodedPiece(markup, encoding);
            written.way = WritingWay::PagePrinted;
        }
        auto parsed = read(written.bytes, language);
        if (parsed && !smallestDifferent(wanted, **parsed)) {
            page->parsed = *std::move(parsed);
            break;
        }
        if (i == 2)
            return Error{userText(
                QT_TRANSLATE_NOOP(
                    "luma::Engines",
                    "It holds a character that %1 lacks, in a script, a style sheet or a comment, where it can't be written otherwise."),
                {encoding.name()})};
    }
    written.isAlike = page->isAlike;
    if (page->isSame)
        written.parsed = std::move(page->parsed);
    return written;
}

} // namespace luma::html
