// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>

namespace luma {

/// A file name or path as rsync prints it in a UTF-8 locale: one line of UTF-8. Control characters but the
/// tab, bytes that are not UTF-8, and a backslash that "#" and three digits follow are written "\#ooo", three
/// octal digits (rsync(1), "--8-bit-output").
std::string shownName(std::string_view bytes);

/// The bytes behind a shown name, in whatever locale rsync wrote it: every "\#ooo" becomes its byte.
std::string bytesOfShownName(std::string_view shown);

} // namespace luma
