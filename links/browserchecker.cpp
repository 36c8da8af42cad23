// SPDX-License-Identifier: GPL-3.0-or-later
#include "links/browserchecker.h"

#include "base/utf8.h"

#include <algorithm>

namespace luma {

namespace {

// Counts lines and characters from one place in a text to the next, which is rarely before it.
class LinesAndColumns final
{
public:
    explicit LinesAndColumns(std::string_view text) : m_text(text) {}

    void place(WebLink& link, std::size_t at)
    {
        if (at < m_at) {
            m_line = 1;
            m_column = 1;
            m_at = 0;
        }
        for (std::size_t feed = m_text.find('\n', m_at); feed < at; feed = m_text.find('\n', m_at)) {
            ++m_line;
            m_column = 1;
            m_at = feed + 1;
        }
        // From the last place on: a page may be one long line.
        const std::string_view between = m_text.substr(m_at, at - m_at);
        m_column += static_cast<std::uint32_t>(
            std::count_if(between.begin(), between.end(), [](char c) { return !isUtf8Continuation(c); }));
        m_at = at;
        link.line = m_line;
        link.column = m_column;
    }

private:
    std::string_view m_text;
    std::size_t m_at = 0; // the last place, and its line and column
    std::uint32_t m_line = 1;
    std::uint32_t m_column = 1;
};

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

WebPage BrowserChecker::check(SiteTree::Id id)
{
    return check(id, m_site->tree().subpath(id));
}

WebPage BrowserChecker::check(const std::string& subpath)
{
    return check(SiteTree::none, subpath);
}

WebPage BrowserChecker::check(SiteTree::Id id, const std::string& subpath)
{
    WebPage found{subpath, {}, {}};
    const std::string& root = m_site->tree().rootPath();
    if (const auto read = m_reader.read(root + (root.ends_with('/') ? "" : "/") + subpath); !read) {
        found.unreadable = read.error().text;
        return found;
    }
    if (id != SiteTree::none && m_site->rules().fragmentsAreChecked)
        m_site->anchors().put(id, m_reader);
    const SiteAddresses::Page page = m_site->addresses().page(subpath, m_reader.page().base());
    LinesAndColumns lines(m_reader.text());
    for (const LinkReference& reference : m_reader.page().references()) {
        WebLink link;
        judge(link, reference, page, id);
        if (m_kept == FindingsKept::Missing && link.state != LinkState::Missing)
            continue;
        link.place = reference.place;
        link.value = reference.value;
        lines.place(link, reference.begin);
        found.links.push_back(std::move(link));
    }
    return found;
}

void BrowserChecker::judge(WebLink& link, const LinkReference& reference, const SiteAddresses::Page& page,
                           SiteTree::Id id)
{
    using Kind = LinkTarget::Kind;
    link.place = reference.place;
    if (reference.place == LinkPlace::UseMap) {
        const bool isChecked = m_site->rules().fragmentsAreChecked && id != SiteTree::none;
        if (isChecked && !m_site->anchors().hasMap(id, reference.value, m_spare)) {
            link.state = LinkState::Missing;
            link.why = MissingReason::NoSuchPlace;
        }
        return;
    }
    const LinkTarget target = m_site->addresses().resolve(reference.value, page);
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
            link.value = reference.value;
            suggest(link, target, page);
        }
    }
}

void BrowserChecker::judgeInside(WebLink& link, const LinkTarget& target, const SiteAddresses::Page& page,
                                 SiteTree::Id id)
{
    if (target.path == page.path && !target.isFolderForm) {
        link.file = id;
        if (id != SiteTree::none && !isInStyle(link.place) && !isPlaceThere(id, target))
            link.why = MissingReason::NoSuchPlace;
    } else {
        const SitePlace place = m_site->paths().at(target);
        link.why = place.why;
        link.file = place.file;
        link.folder = place.folder;
        if (place.file != SiteTree::none && !isInStyle(link.place) && !isPlaceThere(place.file, target))
            link.why = MissingReason::NoSuchPlace;
    }
    if (link.why == MissingReason::None)
        return;
    link.state = LinkState::Missing;
    link.target = target.path;
}

bool BrowserChecker::isPlaceThere(SiteTree::Id page, const LinkTarget& target)
{
    return target.fragment.empty() || !m_site->rules().fragmentsAreChecked ||
           !isPage(m_site->tree().name(page)) || m_site->anchors().has(page, target.fragment, m_spare);
}

void BrowserChecker::suggest(WebLink& link, const LinkTarget& target, const SiteAddresses::Page& page)
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

const BrowserChecker::Guess& BrowserChecker::guessFor(const std::string& path)
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
