// SPDX-License-Identifier: GPL-3.0-or-later
#include "page/lostelements.h"

#include "base/ascii.h"
#include "html/htmlscanner.h"
#include "html/maskedsource.h"

#include <QByteArray>

#include <algorithm>
#include <array>

namespace luma {

namespace {

constexpr std::array<std::string_view, 5> kept = {"option", "optgroup", "script", "template", "html"};
// Those of tables do only where the select is in one; elsewhere they are lost, but hardly ever written.
constexpr std::array<std::string_view, 12> ending = {
    "select", "input", "keygen", "textarea", "caption", "table", "tbody", "tfoot", "thead", "tr", "td", "th"};

/// Follows where a page stands as to its selects.
class SelectContents final
{
public:
    /// Whether the tag's element is lost.
    bool loses(const HtmlToken& tag)
    {
        const bool isStart = tag.kind == HtmlTokenKind::StartTag;
        if (m_isInside && equalIgnoringAsciiCase(tag.name, "template"))
            m_templates = std::max(m_templates + (isStart ? 1 : -1), 0);
        if (m_templates > 0)
            return false;
        if (!m_isInside)
            m_isInside = isStart && equalIgnoringAsciiCase(tag.name, "select");
        else if (isStart ? isOneOf(tag.name, ending) : equalIgnoringAsciiCase(tag.name, "select"))
            m_isInside = false;
        else
            return isStart && !isOneOf(tag.name, kept);
        return false;
    }

private:
    bool m_isInside = false;
    int m_templates = 0;
};

} // namespace

std::vector<std::string> lostElements(std::string_view page)
{
    std::vector<std::string> names;
    SelectContents selects;
    const html::MaskedSource masked(page);
    HtmlScanner scanner(masked.text());
    HtmlToken token;
    while (scanner.next(token)) {
        const bool isTag = token.kind == HtmlTokenKind::StartTag || token.kind == HtmlTokenKind::EndTag;
        if (!isTag || !selects.loses(token))
            continue;
        const std::string name = asciiLower(token.name);
        if (std::find(names.begin(), names.end(), name) == names.end())
            names.push_back(name);
    }
    return names;
}

} // namespace luma
