// SPDX-License-Identifier: GPL-3.0-or-later
#include "links/pageanchors.h"

#include "base/ascii.h"
#include "links/bytehash.h"
#include "links/percentencoding.h"

#include <algorithm>

namespace luma {

PageAnchors::PageAnchors(const SiteTree& tree) : m_tree(&tree), m_anchors(tree.size()) {}

PageAnchors::~PageAnchors()
{
    for (const auto& anchors : m_anchors)
        delete anchors.load();
}

void PageAnchors::put(Id id, const SitePageReader& reader)
{
    if (m_anchors[id].load(std::memory_order_acquire) != nullptr)
        return;
    auto anchors = std::make_unique<Anchors>();
    anchors->anyMayBeThere = reader.holdsServerCode();
    anchors->hashes.reserve(reader.page().anchors().size());
    for (const std::string_view anchor : reader.page().anchors())
        anchors->hashes.push_back(hashBytes(anchor));
    std::sort(anchors->hashes.begin(), anchors->hashes.end());
    keep(id, std::move(anchors));
}

const PageAnchors::Anchors& PageAnchors::keep(Id id, std::unique_ptr<const Anchors> anchors)
{
    const Anchors* expected = nullptr;
    if (m_anchors[id].compare_exchange_strong(expected, anchors.get(), std::memory_order_acq_rel))
        return *anchors.release();
    return *expected;
}

const PageAnchors::Anchors& PageAnchors::of(Id id, SitePageReader& spare)
{
    if (const Anchors* const known = m_anchors[id].load(std::memory_order_acquire))
        return *known;
    if (spare.read(m_tree->path(id))) {
        put(id, spare);
        return *m_anchors[id].load(std::memory_order_acquire);
    }
    auto unread = std::make_unique<Anchors>();
    unread->anyMayBeThere = true;
    return keep(id, std::move(unread));
}

bool PageAnchors::has(Id id, std::string_view fragment, SitePageReader& spare)
{
    // The fragment directive, such as ":~:text=word", is no part of the fragment.
    fragment = fragment.substr(0, fragment.find(":~:"));
    if (fragment.empty() || equalIgnoringAsciiCase(fragment, "top"))
        return true;
    const Anchors& anchors = of(id, spare);
    const auto holds = [&anchors](std::string_view name) {
        return std::binary_search(anchors.hashes.begin(), anchors.hashes.end(), hashBytes(name));
    };
    return anchors.anyMayBeThere || holds(fragment) ||
           (fragment.find('%') != std::string_view::npos && holds(percentDecoded(fragment)));
}

bool PageAnchors::hasMap(Id id, std::string_view usemap, SitePageReader& spare)
{
    const Anchors& anchors = of(id, spare);
    const std::size_t hash = usemap.find('#');
    const std::string_view name =
        hash == std::string_view::npos ? std::string_view() : usemap.substr(hash + 1);
    const auto holds = [&anchors](std::string_view anchor) {
        return std::binary_search(anchors.hashes.begin(), anchors.hashes.end(), hashBytes(anchor));
    };
    return anchors.anyMayBeThere || (!name.empty() && (holds('\1' + std::string(name)) || holds(name)));
}

} // namespace luma
