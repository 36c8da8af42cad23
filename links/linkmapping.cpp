// SPDX-License-Identifier: GPL-3.0-or-later
#include "links/linkmapping.h"

#include "base/files.h"
#include "base/pathbelow.h"
#include "html/characterreferences.h"

#include <sys/stat.h>

#include <algorithm>
#include <set>

namespace luma {

namespace fs = std::filesystem;

namespace {

bool standsOnDisk(const fs::path& path)
{
    struct stat status = {};
    return path.native().find('\0') == std::string::npos && ::stat(path.c_str(), &status) == 0;
}

// Tried with and without query and fragment.
bool leadsSomewhere(std::string_view value, const fs::path& folder)
{
    return standsOnDisk(resolveRelativeLink(value, folder)) ||
           (pathPart(value).size() < value.size() && !pathPart(value).empty() &&
            standsOnDisk(resolveRelativeLink(pathPart(value), folder)));
}

std::string placeOf(std::string_view link, const fs::path& folder)
{
    return comparablePath(resolveRelativeLink(link, folder).native());
}

bool isBoundary(std::string_view value, std::size_t position)
{
    return position == value.size() || value[position] == '/' || value[position] == '?' ||
           value[position] == '#';
}

// A relative path that only climbs means that the page is inside the item.
bool climbsOnly(std::string_view relative)
{
    while (relative.starts_with("../"))
        relative.remove_prefix(3);
    return relative.empty();
}

// Appends both without doubling the slash between them; after an empty `text` there is none.
void appendJoined(std::string& value, std::string_view text, std::string_view rest)
{
    value += text;
    if ((text.empty() || text.ends_with('/')) && rest.starts_with('/'))
        rest.remove_prefix(1);
    value += rest;
}

std::string withPrefixReplaced(std::string_view value, std::string_view old, std::string_view replacement)
{
    std::string result;
    appendJoined(result, replacement, value.substr(old.size()));
    return result;
}

std::string withAllReplaced(std::string_view value, std::string_view old, std::string_view replacement)
{
    std::string result;
    for (;;) {
        const std::size_t found = value.find(old);
        if (found == std::string_view::npos)
            return result.append(value);
        result.append(value.substr(0, found)).append(replacement);
        value.remove_prefix(found + old.size());
        if ((replacement.empty() || replacement.ends_with('/')) && value.starts_with('/'))
            value.remove_prefix(1);
    }
}

// Replaces every occurrence, as in "a.html?next=a.html", or the first one alone where only that leads
// somewhere, as in "a/a.html" when folder a has moved.
std::string replaced(std::string_view value, std::string_view old, std::string_view replacement,
                     const fs::path& folder)
{
    const std::string all = withAllReplaced(value, old, replacement);
    const std::string first = withPrefixReplaced(value, old, replacement);
    return all == first || leadsSomewhere(all, folder) || !leadsSomewhere(first, folder) ? all : first;
}

} // namespace

std::string rebasedLink(const std::string& value, const fs::path& oldFolder, const fs::path& newFolder)
{
    const fs::path place = resolveRelativeLink(value, oldFolder);
    if (isExternalLink(value) || (hasSchemeOrHost(value) && !standsOnDisk(place)))
        return value;
    std::string rebased = relativePath(place, newFolder);
    // ".." and "../" mean the same.
    return rebased == value + "/" ? value : rebased;
}

LinkMapping::LinkMapping(const std::vector<MovedItem>& items)
{
    std::set<std::string> names;
    for (const MovedItem& item : items) {
        m_items.push_back({comparablePath(item.from.native()), comparablePath(item.to.native())});
        m_byFrom.try_emplace(m_items.back().from, m_items.size() - 1);
        names.insert(fs::path(m_items.back().from).filename().native());
    }
    for (const Item& item : m_items)
        m_fromLengths.push_back(item.from.size());
    std::sort(m_fromLengths.begin(), m_fromLengths.end(), std::greater<>());
    m_fromLengths.erase(std::unique(m_fromLengths.begin(), m_fromLengths.end()), m_fromLengths.end());
    std::string characters;
    for (const std::string& name : names) {
        characters += name;
        // Line ends, NUL and the replacement character are not spelled in the source as in the value.
        m_anyBytes = m_anyBytes || name.find_first_of("\r\n") != std::string::npos ||
                     name.find("\xEF\xBF\xBD") != std::string::npos;
    }
    m_references = namedReferencesFor(characters);
    // Beyond ASCII nearly every reference shares a byte with a name.
    constexpr std::size_t mostCompared = 64;
    if (m_references.size() > mostCompared)
        m_references = {std::string()};
    m_names = NameSearch({names.begin(), names.end()});
}

bool LinkMapping::mayConcern(std::string_view source) const
{
    if (m_anyBytes)
        return true;
    if (m_names.names().size() == 1 ? source.find(m_names.names().front()) != std::string_view::npos
                                    : m_names.holdsAny(source))
        return true;
    for (std::size_t i = source.find('&'); i != std::string_view::npos; i = source.find('&', i + 1)) {
        const std::string_view rest = source.substr(i + 1);
        if (rest.starts_with('#') ||
            std::any_of(m_references.begin(), m_references.end(),
                        [rest](const std::string& name) { return rest.starts_with(name); }))
            return true;
    }
    return false;
}

std::optional<fs::path> LinkMapping::oldFolderOf(const fs::path& path) const
{
    const std::string page = comparablePath(path.native());
    for (const Item& item : m_items) {
        if (isAtOrBelow(page, item.to))
            return fs::path(item.from + page.substr(item.to.size())).parent_path();
    }
    return std::nullopt;
}

const LinkMapping::Item* LinkMapping::itemAt(const std::string& place) const
{
    // Tries the lengths that occur, not every parent: a hostile path may have a million components.
    for (const std::size_t length : m_fromLengths) {
        if (length > place.size() || (length < place.size() && place[length] != '/'))
            continue;
        if (const auto found = m_byFrom.find(place.substr(0, length)); found != m_byFrom.end())
            return &m_items[found->second];
    }
    return nullptr;
}

LinkMapping::WrittenItems LinkMapping::writtenFrom(const fs::path& folder) const
{
    WrittenItems written;
    std::set<std::size_t, std::greater<>> lengths;
    for (std::size_t i = 0; i < m_items.size(); ++i) {
        const std::string old = relativePath(m_items[i].from, folder);
        if (climbsOnly(old))
            continue;
        lengths.insert(old.size());
        written.byText.try_emplace(old, i);
    }
    written.lengths.assign(lengths.begin(), lengths.end());
    return written;
}

// A link that begins like the item's path may lead to something else that exists, or to another item.
bool LinkMapping::isGuarded(const std::string& value, const fs::path& folder, const Item& item) const
{
    const std::string place = placeOf(value, folder);
    if (isAtOrBelow(place, item.from))
        return false;
    return standsOnDisk(place) || itemAt(place) ||
           (!isAtOrBelow(placeOf(pathPart(value), folder), item.from) && leadsSomewhere(value, folder));
}

std::optional<std::string> LinkMapping::updated(const std::string& value, const fs::path& folder,
                                                const WrittenItems& written) const
{
    if (isExternalLink(value))
        return std::nullopt;
    for (const bool atBoundary : {true, false}) {
        for (const std::size_t length : written.lengths) {
            if (length > value.size() || isBoundary(value, length) != atBoundary)
                continue;
            const auto found = written.byText.find(value.substr(0, length));
            if (found == written.byText.end())
                continue;
            const Item& item = m_items[found->second];
            if (!isGuarded(value, folder, item))
                return replaced(value, found->first, relativePath(item.to, folder), folder);
        }
    }
    return std::nullopt;
}

std::string LinkMapping::moved(const std::string& value, const fs::path& oldFolder,
                               const fs::path& folder) const
{
    const Item* item = nullptr;
    std::string place;
    if (!isExternalLink(value) && !hasSchemeOrHost(value)) {
        place = placeOf(value, oldFolder);
        item = itemAt(place);
        if (!item && !pathPart(value).empty()) {
            const std::string_view tail = std::string_view(value).substr(pathPart(value).size());
            place = placeOf(pathPart(value), oldFolder);
            item = itemAt(place);
            place += tail;
        }
    }
    if (!item)
        return rebasedLink(value, oldFolder, folder);
    const std::string newPlace = item->to + place.substr(item->from.size());
    return placeOf(value, folder) == newPlace ? value : relativePath(newPlace, folder);
}

std::vector<LinkChange> LinkMapping::changesOf(const ParsedPage& page, const fs::path& folder) const
{
    std::vector<LinkChange> changes;
    const WrittenItems written = writtenFrom(folder);
    for (std::size_t i = 0; i < page.links.size(); ++i) {
        if (auto value = updated(page.links[i].value, folder, written);
            value && *value != page.links[i].value)
            changes.push_back({i, *std::move(value)});
    }
    return changes;
}

std::vector<LinkChange> LinkMapping::changesOfMoved(const ParsedPage& page, const fs::path& oldFolder,
                                                    const fs::path& folder) const
{
    std::vector<LinkChange> changes;
    for (std::size_t i = 0; i < page.links.size(); ++i) {
        if (std::string value = moved(page.links[i].value, oldFolder, folder); value != page.links[i].value)
            changes.push_back({i, std::move(value)});
    }
    return changes;
}

} // namespace luma
