// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "links/siteaddresses.h"

#include <optional>
#include <string>
#include <string_view>

namespace luma {

/// Where a link has to lead after a move.
struct NewPlace
{
    std::string path;          // as LinkTarget::path
    bool isFolderForm = false; // as LinkTarget::isFolderForm
};

/// Spells the address `value` of `oldPage` so that it leads to `place` on `newPage`, in the form that it has: relative,
/// from the root, or with one of the site's own web addresses. Query, fragment, a "./" in front and the spelling of every
/// name that stays are kept; new names are percent-encoded so that they need no escapes in HTML and CSS. Gives `value`
/// itself where it leads there already, and nothing where no spelling does. `value` is as SiteAddresses::resolve() takes it
/// and must lead inside the site. Any thread.
std::optional<std::string> respelledAddress(const SiteAddresses& addresses, std::string_view value,
                                            const SiteAddresses::Page& oldPage,
                                            const SiteAddresses::Page& newPage, const NewPlace& place);

/// The same for a relative address that leads out of the site: it keeps its distance to the site's folder. Gives `value`
/// itself where it is not relative, or the page has a base.
std::string respelledOutside(const SiteAddresses& addresses, std::string_view value,
                             const SiteAddresses::Page& oldPage, const SiteAddresses::Page& newPage);

/// The name of a file as an address has it: percent-encoded so that it needs no escapes in HTML and CSS.
std::string encodedName(std::string_view name);

} // namespace luma
