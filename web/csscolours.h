// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QColor>
#include <QString>

#include <vector>

namespace luma {

/// A colour in the text of a style sheet, and where it stands there.
struct CssColour
{
    QColor colour;
    qsizetype at = 0;
    qsizetype length = 0;
};

/// The colours that are written out in a line of a style sheet, or in a value of that property: #rgb, rgb(), hsl() and their
/// like with commas or blanks (CSS Color 4). Names count behind a colon, or in a value that may be a colour.
std::vector<CssColour> cssColoursIn(const QString& line);
std::vector<CssColour> cssColoursIn(const QString& property, const QString& value);

/// The colour as it is written where `written` stood: as #rgb, rgb() or hsl() as before, and #rgb instead of a name.
QString cssColourText(const QColor& colour, const QString& written);

} // namespace luma
