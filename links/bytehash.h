// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <cstring>
#include <string_view>

namespace luma {

/// A fast hash for tables in memory, not for storage: each step multiplies to 128 bits and folds the halves
/// (the construction known as mum).
inline std::uint64_t hashBytes(std::string_view bytes, std::uint64_t seed = 0)
{
    constexpr std::uint64_t first = 0x9E3779B97F4A7C15U;
    constexpr std::uint64_t second = 0xD6E8FEB86659FD93U;
    const auto mix = [](std::uint64_t a, std::uint64_t b) {
        __extension__ using Wide = unsigned __int128;
        const Wide product = static_cast<Wide>(a) * b;
        return static_cast<std::uint64_t>(product) ^ static_cast<std::uint64_t>(product >> 64U);
    };
    std::uint64_t hash = seed ^ (first * (bytes.size() + 1));
    const char* p = bytes.data();
    std::size_t left = bytes.size();
    for (; left >= 8; left -= 8, p += 8) {
        std::uint64_t word = 0;
        std::memcpy(&word, p, 8);
        hash = mix(hash ^ word, second);
    }
    std::uint64_t word = 0;
    for (std::size_t i = 0; i < left; ++i)
        word |= static_cast<std::uint64_t>(static_cast<unsigned char>(p[i])) << (8 * i);
    return mix(hash ^ word, first);
}

} // namespace luma
