// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

namespace luma {

/// The two folders of one comparison, in the direction of the transfer.
struct SyncFolders
{
    std::filesystem::path sending;
    std::filesystem::path receiving;
};

namespace syncmode {

/// Nothing stands at the receiving location.
inline constexpr std::string_view copy{"copy"};
/// What stands at the receiving location gives way to the copy.
inline constexpr std::string_view deleteFirst{"deleteFirst"};

} // namespace syncmode

/// One line of the sync table. What a comparison of two folders found names its file by `relativePath`; what
/// rsync listed has its `displayName` alone.
struct SyncRow
{
    int select = 1;                             ///< 1 = transfer this file, 0 = leave it out
    std::string displayName;                    ///< UTF-8, one line, as rsync prints names
    std::string_view mode;                      ///< syncmode::copy or deleteFirst; empty for a row of rsync's
    std::string relativePath;                   ///< the bytes of the path below both folders
    std::shared_ptr<const SyncFolders> folders; ///< shared by all rows of a comparison

    [[nodiscard]] std::filesystem::path sourceURL() const { return folders->sending / relativePath; }
    [[nodiscard]] std::filesystem::path destinationURL() const { return folders->receiving / relativePath; }
};

} // namespace luma
