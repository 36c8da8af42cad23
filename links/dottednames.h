// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace luma {

/// Names whose dots stand for any character but a line feed, as in a regular expression that is a file name
/// as it is. Finds those that stand at a place of a text without a look at the others: names with their dots
/// at the same places lie together, where one look-up finds them. Text is UTF-32. No two threads at once.
class DottedNames final
{
public:
    /// `number` is what find() gives for this name; several may have the same name.
    void add(std::u32string name, std::uint32_t number);

    /// Calls `found(number, end)` for every name that stands at `position`, `end` being the place behind it.
    template <class Found>
    void find(std::u32string_view text, std::size_t position, Found found) const;

private:
    using Shape = std::unordered_map<std::u32string, std::vector<std::uint32_t>>;

    std::unordered_map<std::u32string, Shape> m_shapes;
};

template <class Found>
void DottedNames::find(std::u32string_view text, std::size_t position, Found found) const
{
    std::u32string candidate;
    for (const auto& [shape, names] : m_shapes) {
        if (position > text.size() || shape.size() > text.size() - position)
            continue;
        candidate = text.substr(position, shape.size());
        bool lineFeed = false;
        for (std::size_t i = 0; i < shape.size(); ++i) {
            lineFeed = lineFeed || (shape[i] == U'.' && candidate[i] == U'\n');
            if (shape[i] == U'.')
                candidate[i] = U'.';
        }
        const auto known = lineFeed ? names.end() : names.find(candidate);
        for (std::size_t i = 0; known != names.end() && i < known->second.size(); ++i)
            found(known->second[i], position + shape.size());
    }
}

} // namespace luma
