// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "html/cssreferences.h"
#include "html/htmlscanner.h"
#include "html/htmltoken.h"
#include "links/linkplaces.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace luma {

/// An address that a page or style sheet holds.
struct LinkReference
{
    /// As a browser takes it from the page: character references and CSS escapes replaced, UTF-8. Not yet read as
    /// an address: blanks, percent signs and all are as written.
    std::string_view value;
    /// The address as written: bytes into the source, without quotes.
    std::size_t begin = 0;
    std::size_t end = 0;
    LinkPlace place = LinkPlace::Href;
    LinkSyntax syntax = LinkSyntax::Address; // how the attribute holds it
    Quotes quotes = Quotes::NoValue;         // of the attribute
    CssQuotes cssQuotes = CssQuotes::None;   // of an address in CSS
    Quotes frameQuotes = Quotes::NoValue;    // of the srcdoc attribute whose page holds the address
};

enum class PageFormat : std::uint8_t { Html, Xml, StyleSheet };

/// Reads the addresses of pages and style sheets, one after another, into memory that it uses again: every place
/// of the HTML standard's table of addresses, those of svg, xml-stylesheet, meta and style, style attributes,
/// style sheets, and the pages in srcdoc attributes. What it gives is valid until the next read. Each thread has one of its own.
class PageReader final
{
public:
    /// `source` is UTF-8 or bytes of another encoding that holds ASCII (values with other bytes are then not
    /// decoded) and must outlive what is read. Server code should be masked.
    void read(std::string_view source, PageFormat format);

    /// In document order.
    [[nodiscard]] const std::vector<LinkReference>& references() const { return m_references; }
    /// The ids and anchor names of the page, decoded, where fragments lead; those of maps begin with "\1".
    [[nodiscard]] const std::vector<std::string_view>& anchors() const { return m_anchors; }
    /// What may name files without being an address: scripts, event handlers, data attributes, the sources of frames,
    /// server-side includes, conditional comments, and the parameters of objects and applets.
    [[nodiscard]] const std::vector<std::string_view>& code() const { return m_code; }
    /// The address of the page's first base element that has one, decoded; empty without.
    [[nodiscard]] std::string_view base() const { return m_base ? m_base->value : std::string_view(); }
    /// Where it is written; nothing without one. It is not among the references.
    [[nodiscard]] const std::optional<LinkReference>& baseReference() const { return m_base; }

private:
    void readTag(const HtmlToken& tag);
    void readInstruction(std::string_view content);
    void readEntities(std::string_view documentType);
    void readAttribute(const HtmlToken& tag, const HtmlAttribute& attribute);
    void readMeta(const HtmlToken& tag);
    void readValue(const HtmlAttribute& attribute, LinkPlace place, LinkSyntax syntax);
    void readFrame(const HtmlAttribute& attribute);
    void readParts(const HtmlAttribute& attribute, LinkPlace place, LinkSyntax syntax);
    void addCss(std::string_view css, std::size_t begin);
    std::string_view decoded(std::string_view raw);
    std::string_view decodedWhole(std::string_view raw);

    std::string_view m_source;
    std::vector<LinkReference> m_references;
    std::vector<std::string_view> m_anchors;
    std::vector<std::string_view> m_code;
    std::optional<LinkReference> m_base;
    std::deque<std::string> m_decoded;
    std::vector<std::pair<std::string_view, std::string_view>> m_entities; // that the page declares
    std::size_t m_expandedSize = 0;
    std::unique_ptr<PageReader> m_frame; // for the pages in srcdoc attributes
    bool m_isFrame = false;
};

} // namespace luma
