// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>
#include <memory>
#include <string>

namespace luma {

/// The two folders of a comparison, in the direction of the transfer.
struct SyncFolders
{
    std::filesystem::path sending;
    std::filesystem::path receiving;
};

/// What a transfer does with a row.
enum class SyncMode {
    Rsync,      ///< rsync does it; the row is a line of its listing
    Copy,       ///< copies the file; nothing exists in its place
    DeleteFirst ///< replaces what exists in its place
};

/// A row of the publish table: a file that a comparison found, or a line that rsync listed.
struct SyncRow
{
    bool select = true;           ///< ticked: transfer this file
    std::string displayName = {}; ///< UTF-8, one line, as rsync prints names
    SyncMode mode = SyncMode::Rsync;
    std::string relativePath = {}; ///< the bytes of the path below both folders; empty in rsync's rows
    std::shared_ptr<const SyncFolders> folders =
        {}; ///< shared by the rows of a comparison; none in rsync's rows
};

} // namespace luma
