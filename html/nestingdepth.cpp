// SPDX-License-Identifier: GPL-3.0-or-later
#include "html/nestingdepth.h"

#include "base/ascii.h"
#include "html/htmlscanner.h"
#include "html/tagtraits.h"

#include <array>
#include <unordered_map>
#include <vector>

namespace luma {

namespace {

// The elements whose end a start tag of one group implies, and those beyond which it does not (HTML standard,
// 13.1.2.4, optional tags).
struct ImpliedEnd
{
    std::array<std::string_view, 4> starts;
    std::array<std::string_view, 8> ends;
    std::array<std::string_view, 5> barriers;
};

constexpr auto impliedEnds = std::to_array<ImpliedEnd>({
    {{"li"}, {"li"}, {"ul", "ol", "menu"}},
    {{"dt", "dd"}, {"dt", "dd"}, {"dl"}},
    {{"option", "optgroup"}, {"option"}, {"select"}},
    {{"tr"}, {"tr", "td", "th"}, {"table"}},
    {{"td", "th"}, {"td", "th"}, {"tr", "table"}},
    {{"thead", "tbody", "tfoot"}, {"thead", "tbody", "tfoot", "tr", "td", "th"}, {"table"}},
    {{"p"}, {"p"}, {"button", "td", "th", "table", "caption"}},
});

constexpr auto formattingElements = std::to_array<std::string_view>(
    {"a", "b", "big", "code", "em", "font", "i", "nobr", "s", "small", "strike", "strong", "tt", "u"});

bool contains(const auto& list, std::string_view name)
{
    return std::any_of(list.begin(), list.end(), [name](std::string_view entry) {
        return !entry.empty() && equalIgnoringAsciiCase(entry, name);
    });
}

// The open elements. One that is closed implicitly goes alone: what stands above it may be formatting that a
// tree builder opens again.
class OpenElements final
{
public:
    [[nodiscard]] std::size_t depth() const { return m_names.size(); }

    void start(const HtmlToken& tag)
    {
        for (const ImpliedEnd& implied : impliedEnds) {
            if (contains(implied.starts, tag.name))
                closeImplied(implied);
        }
        const bool foreign = tag.selfClosing && (m_open["svg"] > 0 || m_open["math"] > 0);
        if (foreign || html::isVoidStartTag(tag.name))
            return;
        m_names.push_back(asciiLower(tag.name));
        ++m_open[m_names.back()];
    }

    void end(std::string_view name)
    {
        const std::string wanted = asciiLower(name);
        const auto open = m_open.find(wanted);
        if (open == m_open.end() || open->second == 0)
            return;
        // Formatting that is still open goes on behind the end of what it began in.
        std::size_t keep = m_names.size();
        std::vector<std::string> formatting;
        while (m_names[--keep] != wanted) {
            if (isOneOf(m_names[keep], formattingElements))
                formatting.push_back(std::move(m_names[keep]));
            else
                --m_open[m_names[keep]];
        }
        --open->second;
        m_names.resize(keep);
        m_names.insert(m_names.end(), formatting.rbegin(), formatting.rend());
    }

private:
    void closeImplied(const ImpliedEnd& implied)
    {
        for (std::size_t i = m_names.size(); i-- > 0 && !contains(implied.barriers, m_names[i]);) {
            if (!contains(implied.ends, m_names[i]))
                continue;
            --m_open[m_names[i]];
            m_names.erase(m_names.begin() + static_cast<std::ptrdiff_t>(i));
        }
    }

    std::vector<std::string> m_names;
    std::unordered_map<std::string, std::size_t> m_open;
};

} // namespace

std::size_t nestingDepth(std::string_view source, std::size_t limit)
{
    OpenElements open;
    HtmlScanner scanner(source);
    HtmlToken token;
    std::size_t deepest = 0;
    while (deepest <= limit && scanner.next(token)) {
        if (token.kind == HtmlTokenKind::StartTag)
            open.start(token);
        else if (token.kind == HtmlTokenKind::EndTag)
            open.end(token.name);
        deepest = std::max(deepest, open.depth());
    }
    return deepest;
}

} // namespace luma
