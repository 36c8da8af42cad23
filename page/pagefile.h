// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/result.h"

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

namespace luma {

/// A page's file as the editor reads and writes it, and what it knew of it last: whether somebody else has
/// changed the file since. Any thread, one at a time; may block on a mount.
class PageFile final
{
public:
    PageFile() = default;
    explicit PageFile(std::filesystem::path path) : m_path(std::move(path)) {}

    [[nodiscard]] const std::filesystem::path& path() const { return m_path; }

    /// The whole file. Refused, with a sentence for the reader: what is no regular file or can't be read,
    /// what is too large for a page, and what holds binary data.
    Result<std::string> read();

    /// Replaces the file as writeFile does; on an error it is as it was.
    Result<void> write(std::string_view bytes);

    /// Whether the file holds something else than what was read or written last. A file that is gone has not
    /// changed, for there is nothing in it to lose.
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
    std::size_t m_contents = 0; // a hash
};

} // namespace luma
