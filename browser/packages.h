// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string_view>

namespace luma {

/// True when a folder of this name is shown as one item: its extension is that of a bundle.
bool isPackageName(std::string_view name);

} // namespace luma
