// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace luma {

/// Numbers of one to ten bytes, seven bits in each, the lowest first; all but the last byte have the high bit.
inline void appendVarint(std::string& bytes, std::uint64_t number)
{
    for (; number > 0x7F; number >>= 7U)
        bytes += static_cast<char>(number | 0x80U);
    bytes += static_cast<char>(number);
}

/// Reads fields one after another. After damage, or behind the end, every field is 0 or empty. One thread.
class FieldReader final
{
public:
    explicit FieldReader(std::string_view bytes) : m_bytes(bytes) {}

    [[nodiscard]] bool isGood() const { return m_isGood; }
    [[nodiscard]] bool isAtEnd() const { return m_at == m_bytes.size(); }

    std::uint64_t number()
    {
        std::uint64_t value = 0;
        for (unsigned shift = 0; shift < 64 && m_at < m_bytes.size(); shift += 7) {
            const auto byte = static_cast<unsigned char>(m_bytes[m_at++]);
            value |= static_cast<std::uint64_t>(byte & 0x7FU) << shift;
            if (byte <= 0x7F)
                return m_isGood ? value : 0;
        }
        m_isGood = false;
        m_at = m_bytes.size();
        return 0;
    }

    std::string_view bytes(std::uint64_t length)
    {
        if (length > m_bytes.size() - m_at) {
            m_isGood = false;
            m_at = m_bytes.size();
        }
        if (!m_isGood)
            return {};
        m_at += length;
        return m_bytes.substr(m_at - length, length);
    }

    std::string_view text() { return bytes(number()); }

private:
    std::string_view m_bytes;
    std::size_t m_at = 0;
    bool m_isGood = true;
};

} // namespace luma
