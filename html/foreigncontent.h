// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "html/htmltoken.h"

#include <cstdint>
#include <string_view>
#include <vector>

namespace luma {

/// Follows a page's tags to tell which of them are inside svg or math, where CDATA sections exist and title,
/// style and script are not raw text. Keeps the elements open since the outermost svg or math and nothing
/// outside (HTML standard, 13.2.6.5, tree construction in foreign content).
class ForeignContent final
{
public:
    void enterSvg() { m_open.push_back({"svg", Kind::Svg}); }

    /// Whether svg or math is open. If not, only their start tags need to be reported.
    [[nodiscard]] bool isActive() const { return !m_open.empty(); }

    /// Whether the text that follows belongs to an element of svg or math.
    [[nodiscard]] bool isForeign() const { return !m_open.empty() && m_open.back().kind != Kind::Html; }

    /// Reports a start tag. True if it starts an HTML element.
    bool startTag(const HtmlToken& tag);
    void endTag(std::string_view name);

private:
    // Integration points hold HTML again; math text elements hold it except for two elements of their own.
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
