// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/encoding.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace luma {

/// A text decoded from bytes.
struct PlacedText
{
    std::string text; // UTF-8
    /// The place in the bytes of the character that each byte of `text` belongs to, and at last the end of the bytes.
    std::vector<std::uint32_t> places;
};

/// `bytes` decoded; what is no character becomes U+FFFD, a byte-order mark is kept as U+FEFF. Any thread.
PlacedText decodedWithPlaces(std::string_view bytes, const Encoding& encoding);

} // namespace luma
