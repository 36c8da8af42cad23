// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <unistd.h>

#include <cerrno>
#include <utility>

namespace luma {

/// Owns one file descriptor and closes it; empty (-1) when there is none.
class FileDescriptor final
{
public:
    FileDescriptor() = default;
    explicit FileDescriptor(int descriptor) : m_descriptor(descriptor) {}
    FileDescriptor(FileDescriptor&& other) noexcept : m_descriptor(std::exchange(other.m_descriptor, -1)) {}
    FileDescriptor& operator=(FileDescriptor&& other) noexcept
    {
        reset(std::exchange(other.m_descriptor, -1));
        return *this;
    }
    FileDescriptor(const FileDescriptor&) = delete;
    FileDescriptor& operator=(const FileDescriptor&) = delete;
    ~FileDescriptor() { reset(); }

    [[nodiscard]] int get() const { return m_descriptor; }
    explicit operator bool() const { return m_descriptor >= 0; }
    [[nodiscard]] int release() { return std::exchange(m_descriptor, -1); }
    /// Closes it now and returns 0, or the errno of close(2), by which a network file system reports what it
    /// could not store.
    [[nodiscard]] int close() { return ::close(release()) == 0 ? 0 : errno; }
    void reset(int descriptor = -1)
    {
        if (m_descriptor >= 0)
            ::close(m_descriptor);
        m_descriptor = descriptor;
    }

private:
    int m_descriptor = -1;
};

} // namespace luma
