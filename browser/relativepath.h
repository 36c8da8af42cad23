// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>
#include <string>

namespace luma {

/// The path of `item` below `folder` (bytes), without a leading slash; empty for the folder itself or an item
/// that does not lie below it. Nothing is resolved.
std::string pathBelow(const std::filesystem::path& folder, const std::filesystem::path& item);

} // namespace luma
