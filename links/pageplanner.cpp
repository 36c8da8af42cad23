// SPDX-License-Identifier: GPL-3.0-or-later
#include "links/pageplanner.h"

#include "base/pathbelow.h"
#include "base/usertext.h"
#include "base/utf8.h"
#include "links/writtenreference.h"

#include <algorithm>

namespace luma {

namespace {

using Kind = LinkTarget::Kind;

// The part of a text that differs from another one; whole characters.
struct Difference
{
    std::size_t begin = 0;
    std::size_t oldEnd = 0;
    std::size_t newEnd = 0;
};

Difference differenceOf(std::string_view a, std::string_view b)
{
    const std::size_t begin = sharedPrefix(a, b);
    const std::size_t after = sharedSuffix(a.substr(begin), b.substr(begin));
    return {begin, a.size() - after, b.size() - after};
}

// What bytes of a reference stand for.
std::string decodedPart(std::string_view raw, LinkSyntax syntax)
{
    if (syntax == LinkSyntax::StyleSheet)
        return decodedCss(raw);
    std::string text = decodeCharacters(raw, ReferenceContext::AttributeValue);
    return syntax == LinkSyntax::StyleDeclarations ? decodedCss(text) : text;
}

// Where `path`, with which the reference begins, ends in `raw`, its bytes; perhaps there are character references and CSS
// escapes in it. It ends before "?" or "#", which may be written as one of these, too.
std::optional<ValueBoundary> endOfPath(std::string_view raw, const LinkReference& reference,
                                       std::string_view path)
{
    if (raw.starts_with(path) && path.find('\\') == std::string_view::npos)
        return ValueBoundary{path.size(), path.size()};
    const std::string_view rest = reference.value.substr(path.size());
    for (std::size_t at = raw.find_first_of("?#&\\"); at != std::string_view::npos;
         at = raw.find_first_of("?#&\\", at + 1)) {
        if (decodedPart(raw.substr(0, at), reference.syntax) == path &&
            decodedPart(raw.substr(at), reference.syntax) == rest)
            return ValueBoundary{at, path.size()};
    }
    return std::nullopt;
}

} // namespace

void PagePlanner::setRoots(const std::filesystem::path& from, const std::filesystem::path& to)
{
    m_oldRoot = from.lexically_normal().relative_path().native();
    m_newRoot = to.lexically_normal().relative_path().native();
}

Result<std::vector<LinkEdit>> PagePlanner::editsOf(std::string_view bytes, const std::string& oldPath,
                                                   const std::string& newPath)
{
    const std::string_view name = namePart(oldPath);
    m_reader.parse(bytes, name, SitePageReader::FilePlaces::Known);
    const std::vector<Change> wanted = changes(oldPath, newPath);
    if (wanted.empty())
        return std::vector<LinkEdit>();
    std::vector<LinkEdit> edits = written(bytes, wanted);
    if (!readsAsPlanned(withEdits(bytes, edits), name, wanted))
        return Error{userText(QT_TRANSLATE_NOOP(
            "luma::Engines", "its links can't be changed without changing more, so they stay as they are"))};
    return edits;
}

std::vector<PagePlanner::Change> PagePlanner::changes(const std::string& oldPath,
                                                      const std::string& newPath) const
{
    std::vector<Change> found;
    const PageReader& page = m_reader.page();
    std::string base(page.base());
    const SiteAddresses::Page oldPage = m_addresses->page(oldPath, base);
    if (page.baseReference() && oldPage.hasBase) {
        if (const auto value = changed(base, m_addresses->page(oldPath), m_addresses->page(newPath))) {
            base = *value;
            found.push_back({&*page.baseReference(), base});
        }
    }
    const SiteAddresses::Page newPage = m_addresses->page(newPath, base);
    for (const LinkReference& reference : page.references()) {
        if (reference.place == LinkPlace::UseMap)
            continue;
        if (auto value = changed(reference.value, oldPage, newPage))
            found.push_back({&reference, *std::move(value)});
        else if (auto change = changedPath(reference, oldPage, newPage))
            found.push_back(*std::move(change));
    }
    std::sort(found.begin(), found.end(),
              [](const Change& a, const Change& b) { return a.reference->begin < b.reference->begin; });
    return found;
}

std::optional<std::string> PagePlanner::changed(std::string_view value, const SiteAddresses::Page& oldPage,
                                                const SiteAddresses::Page& newPage) const
{
    const bool isPageMoved = oldPage.path != newPage.path || oldPage.hasBase;
    const LinkTarget target = m_addresses->resolve(value, oldPage);
    std::string respelled(value);
    if (target.kind == Kind::Outside) {
        respelled = changedOutside(value, oldPage, newPage);
    } else if (target.kind == Kind::Inside) {
        const std::optional<NewPlace> place = m_places->newPlaceOf(target);
        if (!place && !isPageMoved)
            return std::nullopt;
        respelled = respelledAddress(*m_addresses, value, oldPage, newPage,
                                     place.value_or(NewPlace{target.path, target.isFolderForm}))
                        .value_or(respelled);
    }
    return respelled == value ? std::nullopt : std::optional(respelled);
}

std::string PagePlanner::changedOutside(std::string_view value, const SiteAddresses::Page& oldPage,
                                        const SiteAddresses::Page& newPage) const
{
    if (m_oldRoot == m_newRoot)
        return respelledOutside(*m_addresses, value, oldPage, newPage);
    if (oldPage.hasBase)
        return std::string(value);
    const SiteAddresses disk;
    const SiteAddresses::Page oldOnDisk = disk.page(m_oldRoot + '/' + oldPage.path);
    const LinkTarget target = disk.resolve(value, oldOnDisk);
    if (target.kind != Kind::Inside)
        return std::string(value);
    return respelledAddress(disk, value, oldOnDisk, disk.page(m_newRoot + '/' + newPage.path),
                            {target.path, target.isFolderForm})
        .value_or(std::string(value));
}

// An address as "a.php?id=<?= $id ?>" isn't judged, but its path says where it leads.
std::optional<PagePlanner::Change> PagePlanner::changedPath(const LinkReference& reference,
                                                            const SiteAddresses::Page& oldPage,
                                                            const SiteAddresses::Page& newPage) const
{
    const std::size_t end = std::min(reference.value.find('?'), reference.value.find('#'));
    if (end == 0 || end == std::string_view::npos || reference.frameQuotes != Quotes::NoValue ||
        m_addresses->resolve(reference.value, oldPage).kind != Kind::NotJudged)
        return std::nullopt;
    const std::string_view path = reference.value.substr(0, end);
    const auto value = changed(path, oldPage, newPage);
    const std::string_view raw = m_reader.text().substr(reference.begin, reference.end - reference.begin);
    const auto pathEnd = value ? endOfPath(raw, reference, path) : std::nullopt;
    if (!pathEnd)
        return std::nullopt;
    return Change{&reference, std::string(*value).append(reference.value.substr(end)), pathEnd};
}

std::vector<LinkEdit> PagePlanner::written(std::string_view bytes, const std::vector<Change>& changes) const
{
    const Encoding& encoding = m_reader.encoding().encoding;
    const std::string_view text = m_reader.unmaskedText();
    std::vector<LinkEdit> edits;
    std::uint32_t line = 1;
    std::size_t counted = 0;
    for (const Change& change : changes) {
        LinkReference reference = *change.reference;
        std::string value = change.value;
        if (const auto& end = change.pathEnd) {
            value.resize(value.size() - (reference.value.size() - end->decoded));
            reference.value = reference.value.substr(0, end->decoded);
            reference.end = reference.begin + end->raw;
        }
        const std::string_view raw = text.substr(reference.begin, reference.end - reference.begin);
        const std::string anew = writtenReference(raw, reference, value);
        const Difference differ = differenceOf(raw, anew);
        const std::string_view inserted =
            std::string_view(anew).substr(differ.begin, differ.newEnd - differ.begin);
        const std::size_t begin = m_reader.placeInFile(reference.begin + differ.begin);
        const std::size_t end = m_reader.placeInFile(reference.begin + differ.oldEnd);
        line += static_cast<std::uint32_t>(
            std::count(text.begin() + static_cast<std::ptrdiff_t>(counted),
                       text.begin() + static_cast<std::ptrdiff_t>(reference.begin), '\n'));
        counted = reference.begin;
        edits.push_back({begin, std::string(bytes.substr(begin, end - begin)),
                         encoding.isUtf8() ? std::string(inserted) : encoding.encodedWithReferences(inserted),
                         line, std::string(reference.value), std::move(value)});
    }
    return edits;
}

// Whether a browser takes the planned addresses from the page, and the old ones everywhere else.
bool PagePlanner::readsAsPlanned(std::string_view bytes, std::string_view name,
                                 const std::vector<Change>& changes)
{
    m_second.parse(bytes, name, SitePageReader::FilePlaces::Known);
    const PageReader& before = m_reader.page();
    const PageReader& after = m_second.page();
    auto next = changes.begin();
    const auto isPlanned = [&](const LinkReference& old, const LinkReference& now) {
        const bool isChanged = next != changes.end() && next->reference->begin == old.begin;
        const std::string_view wanted = isChanged ? std::string_view(next->value) : old.value;
        if (isChanged)
            ++next;
        return now.value == wanted && now.place == old.place;
    };
    const auto& olds = before.references();
    const auto& nows = after.references();
    if (olds.size() != nows.size() || before.baseReference().has_value() != after.baseReference().has_value())
        return false;
    bool isBaseDone = !before.baseReference();
    for (std::size_t i = 0; i < olds.size(); ++i) {
        if (!isBaseDone && before.baseReference()->begin < olds[i].begin) {
            isBaseDone = true;
            if (!isPlanned(*before.baseReference(), *after.baseReference()))
                return false;
        }
        if (!isPlanned(olds[i], nows[i]))
            return false;
    }
    if (!isBaseDone && !isPlanned(*before.baseReference(), *after.baseReference()))
        return false;
    return next == changes.end();
}

} // namespace luma
