// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string>
#include <system_error>
#include <utility>
#include <variant>

namespace luma {

/// What went wrong, in words for the user; names of files are in it as raw bytes.
struct Error
{
    std::string text;
    /// The system's reason when a system call failed, operation_canceled when the job was stopped, else none.
    std::errc code = {};

    [[nodiscard]] bool isStopped() const { return code == std::errc::operation_canceled; }
};

/// A value, or the error that prevented it. The only way to report a failure between rooms: no exception
/// leaves a room, and [[nodiscard]] keeps a failure from being overlooked.
template <class T>
class [[nodiscard]] Result final
{
public:
    Result(T value) : m_state(std::move(value)) {}
    Result(Error error) : m_state(std::move(error)) {}

    explicit operator bool() const { return std::holds_alternative<T>(m_state); }
    const T& operator*() const& { return std::get<T>(m_state); }
    T& operator*() & { return std::get<T>(m_state); }
    T&& operator*() && { return std::get<T>(std::move(m_state)); }
    const T* operator->() const { return &std::get<T>(m_state); }
    T* operator->() { return &std::get<T>(m_state); }
    const Error& error() const { return std::get<Error>(m_state); }

private:
    std::variant<T, Error> m_state;
};

/// Success, or the error that prevented it.
template <>
class [[nodiscard]] Result<void> final
{
public:
    Result() = default;
    Result(Error error) : m_error(std::move(error)) {}

    explicit operator bool() const { return !m_error; }
    const Error& error() const { return *m_error; }

private:
    std::optional<Error> m_error;
};

} // namespace luma
