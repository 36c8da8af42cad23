// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

namespace luma {

/// Finds many names in a text in one pass. It looks for the rarest few bytes of each name (its anchor) and
/// compares the name only where they occur. It never changes, so any thread may search.
class NameSearch final
{
public:
    NameSearch() = default;
    /// Empty names are never found.
    explicit NameSearch(std::vector<std::string> names);

    [[nodiscard]] const std::vector<std::string>& names() const { return m_names; }

    /// Calls found(index of the name) for every place in `text` where a name occurs, until it returns false.
    template <class Found>
    void search(std::string_view text, Found found) const;

    [[nodiscard]] bool holdsAny(std::string_view text) const
    {
        bool holds = false;
        search(text, [&](std::size_t) {
            holds = true;
            return false;
        });
        return holds;
    }

private:
    using Gram = std::uint64_t;

    struct Anchor
    {
        Gram gram = 0;
        std::uint32_t name = 0;
        std::uint32_t offset = 0; // of the gram in the name
    };

    // The names whose anchors have one width: at least that long and, but for the widest, less than twice
    // as long.
    struct Group
    {
        std::vector<Anchor> anchors;      // sorted by gram
        std::vector<std::uint32_t> table; // by hash: index of a gram's first anchor plus 1, or 0
        std::vector<std::uint64_t> bits;  // by hash: whether a gram has it
        unsigned bitShift = 64;
        unsigned tableShift = 64;

        void add(const std::vector<std::string>& names, unsigned width);
        void index();
        [[nodiscard]] bool mayHold(std::uint64_t hash) const
        {
            const std::uint64_t bit = hash >> bitShift;
            return (bits[bit / 64] >> (bit % 64) & 1U) != 0;
        }
        [[nodiscard]] std::size_t firstAnchor(Gram gram, std::uint64_t hash) const;
    };

    static constexpr std::uint64_t hashOf(Gram gram) { return gram * 0x9E3779B97F4A7C15U; }
    static Gram gramAt(const char* p, unsigned width)
    {
        Gram gram = 0;
        std::memcpy(&gram, p, width);
        return gram;
    }

    template <unsigned width, class Found>
    [[nodiscard]] bool searchGroup(const Group& group, std::string_view text, Found& found) const;
    template <class Found>
    [[nodiscard]] bool compare(const Group& group, Gram gram, std::string_view text, std::size_t position,
                               Found& found) const;

    std::vector<std::string> m_names;
    Group m_ones;
    Group m_twos;
    Group m_fours;
    Group m_eights;
};

template <class Found>
bool NameSearch::compare(const Group& group, Gram gram, std::string_view text, std::size_t position,
                         Found& found) const
{
    for (std::size_t i = group.firstAnchor(gram, hashOf(gram));
         i < group.anchors.size() && group.anchors[i].gram == gram; ++i) {
        const Anchor& anchor = group.anchors[i];
        if (anchor.offset > position)
            continue;
        const std::string& name = m_names[anchor.name];
        if (text.substr(position - anchor.offset).starts_with(name) && !found(anchor.name))
            return false;
    }
    return true;
}

template <unsigned width, class Found>
bool NameSearch::searchGroup(const Group& group, std::string_view text, Found& found) const
{
    if (group.anchors.empty() || text.size() < width)
        return true;
    for (std::size_t position = 0; position + width <= text.size(); ++position) {
        const Gram gram = gramAt(text.data() + position, width);
        if (group.mayHold(hashOf(gram)) && !compare(group, gram, text, position, found))
            return false;
    }
    return true;
}

template <class Found>
void NameSearch::search(std::string_view text, Found found) const
{
    (void)(searchGroup<8>(m_eights, text, found) && searchGroup<4>(m_fours, text, found) &&
           searchGroup<2>(m_twos, text, found) && searchGroup<1>(m_ones, text, found));
}

} // namespace luma
