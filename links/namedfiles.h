// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "links/sitetree.h"
#include "links/unlinkeditems.h"

#include <functional>
#include <string_view>
#include <vector>

namespace luma {

/// Looks in each of `texts` for the names of the files `wanted`, in one pass and on all cores. `found(file, text)` is
/// called on any thread, once for every place. Texts that can't be read, and those whose bytes `isText` refuses, hold
/// no name. Of `callbacks`, `examining` is called with each text. False when the search was stopped.
bool findNamedFiles(const SiteTree& tree, const std::vector<SiteTree::Id>& wanted,
                    const std::vector<SiteTree::Id>& texts, bool (*isText)(std::string_view bytes),
                    const std::function<void(SiteTree::Id file, SiteTree::Id text)>& found,
                    const UnlinkedItemsCallbacks& callbacks);

} // namespace luma
