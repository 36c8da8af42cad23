// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/result.h"
#include "base/stillwanted.h"
#include "links/linkplan.h"
#include "links/movedplaces.h"

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace luma {

/// Where the links of a site lead before and after a move, as a browser reads them: for planning it, and for pages whose
/// text isn't on the disk because they are open with unsaved edits. Unchanging once made; any thread.
class MovedLinks final
{
public:
    /// `request` has paths as checked by planMove(). `now`: what is in the site's folder, which must still be as it was before
    /// the move, but for isRenamedAlready; not needed where needsTree() says so.
    static std::shared_ptr<const MovedLinks> of(const MoveRequest& request, std::optional<SiteTree> now);
    /// `before`: what was in the site's folder before the move.
    static std::shared_ptr<const MovedLinks> ofSite(const MoveRequest& request,
                                                    std::shared_ptr<const SiteTree> before);
    /// False where the items come from another root.
    static bool needsTree(const MoveRequest& request);

    [[nodiscard]] const MovedPlaces& places() const { return *m_places; }
    [[nodiscard]] const SiteAddresses& addresses() const { return m_addresses; }
    /// The site before the move. Null where the items come from another root: then only their own links change.
    [[nodiscard]] const SiteTree* tree() const { return m_tree.get(); }
    /// The items that have a place in the site before and after the move, with their absolute paths in the same order.
    [[nodiscard]] const std::vector<MovedPlaces::Item>& items() const { return m_items; }
    [[nodiscard]] const std::vector<MovedItem>& movedItems() const { return m_movedItems; }

    /// The page or style sheet `source` (UTF-8) with its links right after the move, in which its file went from `oldFile` to
    /// `newFile`; they are the same where it didn't move. Gives `source` itself where no link changes. Error: as
    /// PagePlanner::editsOf().
    [[nodiscard]] Result<std::string> updated(std::string_view source, const std::filesystem::path& oldFile,
                                              const std::filesystem::path& newFile) const;

private:
    explicit MovedLinks(const MoveRequest& request);

    std::filesystem::path m_oldRoot;
    std::filesystem::path m_newRoot;
    SiteAddresses m_addresses;
    std::vector<MovedPlaces::Item> m_items;
    std::vector<MovedItem> m_movedItems;
    std::shared_ptr<const SiteTree> m_tree;
    std::optional<MovedPlaces> m_places;
};

/// Where `file` is after `item` was moved: at its new place if it is the item or lies below it, else where it was. Symbolic
/// links in the folders' paths are followed.
std::filesystem::path placeAfterMove(const std::filesystem::path& file, const MovedItem& item);

} // namespace luma
