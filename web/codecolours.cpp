// SPDX-License-Identifier: GPL-3.0-or-later
#include "web/codecolours.h"

#include <QPalette>

namespace luma::codecolours {

QColor suited(const QColor& colour, const QPalette& palette)
{
    const bool dark = palette.color(QPalette::Base).lightness() < 128;
    return dark ? QColor::fromHsl(colour.hslHue(), colour.hslSaturation(), 255 - colour.lightness() / 2 - 20)
                : colour;
}

} // namespace luma::codecolours
