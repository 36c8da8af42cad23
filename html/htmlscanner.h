// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "html/foreigncontent.h"
#include "html/htmltoken.h"

#include <cstdint>
#include <string_view>

namespace luma {

/// The tokenizer of the HTML standard (13.2.5), for work on many pages: reports tags and where each
/// attribute's value is, in one pass, without a tree or recursion, however deep the nesting.
///
/// It works out what the standard's tree builder tells its tokenizer: which elements hold raw text, and the
/// other rules inside svg and math. Scripting is off, so noscript holds elements. XML is read too (XHTML, svg,
/// feeds): there no element holds raw text and CDATA is text. The source may be any bytes and must outlive the
/// scanner. Any thread.
class HtmlScanner final
{
public:
    enum class Markup : std::uint8_t { Html, Xml };

    explicit HtmlScanner(std::string_view source, Markup markup = Markup::Html)
        : m_source(source), m_markup(markup)
    {}

    /// Starts inside a raw text element named `element`; for fragments.
    void startInText(TextKind kind, std::string_view element);
    /// Starts inside svg or math, where CDATA sections exist; for fragments.
    void startInForeignContent() { m_foreign.enterSvg(); }

    /// Reads the next token into `token`, reusing its memory. False at the end of the page, with a token of
    /// kind End.
    bool next(HtmlToken& token);

    /// Whether what follows the last token belongs to an element of svg or math.
    [[nodiscard]] bool isInForeignContent() const { return m_foreign.isForeign(); }

private:
    bool nextInData(HtmlToken& token);
    bool nextInText(HtmlToken& token);
    bool readMarkup(HtmlToken& token, std::size_t open);
    bool readTag(HtmlToken& token, std::size_t open, HtmlTokenKind kind);
    std::size_t readAttribute(HtmlToken& token, std::size_t position);
    void readDeclaration(HtmlToken& token, std::size_t open);
    void readDoctype(HtmlToken& token, std::size_t open);
    void readComment(HtmlToken& token, std::size_t open);
    void readUpTo(HtmlToken& token, HtmlTokenKind kind, std::size_t open, std::size_t content,
                  std::string_view closing);
    bool finish(HtmlToken& token, std::size_t textEnd);
    void enterContentOf(const HtmlToken& startTag);
    [[nodiscard]] std::size_t findEndOfText() const;
    [[nodiscard]] std::size_t findEndOfScript() const;
    [[nodiscard]] bool isTagAt(std::size_t position, std::string_view opening, std::string_view name) const;
    [[nodiscard]] bool startsWith(std::size_t position, std::string_view text) const;

    std::string_view m_source;
    Markup m_markup;
    std::size_t m_position = 0;
    TextKind m_textKind = TextKind::Data;
    std::string_view m_textElement;
    ForeignContent m_foreign;
};

} // namespace luma
