// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "links/sitepagereader.h"
#include "links/sitetree.h"

#include <atomic>
#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

namespace luma {

/// The places in the pages of a site that fragments lead to, kept as hashes from a page's first reading on. Any
/// thread. The tree must outlive it.
class PageAnchors final
{
public:
    using Id = SiteTree::Id;

    explicit PageAnchors(const SiteTree& tree);
    PageAnchors(const PageAnchors&) = delete;
    PageAnchors& operator=(const PageAnchors&) = delete;
    ~PageAnchors();

    /// Keeps those of the page `id`, which `reader` has read.
    void put(Id id, const SitePageReader& reader);
    /// Whether "#fragment" leads to a place in the page `id` (HTML standard, "find a potential indicated element").
    /// Always true for a page that can't be read or holds server code. `spare` reads the page if it must be read.
    [[nodiscard]] bool has(Id id, std::string_view fragment, SitePageReader& spare);
    /// The same for the value of a usemap attribute (HTML standard, "hash-name reference").
    [[nodiscard]] bool hasMap(Id id, std::string_view usemap, SitePageReader& spare);

private:
    struct Anchors
    {
        bool anyMayBeThere = false;
        std::vector<std::uint64_t> hashes; // sorted
    };

    const Anchors& of(Id id, SitePageReader& spare);
    const Anchors& keep(Id id, std::unique_ptr<const Anchors> anchors);

    const SiteTree* m_tree;
    std::vector<std::atomic<const Anchors*>> m_anchors; // by Id; null until read
};

} // namespace luma
