// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

/// Where the two dividers of the page editor's window may stand, as plain arithmetic in pixels.
namespace luma::pagesplit {

inline constexpr int narrowestSide = 179;
inline constexpr int sideRange = 110;
inline constexpr int widestSide = narrowestSide + sideRange;

/// The least and the greatest position of a divider, counted from the left edge.
struct Limits
{
    int least = 0;
    int greatest = 0;
    bool operator==(const Limits&) const = default;
};

constexpr Limits firstDivider()
{
    return {narrowestSide, widestSide};
}

constexpr Limits secondDivider(int width, int dividerThickness)
{
    const int greatest = width - narrowestSide - dividerThickness;
    return {greatest - sideRange, greatest};
}

} // namespace luma::pagesplit
