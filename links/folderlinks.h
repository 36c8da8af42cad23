// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "links/sitetree.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

namespace luma {

/// The symbolic links to folders in a site, and where the paths lead that go through them. Unchanging once made; any thread.
class FolderLinks final
{
public:
    /// `tree` is not needed any more afterwards. `placeNow`: the subpath by which an item of the tree is on the disk, where the
    /// links are read.
    FolderLinks(const SiteTree& tree, const std::function<std::string(const std::string& subpath)>& placeNow);

    [[nodiscard]] bool isEmpty() const { return m_targets.empty(); }

    /// How a path goes through links. All are subpaths.
    struct Way
    {
        std::string path;   // the same without links
        std::string linked; // the beginning of the path that ends with the last link
        std::string folder; // that this leads to
    };
    /// Nothing where `path` goes through no link, or out of the site.
    [[nodiscard]] std::optional<Way> wayOf(std::string_view path) const;

private:
    bool follow(std::string& place, std::string_view path, int& linkCount) const;
    bool enter(std::string& place, std::string_view name, int& linkCount) const;

    std::unordered_map<std::string, std::string>
        m_targets; // relative to the site's folder if they begin with a slash
};

} // namespace luma
