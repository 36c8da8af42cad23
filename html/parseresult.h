// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <variant>

namespace luma::html {

/// Why markup was refused, in a sentence about it ("it") for the reader.
struct ParseError
{
    std::string text;
};

/// What was parsed, or why it was refused. This room knows no other, hence a result type of its own; it
/// reads like the house's.
template <class T>
class [[nodiscard]] ParseResult final
{
public:
    ParseResult(T value) : m_state(std::move(value)) {}
    ParseResult(ParseError error) : m_state(std::move(error)) {}

    explicit operator bool() const { return std::holds_alternative<T>(m_state); }
    const T& operator*() const& { return std::get<T>(m_state); }
    T& operator*() & { return std::get<T>(m_state); }
    T&& operator*() && { return std::get<T>(std::move(m_state)); }
    const ParseError& error() const { return std::get<ParseError>(m_state); }

private:
    std::variant<T, ParseError> m_state;
};

/// Done, or why the markup was refused.
template <>
class [[nodiscard]] ParseResult<void> final
{
public:
    ParseResult() = default;
    ParseResult(ParseError error) : m_error(std::move(error)) {}

    explicit operator bool() const { return !m_error; }
    const ParseError& error() const { return *m_error; }

private:
    std::optional<ParseError> m_error;
};

} // namespace luma::html
