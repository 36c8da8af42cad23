// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "links/bytehash.h"
#include "links/sitetree.h"

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace luma {

/// Remembers addresses that pages of a folder have written, because most occur in many pages of it, and the files that they
/// lead to. It holds hashes of 64 bits in a small table that stays in the processor's cache: a new address takes the place of
/// an old one. One thread.
class SeenAddresses final
{
public:
    static std::uint64_t keyOf(std::string_view address, SiteTree::Id folder)
    {
        return hashBytes(address, (std::uint64_t(folder) + 1) << 32U);
    }

    [[nodiscard]] bool contains(std::uint64_t key) const { return m_keys[key % size] == key; }
    /// The file given to insert(); SiteTree::none if the address isn't known.
    [[nodiscard]] SiteTree::Id fileOf(std::uint64_t key) const
    {
        return contains(key) ? m_files[key % size] : SiteTree::none;
    }
    void insert(std::uint64_t key, SiteTree::Id file = SiteTree::none)
    {
        m_keys[key % size] = key;
        m_files[key % size] = file;
    }

private:
    static constexpr std::size_t size = 16'384;

    std::vector<std::uint64_t> m_keys = std::vector<std::uint64_t>(size);
    std::vector<SiteTree::Id> m_files = std::vector<SiteTree::Id>(size, SiteTree::none);
};

} // namespace luma
