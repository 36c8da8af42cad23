// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "links/bytehash.h"
#include "links/sitepagereader.h"

#include <cstdint>
#include <string_view>
#include <vector>

namespace luma {

/// A file's name as mentionedNames() tells it.
inline std::uint64_t mentionedName(std::string_view name)
{
    return hashBytes(name);
}

/// The names of files that the page which `reader` has read mentions beside its links: in scripts, event handlers, data
/// attributes, frames' sources and server code. Names with the usual extensions of web files, but not `ownName`; ascending,
/// each once. Any thread.
std::vector<std::uint64_t> mentionedNames(const SitePageReader& reader, std::string_view ownName);

} // namespace luma
