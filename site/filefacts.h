// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <string>

struct stat;

namespace luma {

/// What one side has at a path.
struct FileFacts
{
    enum class Type { None, File, Link, Folder };

    Type type = Type::None;
    std::int64_t size = 0;   ///< bytes
    std::int64_t time = 0;   ///< of the last modification: whole seconds since 1970
    std::string target = {}; ///< a link's, as bytes

    bool operator==(const FileFacts&) const = default;
    [[nodiscard]] bool exists() const { return type != Type::None; }
    /// Whether both are files of the same size and time.
    [[nodiscard]] bool isSameFile(const FileFacts& other) const
    {
        return type == Type::File && other.type == Type::File && size == other.size && time == other.time;
    }

    /// Without the target of a link. Anything but a file, link or folder is None.
    static FileFacts of(const struct stat& status);
};

/// A path that at least one of the two sides has.
struct FilePair
{
    std::string path; ///< bytes, relative to both folders
    FileFacts sent;
    FileFacts received;
};

} // namespace luma
