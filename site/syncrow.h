// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace luma {

/// The two folders of a comparison, in the direction of the transfer.
struct SyncFolders
{
    std::filesystem::path sending;
    std::filesystem::path receiving;
};

/// What a transfer does with a row.
enum class SyncMode {
    Rsync,       ///< rsync sends it
    RsyncDelete, ///< rsync deletes it from the receiving side
    Copy,        ///< copies the file; nothing exists in its place
    DeleteFirst  ///< replaces what exists in its place
};

/// A row of the publish table: a file that a comparison found.
struct SyncRow
{
    bool select = true;           ///< ticked: transfer this file
    std::string displayName = {}; ///< UTF-8, one line, as rsync prints names
    SyncMode mode = SyncMode::Rsync;
    std::string relativePath = {}; ///< the bytes of the path below both folders
    std::shared_ptr<const SyncFolders> folders =
        {}; ///< shared by the rows of a comparison; none in rsync's rows
};

/// The result of a comparison. A problem is a line for the user: the shown name of what could not be compared,
/// and the reason.
struct ComparisonReport
{
    std::vector<SyncRow> rows = {};
    std::vector<std::string> problems = {};
    std::size_t ignored = 0; ///< files and folders of the sending side that are left alone
    std::vector<std::string> deletedFolders = {}; ///< paths as bytes: those that only the receiving side has
};

/// A page, by the file name's extension, whatever its letter case: html, htm, xhtml, xht, shtml, php or xml.
/// Pages are transferred after all other files, so that none goes live before what it shows.
bool isPage(std::string_view path);

/// The numbers of the ticked rows in the order of the transfer: the files that pages need, then the pages.
/// Deletions, which come last, are left out.
std::vector<std::size_t> transferOrder(const std::vector<SyncRow>& rows);

} // namespace luma
