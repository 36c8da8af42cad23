// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/result.h"

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

namespace luma {

/// A page's file, which notices changes by other programs since it was last read or written. Any thread, one at a time; may
/// block on a mount.
class PageFile final
{
public:
    PageFile() = default;
    explicit PageFile(std::filesystem::path path) : m_path(std::move(path)) {}

    [[nodiscard]] const std::filesystem::path& path() const { return m_path; }

    /// The whole file. The error is a sentence for the user: it is no regular file, can't be read, is too large for a page,
    /// or holds binary data.
    Result<std::string> read();

    /// Looks at the file. Its errors are left to read(); this takes as long as the file's server is silent.
    void reach() const;

    /// Replaces the file as writeFile does; on an error it stays unchanged.
    Result<void> write(std::string_view bytes);

    /// The file has another path now.
    void setPath(std::filesystem::path path) { m_path = std::move(path); }

    /// The hash (hashOfFile()) of the bytes that were last read or written.
    [[nodiscard]] const std::string& knownHash() const { return m_contents; }
    /// Takes the file as it is now for the one last read, if its bytes have this hash.
    bool adopt(const std::string& hash);

    /// Whether the file differs from what was last read or written. A deleted file counts as unchanged: saving loses
    /// nothing.
    [[nodiscard]] bool changedOnDisk() const;

private:
    struct Stamp
    {
        std::filesystem::file_time_type time;
        std::uintmax_t size = 0;
        bool operator==(const Stamp&) const = default;
    };
    [[nodiscard]] Stamp stamp() const;
    void remember(std::string_view bytes, const Stamp& stamp);

    std::filesystem::path m_path;
    Stamp m_stamp;
    std::string m_contents; // a hash
};

} // namespace luma
