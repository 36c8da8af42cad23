// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace luma::html {

/// Carries elements through the parser that it doesn't know, or knows as what they no longer are (isindex, menuitem). It takes
/// all unknown names for one, so that </a-b> ends a <c-d>, and dialog for one of them. During the parse each has the name of an ordinary
/// element that the page does not contain; a page with more such names than there are leaves the last ones as they are.
class ParserNames final
{
public:
    enum class Way { Kept, Exchanged };

    /// `page` must outlive this object.
    ParserNames(std::string_view page, Way way);

    /// Whether elements of this name, which the parser doesn't know, end a paragraph.
    [[nodiscard]] static bool isBlock(std::string_view name) { return name == "dialog"; }

    /// The text for the parser; the page itself if it needs no other names.
    [[nodiscard]] std::string_view text() const { return m_text.empty() ? m_page : m_text; }
    [[nodiscard]] bool areExchanged() const { return !m_text.empty(); }
    /// The place in the page that belongs to one in the text, neither inside a name that was exchanged, in bytes.
    [[nodiscard]] std::size_t pagePlace(std::size_t textPlace) const;
    /// Whether elements of this name have another one in the page.
    [[nodiscard]] bool isGuise(std::string_view name) const { return m_guises.contains(std::string(name)); }
    /// Whether parsed text holds a tag with an exchanged name: the parser didn't take for a tag what looks like one.
    [[nodiscard]] bool isShownIn(std::string_view text) const;

private:
    using Names = std::unordered_map<std::string, std::string>;

    void addGuises(std::span<const std::string> names, std::span<const std::string_view> possible,
                   Names& guises);
    void exchange(const Names& guises);

    struct Place
    {
        std::size_t text;
        std::size_t page;
    };

    std::string_view m_page;
    std::string m_text;
    std::vector<Place> m_places; // behind each name that was exchanged
    Names m_guises;              // the names in the page, by those in the text
};

} // namespace luma::html
