// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace luma {

/// The addresses of a site's pages as texts, each once, with a number. Texts are never removed. One thread at a time; looking
/// up a text by its number is safe on any thread while none is added.
class AddressTexts final
{
public:
    using Number = std::uint32_t;

    /// The number of `text`, which is added if it is new.
    Number add(std::string_view text);
    [[nodiscard]] std::string_view text(Number number) const
    {
        return std::string_view(m_bytes).substr(m_begins[number], m_begins[number + 1] - m_begins[number]);
    }
    /// Numbers are below it.
    [[nodiscard]] std::size_t size() const { return m_begins.size() - 1; }

private:
    void grow();

    std::string m_bytes;
    std::vector<std::size_t> m_begins = {0};  // by number, and one more
    std::vector<std::uint32_t> m_table;       // open addressing by hash: a number and 1, or 0
    std::vector<std::uint32_t> m_hashes = {}; // by number
};

} // namespace luma
