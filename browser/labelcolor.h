// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string_view>

namespace luma {

/// The colour label of an item, kept in the extended attribute user.xdg.tags.
enum class LabelColor { None, Red, Orange, Yellow, Green, Blue, Purple, Gray };

/// The first tag of a comma-separated list that names a colour (freedesktop.org, Common Extended Attributes).
LabelColor labelColorFromTags(std::string_view tags);

} // namespace luma
