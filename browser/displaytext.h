// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <string>
#include <string_view>

namespace luma {

/// A file name as the screen shows it: UTF-8 decoded, U+FFFD for what is not UTF-8, and a visible escape
/// ("\n",
/// "\x1b") for every control character and line separator, so that a name keeps to one line. For reading
/// only: the file is always found by its bytes.
QString displayText(std::string_view name);

/// The key by which names are ordered when letter case is ignored: the case-folded name. Keys compare as
/// bytes.
std::string collationKey(std::string_view name);

} // namespace luma
