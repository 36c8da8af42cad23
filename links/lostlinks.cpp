// SPDX-License-Identifier: GPL-3.0-or-later
#include "links/lostlinks.h"

#include "base/files.h"
#include "links/linkplan.h"

namespace luma {

namespace fs = std::filesystem;

namespace {

fs::path unusedNameBeside(const fs::path& item)
{
    fs::path other = item;
    do
        other += "~";
    while (itemExists(other));
    return other;
}

} // namespace

// The links are those that a rename of the items would change.
Result<LostLinks> countLinksTo(const fs::path& site, const std::vector<fs::path>& items,
                               const WebRules& rules, const std::shared_ptr<SiteLinks>& keptLinks,
                               const StillWanted& stillWanted)
{
    MoveRequest request{site, {}, MoveOperation::Move, {}, rules};
    request.keptLinks = keptLinks;
    for (const fs::path& item : items)
        request.items.push_back({item, unusedNameBeside(item)});
    const auto plan = planMove(request, stillWanted);
    if (!plan)
        return plan.error();
    LostLinks lost;
    for (const PageRewrite& page : plan->pages) {
        if (page.page != page.oldPage)
            continue;
        ++lost.pages;
        lost.links += page.edits.size();
    }
    return lost;
}

} // namespace luma
