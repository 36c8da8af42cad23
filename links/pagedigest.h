// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "links/packedlinks.h"
#include "links/pageanchors.h"

#include <cstdint>
#include <string>
#include <vector>

namespace luma {

/// What a page or style sheet says, whatever else is in its site: its addresses, and the places that fragments lead to.
struct PageDigest
{
    std::string base; // the address of its base element, decoded; empty without one
    PackedLinks links;
    PagePlaces places;
    std::vector<std::uint64_t> mentioned; // as mentionedNames() gives them
};

} // namespace luma
