// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/utf8.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace luma {

/// Counts the lines and characters of a text from one place to the next, which is rarely before it. The text must
/// outlive it. One thread.
class LinesAndColumns final
{
public:
    explicit LinesAndColumns(std::string_view text) : m_text(text) {}

    /// Goes to the byte `at`; line() and column() are those of that place, counted from 1.
    void goTo(std::size_t at)
    {
        if (at < m_at) {
            m_line = 1;
            m_column = 1;
            m_at = 0;
        }
        for (std::size_t feed = m_text.find('\n', m_at); feed < at; feed = m_text.find('\n', m_at)) {
            ++m_line;
            m_column = 1;
            m_at = feed + 1;
        }
        // From the last place on: a page may be one long line.
        const std::string_view between = m_text.substr(m_at, at - m_at);
        m_column += static_cast<std::uint32_t>(
            std::count_if(between.begin(), between.end(), [](char c) { return !isUtf8Continuation(c); }));
        m_at = at;
    }

    [[nodiscard]] std::uint32_t line() const { return m_line; }
    [[nodiscard]] std::uint32_t column() const { return m_column; } // in characters

private:
    std::string_view m_text;
    std::size_t m_at = 0; // the last place, and its line and column
    std::uint32_t m_line = 1;
    std::uint32_t m_column = 1;
};

} // namespace luma
