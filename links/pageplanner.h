// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/result.h"
#include "html/characterreferences.h"
#include "links/linkplan.h"
#include "links/movedplaces.h"
#include "links/sitepagereader.h"

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace luma {

/// Plans the edits of one page or style sheet after another. It keeps buffers, so use one for many pages, and one for each
/// thread. Addresses and places must outlive it.
class PagePlanner final
{
public:
    PagePlanner(const SiteAddresses& addresses, const MovedPlaces& places)
        : m_addresses(&addresses), m_places(&places)
    {}

    /// For a page that goes from one folder with its own root to another: its relative links that lead out of the first one
    /// lead to the same files afterwards. Otherwise they keep their distance to the root. Absolute paths.
    void setRoots(const std::filesystem::path& from, const std::filesystem::path& to);

    /// The bytes of a file, valid until the next read.
    Result<std::string_view> read(const std::string& file) { return m_reader.readBytes(file); }

    /// The edits of the page that holds `bytes`; none where all links are right. Paths are subpaths. The edited page has
    /// been read again, and each of its links is the one that was planned. Error: that is not so, and the page must stay.
    Result<std::vector<LinkEdit>> editsOf(std::string_view bytes, const std::string& oldPath,
                                          const std::string& newPath);

private:
    struct Change
    {
        const LinkReference* reference;
        std::string value;
        /// Where the path ends in the old address, if that is all that changes, because a server writes what follows.
        std::optional<ValueBoundary> pathEnd = {};
    };

    [[nodiscard]] std::vector<Change> changes(const std::string& oldPath, const std::string& newPath) const;
    [[nodiscard]] std::optional<std::string> changed(std::string_view value,
                                                     const SiteAddresses::Page& oldPage,
                                                     const SiteAddresses::Page& newPage) const;
    [[nodiscard]] std::string changedOutside(std::string_view value, const SiteAddresses::Page& oldPage,
                                             const SiteAddresses::Page& newPage) const;
    [[nodiscard]] std::optional<Change> changedPath(const LinkReference& reference,
                                                    const SiteAddresses::Page& oldPage,
                                                    const SiteAddresses::Page& newPage) const;
    [[nodiscard]] std::vector<LinkEdit> written(std::string_view bytes,
                                                const std::vector<Change>& changes) const;
    [[nodiscard]] bool readsAsPlanned(std::string_view bytes, std::string_view name,
                                      const std::vector<Change>& changes);

    const SiteAddresses* m_addresses;
    const MovedPlaces* m_places;
    std::string m_oldRoot; // without a slash in front; both empty where they are one
    std::string m_newRoot;
    SitePageReader m_reader;
    SitePageReader m_second; // reads the edited page
};

} // namespace luma
