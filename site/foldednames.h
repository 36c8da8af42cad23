// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace luma {

/// Names without regard to letter case, side by side in one stretch of memory, so that a search among 100,000 of them
/// takes a millisecond. A value.
class FoldedNames final
{
public:
    FoldedNames() = default;
    /// Makes room for about so many.
    explicit FoldedNames(std::size_t count);

    /// Adds the next name: UTF-8, on one line.
    void add(std::string_view name);
    [[nodiscard]] std::size_t size() const { return m_ends.size(); }

    /// For each name whether `text` is in it.
    [[nodiscard]] std::vector<bool> holding(const QString& text) const;

private:
    std::string m_all; // each ends with a line feed
    std::vector<std::uint32_t> m_ends;
};

} // namespace luma
