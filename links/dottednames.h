// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace luma {

/// Names in which a dot matches any character but a line feed, as in a file name used as a regular
/// expression. All names that match at one place of a text are found at once: names with their dots at the
/// same places lie in one table, where a single look-up finds them. Text is UTF-32. Any thread may search
/// once all names are in.
class DottedNames final
{
public:
    /// `number` is what find() passes on for this name. Several names may be equal.
    void add(std::u32string name, std::uint32_t number)
    {
        std::u32string shape = name;
        std::replace_if(
            shape.begin(), shape.end(), [](char32_t c) { return c != U'.'; }, U'x');
        m_shapes[shape][std::move(name)].push_back(number);
    }

    /// Calls `found(number, end)` for every name that matches at `position`; `end` is the place after it.
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
