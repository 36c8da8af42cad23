// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QColor>

class QPalette;

/// The colours of the parts of code, made for a light background.
namespace luma::codecolours {

inline constexpr QColor comment(0x6a, 0x73, 0x7d);
inline constexpr QColor name(0x0b, 0x5c, 0xad);
inline constexpr QColor string(0x9a, 0x3b, 0x12);
inline constexpr QColor number(0x1a, 0x7f, 0x37);
inline constexpr QColor word(0x82, 0x30, 0xa8);
inline constexpr QColor problem(0xb3, 0x1d, 0x28);

/// The colour as the palette's base needs it: on a dark one it is lightened.
QColor suited(const QColor& colour, const QPalette& palette);

} // namespace luma::codecolours
