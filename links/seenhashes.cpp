// SPDX-License-Identifier: GPL-3.0-or-later
#include "links/seenhashes.h"

#include <algorithm>

namespace luma {

bool SeenHashes::insert(std::uint64_t hash)
{
    hash += hash == 0 ? 1 : 0;
    if (m_count * 2 >= m_table.size())
        grow();
    std::size_t slot = hash & (m_table.size() - 1);
    for (; m_table[slot] != 0; slot = (slot + 1) & (m_table.size() - 1)) {
        if (m_table[slot] == hash)
            return false;
    }
    m_table[slot] = hash;
    ++m_count;
    return true;
}

void SeenHashes::grow()
{
    constexpr std::size_t least = 1024;
    constexpr std::size_t mostRemembered = std::size_t{1} << 22U;
    std::vector<std::uint64_t> old;
    old.swap(m_table);
    if (m_count >= mostRemembered)
        old.clear();
    m_table.resize(std::max(old.size() * 2, least));
    m_count = 0;
    for (const std::uint64_t hash : old) {
        if (hash != 0)
            insert(hash);
    }
}

} // namespace luma
