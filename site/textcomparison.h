// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/result.h"
#include "base/stillwanted.h"

#include <string>
#include <string_view>
#include <vector>

namespace luma {

/// A line of two texts side by side. Where only one side has a line, the other's is empty.
struct ComparedLine
{
    bool isEqual = true;
    bool isOnLeft = true;
    bool isOnRight = true;
    std::string left = {}; ///< UTF-8, without its line end
    std::string right = {};
};

/// The lines of both texts, which are UTF-8, in order. Line ends, LF or CR LF, make no difference. Runs diff(1); blocks
/// until it has ended. Any thread. Error: diff failed, or is no longer wanted.
Result<std::vector<ComparedLine>> comparedLines(std::string_view left, std::string_view right,
                                                const StillWanted& stillWanted);

} // namespace luma
