// SPDX-License-Identifier: GPL-3.0-or-later
#include "links/namesearch.h"

#include <algorithm>
#include <bit>
#include <unordered_map>

namespace luma {

NameSearch::NameSearch(std::vector<std::string> names) : m_names(std::move(names))
{
    m_eights.add(m_names, 8);
    m_fours.add(m_names, 4);
    m_twos.add(m_names, 2);
    m_ones.add(m_names, 1);
}

void NameSearch::Group::add(const std::vector<std::string>& names, unsigned width)
{
    const auto belongs = [width](const std::string& name) {
        return name.size() >= width && (width == 8 || name.size() < std::size_t{2} * width);
    };
    std::unordered_map<Gram, std::uint32_t> counts;
    for (const std::string& name : names) {
        for (std::size_t i = 0; belongs(name) && i + width <= name.size(); ++i)
            ++counts[gramAt(name.data() + i, width)];
    }
    for (std::size_t index = 0; index < names.size(); ++index) {
        const std::string& name = names[index];
        if (!belongs(name))
            continue;
        Anchor rarest;
        std::uint32_t fewest = ~0U;
        for (std::size_t i = 0; i + width <= name.size(); ++i) {
            const Gram gram = gramAt(name.data() + i, width);
            if (counts[gram] >= fewest)
                continue;
            fewest = counts[gram];
            rarest = {gram, static_cast<std::uint32_t>(index), static_cast<std::uint32_t>(i)};
        }
        anchors.push_back(rarest);
    }
    this->index();
}

void NameSearch::Group::index()
{
    if (anchors.empty())
        return;
    std::sort(anchors.begin(), anchors.end(),
              [](const Anchor& a, const Anchor& b) { return a.gram < b.gram; });
    const std::size_t slotCount = std::bit_ceil(anchors.size() * 2);
    const std::size_t bitCount = std::max<std::size_t>(slotCount * 8, 64);
    table.assign(slotCount, 0);
    bits.assign(bitCount / 64, 0);
    tableShift = 64U - static_cast<unsigned>(std::countr_zero(slotCount));
    bitShift = 64U - static_cast<unsigned>(std::countr_zero(bitCount));
    for (std::size_t i = 0; i < anchors.size(); ++i) {
        if (i > 0 && anchors[i - 1].gram == anchors[i].gram)
            continue;
        const std::uint64_t hash = hashOf(anchors[i].gram);
        bits[(hash >> bitShift) / 64] |= std::uint64_t{1} << ((hash >> bitShift) % 64);
        std::size_t slot = hash >> tableShift;
        while (table[slot] != 0)
            slot = (slot + 1) % slotCount;
        table[slot] = static_cast<std::uint32_t>(i + 1);
    }
}

std::size_t NameSearch::Group::firstAnchor(Gram gram, std::uint64_t hash) const
{
    for (std::size_t slot = hash >> tableShift; table[slot] != 0; slot = (slot + 1) % table.size()) {
        if (anchors[table[slot] - 1].gram == gram)
            return table[slot] - 1;
    }
    return anchors.size();
}

} // namespace luma
