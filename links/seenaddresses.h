// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "links/bytehash.h"
#include "links/sitetree.h"

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace luma {

/// Remembers addresses that pages of a folder have written, because most occur in many pages of it. It holds hashes of 64 bits
/// in a small table that stays in the processor's cache: a new address takes the place of an old one. One thread.
class SeenAddresses final
{
public:
    static std::uint64_t keyOf(std::string_view address, SiteTree::Id folder)
    {
        return hashBytes(address, (std::uint64_t(folder) + 1) << 32U);
    }

    [[nodiscard]] bool contains(std::uint64_t key) const { return m_table[key % size] == key; }
    void insert(std::uint64_t key) { m_table[key % size] = key; }

private:
    static constexpr std::size_t size = 16'384;

    std::vector<std::uint64_t> m_table = std::vector<std::uint64_t>(size);
};

} // namespace luma
