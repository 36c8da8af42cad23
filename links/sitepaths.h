// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "links/siteaddresses.h"
#include "links/sitetree.h"
#include "links/webrules.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace luma {

/// Why a link is missing.
enum class MissingReason : std::uint8_t {
    None,
    NoSuchFile,
    OtherLetterCase, // of a file or folder that is there
    FolderWithoutIndex,
    NoSuchPlace, // the page is there, the place that "#name" means is not
    OutsideSite
};

/// As reports show it, in English: "no such file"; empty for None. A literal, which ends with NUL.
std::string_view textOf(MissingReason reason);

/// What is at a place of the site.
struct SitePlace
{
    MissingReason why = MissingReason::None; // NoSuchFile and FolderWithoutIndex occur here
    /// The file that a browser gets, an index page for a folder; none where it is missing, or there but not in the
    /// tree.
    SiteTree::Id file = SiteTree::none;
    SiteTree::Id folder = SiteTree::none; // whose index page the file is
    bool isFromDisk = false;              // the disk was asked, because the tree can't tell
};

/// Looks up the places that addresses lead to, each with one look-up of its whole path. The disk is asked for what
/// stands behind symbolic links to folders and in folders that the tree could not read. Unchanging once made; any
/// thread. The tree must outlive it.
class SitePaths final
{
public:
    using Id = SiteTree::Id;

    SitePaths(const SiteTree& tree, const WebRules& rules);

    /// `target` must lead inside the site.
    [[nodiscard]] SitePlace at(const LinkTarget& target) const;
    /// The item at `subpath`, which is relative to the site's folder, without slashes at its ends, or none.
    [[nodiscard]] Id find(std::string_view subpath) const;

private:
    [[nodiscard]] bool isAt(Id id, std::string_view subpath) const;
    [[nodiscard]] SitePlace inFolder(Id folder, const std::string& path) const;
    [[nodiscard]] SitePlace notInTree(const LinkTarget& target) const;
    [[nodiscard]] SitePlace onDisk(const LinkTarget& target) const;
    [[nodiscard]] SitePlace placeOnDisk(const LinkTarget& target) const;
    [[nodiscard]] SitePlace nearPathOnDisk(std::string path, bool isFolderForm) const;
    [[nodiscard]] SitePlace behindLinks(const std::string& path) const;

    struct Slot
    {
        std::uint32_t hash = 0;
        Id id = SiteTree::none;
    };

    const SiteTree* m_tree;
    std::string m_realRoot; // without symbolic links; empty where that can't be told
    std::vector<std::string> m_indexNames;
    bool m_extensionsMayBeLeftOut;
    std::vector<Slot> m_table; // open addressing by the hash of the subpath
};

} // namespace luma
