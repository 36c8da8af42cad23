// SPDX-License-Identifier: GPL-3.0-or-later
#include "html/parsernames.h"

#include "base/ascii.h"
#include "html/htmlscanner.h"

#include <gumbo.h>

#include <algorithm>
#include <iterator>
#include <set>

namespace luma::html {

namespace {

// Elements that the parser knows and treats as any other, in svg and math too.
constexpr std::string_view ordinaryNames[] = {
    "multicol", "nextid", "spacer", "acronym", "blink", "bdo",    "bdi",   "datalist", "meter",
    "progress", "output", "samp",   "dfn",     "kbd",   "canvas", "audio", "video",    "time",
    "data",     "mark",   "abbr",   "cite",    "del",   "ins",    "map",   "label",    "q"};

// Elements that the parser knows and that end a paragraph, as a dialog does; the first one least of all in other ways special.
constexpr std::string_view blockNames[] = {"main", "hgroup", "dir", "center", "menu", "nav"};

bool isUnknown(const std::string& name)
{
    const GumboTag tag = gumbo_tag_enum(name.c_str());
    return tag == GUMBO_TAG_UNKNOWN || tag == GUMBO_TAG_ISINDEX || tag == GUMBO_TAG_MENUITEM;
}

/// The names of unknown elements in a page, in lower case, but for those of svg and math alone, which the parser tells apart.
std::vector<std::string> unknownNames(std::string_view page)
{
    std::vector<std::string> names;
    std::set<std::string> foreign;
    HtmlScanner scanner(page);
    HtmlToken token;
    while (scanner.next(token)) {
        if (token.kind != HtmlTokenKind::StartTag && token.kind != HtmlTokenKind::EndTag)
            continue;
        std::string name = asciiLower(token.name);
        if (!isUnknown(name))
            continue;
        if (token.kind == HtmlTokenKind::StartTag && scanner.isInForeignContent())
            foreign.insert(std::move(name));
        else if ((token.kind == HtmlTokenKind::StartTag || !foreign.contains(name)) &&
                 std::find(names.begin(), names.end(), name) == names.end())
            names.push_back(std::move(name));
    }
    return names;
}

/// Those of the names that the page may have, in tags or in text that shows tags.
std::set<std::string> namesShown(std::string_view page, std::span<const std::string_view> all)
{
    std::set<std::string> names;
    for (std::size_t at = page.find_first_of("</;"); at != std::string_view::npos;
         at = page.find_first_of("</;", at + 1)) {
        for (const std::string_view name : all) {
            if (equalIgnoringAsciiCase(page.substr(at + 1, name.size()), name))
                names.emplace(name);
        }
    }
    return names;
}

} // namespace

ParserNames::ParserNames(std::string_view page, Way way) : m_page(page)
{
    if (way == Way::Kept)
        return;
    std::vector<std::string> unknown = unknownNames(page);
    const auto ordinary =
        std::stable_partition(unknown.begin(), unknown.end(), [](const auto& name) { return isBlock(name); });
    Names guises;
    addGuises({unknown.begin(), ordinary}, blockNames, guises);
    addGuises({ordinary, unknown.end()}, ordinaryNames, guises);
    exchange(guises);
}

void ParserNames::addGuises(std::span<const std::string> names, std::span<const std::string_view> possible,
                            Names& guises)
{
    const std::set<std::string> shown = namesShown(m_page, possible);
    auto name = names.begin();
    for (const std::string_view guise : possible) {
        if (name == names.end())
            break;
        if (shown.contains(std::string(guise)))
            continue;
        m_guises.emplace(guise, *name);
        guises.emplace(*name++, guise);
    }
}

void ParserNames::exchange(const Names& guises)
{
    HtmlScanner scanner(m_page);
    HtmlToken token;
    std::size_t done = 0;
    while (scanner.next(token)) {
        if (token.kind != HtmlTokenKind::StartTag && token.kind != HtmlTokenKind::EndTag)
            continue;
        const auto guise = guises.find(asciiLower(token.name));
        if (guise == guises.end())
            continue;
        const std::size_t begin = offsetIn(m_page, token.name);
        m_text.append(m_page, done, begin - done).append(guise->second);
        done = begin + token.name.size();
        m_places.push_back({m_text.size(), done});
    }
    if (done > 0)
        m_text.append(m_page, done);
}

std::size_t ParserNames::pagePlace(std::size_t textPlace) const
{
    const auto behind =
        std::upper_bound(m_places.begin(), m_places.end(), textPlace,
                         [](std::size_t wanted, const Place& place) { return wanted < place.text; });
    return behind == m_places.begin() ? textPlace
                                      : std::prev(behind)->page + (textPlace - std::prev(behind)->text);
}

bool ParserNames::isShownIn(std::string_view text) const
{
    if (m_guises.empty())
        return false;
    for (std::size_t at = text.find('<'); at != std::string_view::npos; at = text.find('<', at + 1)) {
        const std::size_t begin = at + (text.substr(at + 1).starts_with('/') ? 2 : 1);
        const bool isGuise = std::any_of(m_guises.begin(), m_guises.end(), [&](const auto& guise) {
            return text.substr(begin, guise.first.size()) == guise.first;
        });
        if (isGuise)
            return true;
    }
    return false;
}

} // namespace luma::html
