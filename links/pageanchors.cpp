// SPDX-License-Identifier: GPL-3.0-or-later
#include "links/pageanchors.h"

#include "base/ascii.h"
#include "links/bytehash.h"
#include "links/percentencoding.h"

#include <algorithm>

namespace luma {

namespace {

// SVG 2, "SVG fragment identifiers": views and parts of a picture need no element.
bool isPictureView(std::string_view file, std::string_view fragment)
{
    const auto begins = [fragment](std::string_view text) { return fragment.starts_with(text); };
    return equalIgnoringAsciiCase(file.substr(std::min(file.rfind('.'), file.size())), ".svg") &&
           (begins("svgView(") || begins("xywh=") || begins("t="));
}

} // namespace

PagePlaces PagePlaces::of(const SitePageReader& reader)
{
    PagePlaces places{reader.holdsServerCode(), {}};
    places.hashes.reserve(reader.page().anchors().size());
    for (const std::string_view anchor : reader.page().anchors())
        places.hashes.push_back(hashBytes(anchor));
    std::sort(places.hashes.begin(), places.hashes.end());
    return places;
}

PageAnchors::PageAnchors(const SiteTree& tree) : m_tree(&tree), m_places(tree.size()) {}

void PageAnchors::put(Id id, const SitePageReader& reader)
{
    if (m_places[id].load(std::memory_order_acquire) == nullptr)
        keep(id, PagePlaces::of(reader));
}

void PageAnchors::lend(Id id, const PagePlaces& places)
{
    const PagePlaces* expected = nullptr;
    m_places[id].compare_exchange_strong(expected, &places, std::memory_order_acq_rel);
}

void PageAnchors::clear()
{
    for (auto& places : m_places)
        places.store(nullptr, std::memory_order_relaxed);
    m_own.clear();
}

const PagePlaces& PageAnchors::keep(Id id, PagePlaces places)
{
    const std::scoped_lock lock(m_mutex);
    if (const PagePlaces* const known = m_places[id].load(std::memory_order_acquire))
        return *known;
    const PagePlaces& own = m_own.emplace_back(std::move(places));
    lend(id, own);
    return *m_places[id].load(std::memory_order_acquire);
}

const PagePlaces& PageAnchors::of(Id id, SitePageReader& spare)
{
    if (const PagePlaces* const known = m_places[id].load(std::memory_order_acquire))
        return *known;
    return keep(id, spare.read(m_tree->path(id)) ? PagePlaces::of(spare) : PagePlaces{true, {}});
}

bool PageAnchors::has(Id id, std::string_view fragment, SitePageReader& spare)
{
    if (fragment.empty() || equalIgnoringAsciiCase(fragment, "top"))
        return true;
    const PagePlaces& anchors = of(id, spare);
    const auto holds = [&anchors](std::string_view name) {
        return std::binary_search(anchors.hashes.begin(), anchors.hashes.end(), hashBytes(name));
    };
    if (anchors.anyMayBeThere || holds(fragment) || isPictureView(m_tree->name(id), fragment))
        return true;
    // The fragment directive, such as ":~:text=word", is no part of the fragment.
    fragment = fragment.substr(0, fragment.find(":~:"));
    return fragment.empty() || equalIgnoringAsciiCase(fragment, "top") || holds(fragment) ||
           (fragment.find('%') != std::string_view::npos && holds(percentDecoded(fragment)));
}

bool PageAnchors::hasMap(Id id, std::string_view usemap, SitePageReader& spare)
{
    const PagePlaces& anchors = of(id, spare);
    const std::size_t hash = usemap.find('#');
    const std::string_view name =
        hash == std::string_view::npos ? std::string_view() : usemap.substr(hash + 1);
    const auto holds = [&anchors](std::string_view anchor) {
        return std::binary_search(anchors.hashes.begin(), anchors.hashes.end(), hashBytes(anchor));
    };
    return anchors.anyMayBeThere || (!name.empty() && (holds('\1' + std::string(name)) || holds(name)));
}

} // namespace luma
