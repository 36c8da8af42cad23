// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "page/markupdifference.h"

namespace luma {

/// What a difference is as a step of typing. Blank, no-break space and the line break that keeps an empty
/// line open count as what the user sees of them.
enum class TypedText {
    None,       ///< something else than text changes
    AddsToWord, ///< letters are added that no word begins with
    BeginsWord, ///< a word begins in what is added, or other text gives way to it
    Removes,
};

/// Looks at the difference before it is applied.
TypedText typedText(const MarkupDifference& difference);

} // namespace luma
