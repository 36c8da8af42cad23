// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "links/sitepagereader.h"
#include "links/sitetree.h"

#include <atomic>
#include <cstdint>
#include <deque>
#include <mutex>
#include <string_view>
#include <vector>

namespace luma {

/// The places in one page that fragments lead to, as hashes.
struct PagePlaces
{
    bool anyMayBeThere = false;        // server code may write others
    std::vector<std::uint64_t> hashes; // sorted

    static PagePlaces of(const SitePageReader& reader);
    bool operator==(const PagePlaces&) const = default;
};

/// The places in the pages of a site that fragments lead to, kept as hashes from a page's first reading on. Any
/// thread. The tree must outlive it.
class PageAnchors final
{
public:
    using Id = SiteTree::Id;

    explicit PageAnchors(const SiteTree& tree);
    PageAnchors(const PageAnchors&) = delete;
    PageAnchors& operator=(const PageAnchors&) = delete;
    ~PageAnchors() = default;

    /// Keeps those of the page `id`, which `reader` has read.
    void put(Id id, const SitePageReader& reader);
    /// Takes those of the page `id` from `places`, which must stay, unless they are known already.
    void lend(Id id, const PagePlaces& places);
    /// Takes them from `places` in any case. No other thread may use this object meanwhile, here and below.
    void replace(Id id, const PagePlaces& places) { m_places[id] = &places; }
    /// Forgets all, what was lent and what was read.
    void clear();
    /// Whether "#fragment" leads to a place in the page `id` (HTML standard, "find a potential indicated element").
    /// Always true for a page that can't be read or holds server code. `spare` reads the page if it must be read.
    [[nodiscard]] bool has(Id id, std::string_view fragment, SitePageReader& spare);
    /// The same for the value of a usemap attribute (HTML standard, "hash-name reference").
    [[nodiscard]] bool hasMap(Id id, std::string_view usemap, SitePageReader& spare);

private:
    const PagePlaces& of(Id id, SitePageReader& spare);
    const PagePlaces& keep(Id id, PagePlaces places);

    const SiteTree* m_tree;
    std::vector<std::atomic<const PagePlaces*>> m_places; // by Id; null until read
    std::mutex m_mutex;
    std::deque<PagePlaces> m_own; // that were not lent
};

} // namespace luma
