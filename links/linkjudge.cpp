// SPDX-License-Identifier: GPL-3.0-or-later
#include "links/linkjudge.h"

#include <algorithm>

namespace luma {

namespace {

bool isPage(std::string_view name)
{
    const WebFileKind kind = webFileKind(name);
    return kind == WebFileKind::HtmlPage || kind == WebFileKind::XmlPage;
}

// A fragment in a style sheet names an element of the page that uses the sheet.
bool isInStyle(LinkPlace place)
{
    return place == LinkPlace::Style || place == LinkPlace::SheetUrl || place == LinkPlace::SheetImport;
}

} // namespace

bool isPresentInFolder(const WebLink& link, std::string_view value)
{
    if (link.state == LinkState::External || link.state == LinkState::NotJudged)
        return true;
    // The page itself counts for "", "#x", "?x" and what may become that, as "http:".
    const bool isRelativeToPage = value.empty() || static_cast<unsigned char>(value.front()) <= ' ' ||
                                  value.find(':') != std::string_view::npos;
    return link.state == LinkState::Present && !isRelativeToPage && value.front() != '#' &&
           value.front() != '?' && !(isInStyle(link.place) && value.find('#') != std::string_view::npos);
}

WebLink LinkJudge::judged(std::string_view value, LinkPlace linkPlace, const SiteAddresses::Page& page,
                          SiteTree::Id id)
{
    WebLink link;
    link.place = linkPlace;
    judge(link, value, page, id);
    return link;
}

void LinkJudge::judge(WebLink& link, std::string_view value, const SiteAddresses::Page& page, SiteTree::Id id)
{
    using Kind = LinkTarget::Kind;
    if (link.place == LinkPlace::UseMap) {
        if (m_checksFragments && id != SiteTree::none && !m_site->anchors().hasMap(id, value, m_spare)) {
            link.state = LinkState::Missing;
            link.why = MissingReason::NoSuchPlace;
        }
        return;
    }
    const LinkTarget target = m_site->addresses().resolve(value, page);
    link.state = target.kind == Kind::External    ? LinkState::External
                 : target.kind == Kind::NotJudged ? LinkState::NotJudged
                                                  : LinkState::Present;
    if (target.kind == Kind::Outside) {
        // What else stands on the site's own host is not known here.
        link.state = m_site->addresses().isNameKnown() ? LinkState::External : LinkState::Missing;
        if (link.state == LinkState::Missing)
            link.why = MissingReason::OutsideSite;
    } else if (target.kind == Kind::Inside) {
        judgeInside(link, target, page, id);
        if (link.why == MissingReason::NoSuchFile) {
            link.value = value;
            suggest(link, target, page);
        }
    }
}

void LinkJudge::judgeInside(WebLink& link, const LinkTarget& target, const SiteAddresses::Page& page,
                            SiteTree::Id id)
{
    if (target.path == page.path && !target.isFolderForm) {
        link.file = id;
        if (id != SiteTree::none && !isInStyle(link.place) && !isPlaceThere(id, target.fragment))
            link.why = MissingReason::NoSuchPlace;
    } else {
        const SitePlace place = m_site->paths().at(target);
        m_hasAskedDisk = m_hasAskedDisk || place.isFromDisk;
        link.why = place.why;
        link.file = place.file;
        link.folder = place.folder;
        if (place.file != SiteTree::none && !isInStyle(link.place) &&
            !isPlaceThere(place.file, target.fragment))
            link.why = MissingReason::NoSuchPlace;
    }
    if (link.why == MissingReason::None)
        return;
    link.state = LinkState::Missing;
    link.target = target.path;
}

bool LinkJudge::isPlaceThere(SiteTree::Id id, std::string_view fragment)
{
    return fragment.empty() || !m_checksFragments || !isPage(m_site->tree().name(id)) ||
           m_site->anchors().has(id, fragment, m_spare);
}

void LinkJudge::suggest(WebLink& link, const LinkTarget& target, const SiteAddresses::Page& page)
{
    const Guess& guess = guessFor(target.path);
    if (guess.item == SiteTree::none)
        return;
    if (guess.isOtherCase)
        link.why = MissingReason::OtherLetterCase;
    const std::string path = m_site->tree().subpath(guess.item);
    const bool fromRoot = page.hasBase || (link.value.starts_with('/') && !link.value.starts_with("//"));
    link.suggestion = fromRoot ? "/" + addressFrom({}, path) : addressFrom(page.path, path);
    if (m_site->tree().type(guess.item) == SiteTree::Type::Folder)
        link.suggestion += '/';
    link.suggestion +=
        std::string_view(link.value).substr(std::min(link.value.find_first_of("?#"), link.value.size()));
}

const LinkJudge::Guess& LinkJudge::guessFor(const std::string& path)
{
    constexpr std::size_t mostRemembered = 16'384;
    if (m_guesses.size() >= mostRemembered)
        m_guesses.clear();
    const auto [entry, isNew] = m_guesses.try_emplace(path);
    if (!isNew)
        return entry->second;
    const LinkSuggestions& suggestions = m_site->suggestions();
    Guess& guess = entry->second;
    guess.item = suggestions.withOtherCase(path);
    guess.isOtherCase = guess.item != SiteTree::none && m_site->tree().subpath(guess.item) != path;
    if (guess.item == SiteTree::none || m_site->tree().type(guess.item) == SiteTree::Type::BrokenLink)
        guess = {suggestions.nearest(path), false};
    if (guess.item != SiteTree::none && m_site->tree().type(guess.item) == SiteTree::Type::BrokenLink)
        guess = {};
    return guess;
}

} // namespace luma
