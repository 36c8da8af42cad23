// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <string>
#include <string_view>

namespace luma {

/// A file name for display: decoded from UTF-8, with U+FFFD for invalid bytes and a visible escape ("\n",
/// "\x1b") for every control character and line separator, so that it stays on one line. Not for finding
/// the file again.
QString displayText(std::string_view name);

/// The key for ordering names regardless of letter case: the case-folded name. Compare keys as bytes.
std::string collationKey(std::string_view name);

} // namespace luma
