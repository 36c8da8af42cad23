// SPDX-License-Identifier: GPL-3.0-or-later
#include "links/movedlinks.h"

#include "base/pathbelow.h"
#include "links/pageplanner.h"
#include "links/textplan.h"

#include <system_error>

namespace luma {

namespace fs = std::filesystem;

namespace {

fs::path canonicalParent(const fs::path& path)
{
    std::error_code error;
    const fs::path folder = fs::weakly_canonical(path.parent_path(), error);
    return error ? path : folder / path.filename();
}

} // namespace

MovedLinks::MovedLinks(const MoveRequest& request)
    : m_oldRoot(request.sourceRoot.empty() ? request.site : request.sourceRoot),
      m_newRoot(request.site),
      m_addresses(request.rules.webAddresses)
{
    // What comes from elsewhere, or goes there, has no relations to keep.
    for (const MovedItem& item : request.items) {
        const auto from = pathBelow(item.from.native(), m_oldRoot.native());
        const auto to = pathBelow(item.to.native(), m_newRoot.native());
        if (!from || !to || from->empty())
            continue;
        m_items.push_back({std::string(*from), std::string(*to)});
        m_movedItems.push_back(item);
    }
}

bool MovedLinks::needsTree(const MoveRequest& request)
{
    return request.sourceRoot.empty() || request.sourceRoot == request.site;
}

std::shared_ptr<const MovedLinks> MovedLinks::of(const MoveRequest& request, std::optional<SiteTree> now)
{
    const MovedLinks unread(request);
    for (const MovedPlaces::Item& item : unread.m_items) {
        if (now && request.isRenamedAlready)
            now->putBack(now->find(item.to), item.from);
    }
    return ofSite(request, now ? std::make_shared<const SiteTree>(*std::move(now)) : nullptr);
}

std::shared_ptr<const MovedLinks> MovedLinks::ofSite(const MoveRequest& request,
                                                     std::shared_ptr<const SiteTree> before)
{
    std::shared_ptr<MovedLinks> links(new MovedLinks(request));
    if (links->m_items.empty() || !needsTree(request)) {
        links->m_places.emplace(links->m_items, nullptr, request.rules);
        return links;
    }
    links->m_tree = std::move(before);
    if (request.changesLinksOnly)
        links->m_places.emplace(MovedPlaces::ofTargets(links->m_items, request.rules));
    else
        links->m_places.emplace(links->m_items, &*links->m_tree, request.rules);
    return links;
}

Result<std::string> MovedLinks::updated(std::string_view source, const fs::path& oldFile,
                                        const fs::path& newFile) const
{
    const auto oldPath = placeInRoot(oldFile, m_oldRoot);
    const auto newPath = placeInRoot(newFile, m_newRoot);
    if (!oldPath || !newPath || m_items.empty() || (!m_tree && oldFile == newFile))
        return std::string(source);
    PagePlanner planner(m_addresses, *m_places);
    return editedSource(source,
                        [&](std::string_view bytes) { return planner.editsOf(bytes, *oldPath, *newPath); });
}

fs::path placeAfterMove(const fs::path& file, const MovedItem& item)
{
    auto below = pathBelow(file.native(), item.from.native());
    const fs::path realFile = below ? fs::path() : canonicalParent(file);
    const fs::path realItem = below ? fs::path() : canonicalParent(item.from);
    if (!below)
        below = pathBelow(realFile.native(), realItem.native());
    if (!below)
        return file;
    return below->empty() ? item.to : item.to / *below;
}

} // namespace luma
