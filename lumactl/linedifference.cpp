// SPDX-License-Identifier: GPL-3.0-or-later
#include "lumactl/linedifference.h"

#include <algorithm>
#include <cstdint>
#include <span>
#include <vector>

namespace luma {

namespace {

using Lines = std::span<const std::string_view>;

std::vector<std::string_view> linesOf(std::string_view text)
{
    std::vector<std::string_view> lines;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size() - 1) + 1;
        lines.push_back(text.substr(0, end));
        text.remove_prefix(end);
    }
    return lines;
}

void append(std::string& result, char sign, Lines lines)
{
    for (const std::string_view line : lines) {
        result.append(1, sign).append(line);
        if (!line.ends_with('\n'))
            result += "\n\\ No newline at end of file\n";
    }
}

std::string rangeText(std::size_t begin, std::size_t count)
{
    return std::to_string(count == 0 ? begin : begin + 1) + "," + std::to_string(count);
}

/// Writes the hunks of the lines behind `offset` lines that are equal on both sides.
class Hunks final
{
public:
    Hunks(Lines before, Lines after, std::size_t offset) : m_before(before), m_after(after), m_offset(offset)
    {}

    std::string text()
    {
        // More would take too much memory, and is one large hunk.
        constexpr std::size_t most = std::size_t{1} << 24U;
        if (m_before.size() * m_after.size() > most) {
            hunk(0, m_before.size(), 0, m_after.size());
            return std::move(m_text);
        }
        countCommonLines();
        std::size_t i = 0;
        std::size_t k = 0;
        std::size_t begin = 0;
        std::size_t other = 0;
        while (i < m_before.size() && k < m_after.size()) {
            if (m_before[i] == m_after[k]) {
                hunk(begin, i, other, k);
                begin = ++i;
                other = ++k;
            } else if (common(i + 1, k) >= common(i, k + 1)) {
                ++i;
            } else {
                ++k;
            }
        }
        hunk(begin, m_before.size(), other, m_after.size());
        return std::move(m_text);
    }

private:
    // The longest common subsequence, from the end.
    void countCommonLines()
    {
        m_common.assign((m_before.size() + 1) * (m_after.size() + 1), 0);
        for (std::size_t i = m_before.size(); i-- > 0;) {
            for (std::size_t k = m_after.size(); k-- > 0;)
                common(i, k) = m_before[i] == m_after[k] ? common(i + 1, k + 1) + 1
                                                         : std::max(common(i + 1, k), common(i, k + 1));
        }
    }

    std::uint32_t& common(std::size_t i, std::size_t k) { return m_common[i * (m_after.size() + 1) + k]; }

    void hunk(std::size_t begin, std::size_t end, std::size_t other, std::size_t otherEnd)
    {
        if (begin == end && other == otherEnd)
            return;
        m_text += "@@ -" + rangeText(m_offset + begin, end - begin) + " +" +
                  rangeText(m_offset + other, otherEnd - other) + " @@\n";
        append(m_text, '-', m_before.subspan(begin, end - begin));
        append(m_text, '+', m_after.subspan(other, otherEnd - other));
    }

    Lines m_before;
    Lines m_after;
    std::size_t m_offset;
    std::vector<std::uint32_t> m_common;
    std::string m_text;
};

} // namespace

std::string lineDifference(std::string_view name, std::string_view before, std::string_view after)
{
    if (before == after)
        return {};
    const std::vector<std::string_view> lines = linesOf(before);
    const std::vector<std::string_view> others = linesOf(after);
    const auto first = std::mismatch(lines.begin(), lines.end(), others.begin(), others.end());
    const auto offset = static_cast<std::size_t>(first.first - lines.begin());
    Lines mine = Lines(lines).subspan(offset);
    Lines theirs = Lines(others).subspan(offset);
    while (!mine.empty() && !theirs.empty() && mine.back() == theirs.back()) {
        mine = mine.first(mine.size() - 1);
        theirs = theirs.first(theirs.size() - 1);
    }
    std::string result = "--- ";
    result.append(name).append("\n+++ ").append(name).append("\n");
    return result + Hunks(mine, theirs, offset).text();
}

} // namespace luma
