// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <ctime>
#include <string>
#include <string_view>

namespace luma {

/// Writes fields of any bytes, each as its length, ":" and the bytes with a line feed. One thread.
class JournalWriter final
{
public:
    JournalWriter& text(std::string_view bytes)
    {
        m_text.append(std::to_string(bytes.size())).append(":").append(bytes).append("\n");
        return *this;
    }
    JournalWriter& number(std::uint64_t value) { return text(std::to_string(value)); }
    JournalWriter& time(const timespec& value)
    {
        return text(std::to_string(value.tv_sec)).text(std::to_string(value.tv_nsec));
    }

    [[nodiscard]] std::string take() { return std::move(m_text); }

private:
    std::string m_text;
};

/// Reads what JournalWriter wrote. After damage, or behind the end, every field is empty or 0. One thread.
class JournalReader final
{
public:
    explicit JournalReader(std::string_view bytes) : m_bytes(bytes) {}

    [[nodiscard]] bool isGood() const { return m_isGood; }
    /// Behind the last whole field.
    [[nodiscard]] std::size_t place() const { return m_at; }

    std::string text()
    {
        const std::size_t colon = std::min(m_bytes.find(':', m_at), m_bytes.size());
        std::size_t length = 0;
        m_isGood = m_isGood && read(m_bytes.substr(m_at, colon - m_at), length) && colon < m_bytes.size() &&
                   length < m_bytes.size() - colon - 1 && m_bytes[colon + 1 + length] == '\n';
        if (!m_isGood)
            return {};
        m_at = colon + length + 2;
        return std::string(m_bytes.substr(colon + 1, length));
    }

    std::uint64_t number() { return value<std::uint64_t>(); }
    timespec time()
    {
        timespec time = {};
        time.tv_sec = value<time_t>();
        time.tv_nsec = value<long>();
        return time;
    }

private:
    template <class Number>
    static bool read(std::string_view text, Number& number)
    {
        const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
        return error == std::errc() && end == text.data() + text.size();
    }

    template <class Number>
    Number value()
    {
        Number number = 0;
        m_isGood = read(text(), number) && m_isGood;
        return m_isGood ? number : 0;
    }

    std::string_view m_bytes;
    std::size_t m_at = 0;
    bool m_isGood = true;
};

} // namespace luma
