// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <string_view>

namespace luma {

/// How deep the elements of a page are nested: never less than a tree builder would nest them, and exact for
/// pages that close what they open (end tags that HTML lets out may be left out). Counting stops at `limit` +
/// 1, so a hostile page costs no more than any other. For who builds trees in a time or stack that grows with
/// the depth. `source` is any bytes.
std::size_t nestingDepth(std::string_view source, std::size_t limit);

} // namespace luma
