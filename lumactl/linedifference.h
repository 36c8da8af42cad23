// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>

namespace luma {

/// The lines in which two versions of a file differ, as a unified difference without context. Empty for equal ones. Bytes
/// of any encoding that holds ASCII.
std::string lineDifference(std::string_view name, std::string_view before, std::string_view after);

} // namespace luma
