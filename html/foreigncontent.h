// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "html/htmltoken.h"

#include <cstdint>
#include <string_view>
#include <vector>

namespace luma {

/// Follows a page's tags far enough to know which of them stand in svg or math: a CDATA section exists only
/// there, and title, style or script are no raw text there. It keeps the elements open since the outermost
/// svg or math, and nothing outside of these (HTML standard, 13.2.6.5, tree construction in foreign content).
class ForeignContent final
{
public:
    void enterSvg() { m_open.push_back({"svg", Kind::Svg}); }

    /// Whether svg or math is open at all: else only their own start tags need be told.
    [[nodiscard]] bool isActive() const { return !m_open.empty(); }

    /// Whether the text that comes now belongs to an element of svg or math.
    [[nodiscard]] bool isForeign() const { return !m_open.empty() && m_open.back().kind != Kind::Html; }

    /// Takes note of a start tag; whether it starts an element of HTML.
    bool startTag(const HtmlToken& tag);
    void endTag(std::string_view name);

private:
    // What holds HTML again is an integration point; the text elements of math do but for two of its own.
    enum class Kind : std::uint8_t {
        Html,
        Svg,
        Math,
        SvgHtmlPoint,
        MathHtmlPoint,
        MathTextPoint,
        MathAnnotation
    };
    struct Element
    {
        std::string_view name;
        Kind kind;
    };

    static bool isHtmlPoint(Kind kind);
    static Kind kindOf(Kind parent, const HtmlToken& tag);
    [[nodiscard]] bool takesAsHtml(std::string_view name) const;
    void open(std::string_view name, Kind kind);
    void leaveForeign();
    bool startHtml(const HtmlToken& tag);
    void endHtml(std::string_view name, std::size_t top);

    std::vector<Element> m_open;
};

} // namespace luma
