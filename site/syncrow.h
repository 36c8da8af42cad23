// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "site/filefacts.h"

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

/// What a row is, and so what a transfer does with it.
enum class SyncKind {
    New,       ///< sent; the receiving side has nothing there
    Newer,     ///< sent; replaces an older file
    Different, ///< sent; replaces what differs in another way
    Delete     ///< deleted: only the receiving side has it
};

/// Why a row is listed.
enum class SyncReason {
    NotThere,
    Newer,
    OtherSize,
    OtherTarget,
    OtherType,
    FolderInPlace,
    OnlyThere,
    EmptyFolder
};

/// One sentence without a full stop, untranslated.
const char* textOf(SyncReason reason);

/// A row of the publish table: a file that differs between both sides, or an empty folder to be deleted.
struct SyncRow
{
    bool select = true; ///< ticked: transfer this file
    SyncKind kind = SyncKind::New;
    SyncReason reason = SyncReason::NotThere;
    std::string displayName = {};  ///< UTF-8, one line, as rsync prints names; marked when it is a deletion
    std::string relativePath = {}; ///< the bytes of the path below both folders
    FileFacts sent = {};
    FileFacts received = {};
    std::shared_ptr<const SyncFolders> folders = {}; ///< shared by all rows; none if rsync compared
};

/// The result of a comparison. A problem is a line for the user: the shown name of what could not be compared,
/// and the reason.
struct ComparisonReport
{
    std::vector<SyncRow> rows = {}; ///< in byte order of their paths
    std::vector<std::string> problems = {};
    std::size_t ignored = 0; ///< items of the sending side that are left alone
    std::vector<std::string> foldersOnlyThere =
        {}; ///< paths as bytes: those that only the receiving side has
};

/// The rows of what was found, all ticked. Files of the same size and time (in whole
/// seconds) are the same; else the newer one is sent, and one of the same time and another size. A file or link
/// in the place of a folder counts as missing.
ComparisonReport judged(FoundFiles found);

/// How many of the rows are ticked, and what sending them takes.
struct SyncTotals
{
    std::size_t files = 0;
    std::size_t deletions = 0;
    std::int64_t bytes = 0;
};
SyncTotals tickedTotals(const std::vector<SyncRow>& rows);

/// A page, by the file name's extension, whatever its letter case: html, htm, xhtml, xht, shtml, php or xml.
/// Pages are transferred after all other files, so that none goes live before what it shows.
bool isPage(std::string_view path);

/// The numbers of the ticked rows in the order of the transfer: the files that pages need, then the pages.
/// Deletions, which come last, are left out.
std::vector<std::size_t> transferOrder(const std::vector<SyncRow>& rows);

/// The numbers of the ticked deletions.
std::vector<std::size_t> tickedDeletions(const std::vector<SyncRow>& rows);

/// Those of `folders` that may be empty once the deletions `numbers` are done, the deepest first: deleted rows,
/// and folders above them.
std::vector<std::string> emptiedFolders(const std::vector<SyncRow>& rows,
                                        const std::vector<std::size_t>& numbers,
                                        const std::vector<std::string>& folders);

} // namespace luma
