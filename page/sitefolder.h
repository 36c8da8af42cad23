// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/filedescriptor.h"
#include "base/result.h"

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace luma {

/// The files that one page in the editor may read: those of its site's folder, or, for a page that stands
/// outside it or has none, those of its own folder. Nothing else, whatever the page asks for.
///
/// In the editor a file has the address path "/:" and its whole path on disk, percent-encoded (RFC 3986), so
/// that a relative link resolves as it does on disk, also one that climbs above the folder. A path without
/// the mark comes of a link such as "/css/main.css" and counts from the site's folder, as on a server.
/// A plain value, safe on any thread. Paths are bytes.
class SiteFolder final
{
public:
    SiteFolder() = default;
    /// `site` may be empty. Both are made absolute.
    SiteFolder(const std::filesystem::path& page, const std::filesystem::path& site);

    [[nodiscard]] const std::filesystem::path& page() const { return m_page; }
    [[nodiscard]] const std::filesystem::path& folder() const { return m_folder; }

    /// The encoded address path of a file.
    static std::string addressPath(const std::filesystem::path& file);

    /// The file that an encoded address path means; nothing when a name in it is none (".", "..", an encoded
    /// slash, a NUL).
    [[nodiscard]] std::optional<std::filesystem::path> fileAt(std::string_view addressPath) const;

    /// The file that a link of the page (as written, UTF-8) leads to, whether or not it is there; nothing for
    /// an address elsewhere, for a fragment of the page, and for what is no address.
    [[nodiscard]] std::optional<std::filesystem::path> fileOfLink(std::string_view link) const;

    /// Opens a regular file of the folder for reading. What lies outside is refused, be it through "..", a
    /// symbolic link or a race with one; so is anything that is not a regular file. May block on a mount.
    [[nodiscard]] Result<FileDescriptor> open(const std::filesystem::path& file) const;

    /// The real path of an existing file of the folder, or of the folder itself; nothing when it is gone or
    /// lies outside.
    [[nodiscard]] std::optional<std::filesystem::path> realPath(const std::filesystem::path& file) const;

private:
    std::filesystem::path m_page;
    std::filesystem::path m_folder;
};

/// The content type that a file is answered with, by its name alone: "text/css".
std::string contentTypeOf(const std::filesystem::path& file);

} // namespace luma
