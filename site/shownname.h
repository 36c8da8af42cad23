// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>

namespace luma {

/// A file name or path as rsync prints it in a UTF-8 locale: one line of UTF-8. Control characters other than
/// tab, bytes that are not UTF-8, and a backslash followed by "#" and three digits are written as "\#" and
/// three octal digits (rsync(1), "--8-bit-output").
std::string shownName(std::string_view bytes);

/// The bytes of a shown name, printed in any locale: every "\#ooo" becomes its byte.
std::string bytesOfShownName(std::string_view shown);

} // namespace luma
