// SPDX-License-Identifier: GPL-3.0-or-later
#include "links/addresstexts.h"

#include "links/bytehash.h"

namespace luma {

AddressTexts::Number AddressTexts::add(std::string_view wanted)
{
    if (size() * 2 >= m_table.size())
        grow();
    const auto hash = static_cast<std::uint32_t>(hashBytes(wanted));
    const std::size_t mask = m_table.size() - 1;
    std::size_t slot = hash & mask;
    for (; m_table[slot] != 0; slot = (slot + 1) & mask) {
        const Number number = m_table[slot] - 1;
        if (m_hashes[number] == hash && text(number) == wanted)
            return number;
    }
    m_bytes += wanted;
    m_begins.push_back(m_bytes.size());
    m_hashes.push_back(hash);
    m_table[slot] = static_cast<std::uint32_t>(size());
    return m_table[slot] - 1;
}

void AddressTexts::grow()
{
    constexpr std::size_t leastSize = 1024;
    m_table.assign(m_table.empty() ? leastSize : m_table.size() * 2, 0);
    const std::size_t mask = m_table.size() - 1;
    for (Number number = 0; number < size(); ++number) {
        std::size_t slot = m_hashes[number] & mask;
        while (m_table[slot] != 0)
            slot = (slot + 1) & mask;
        m_table[slot] = number + 1;
    }
}

} // namespace luma
