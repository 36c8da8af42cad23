// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "site/filefacts.h"
#include "site/publishedfiles.h"
#include "site/rsyncleftovers.h"
#include "site/samefiles.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
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
    Conflict,  ///< sent; replaces what has changed, too, since the last publish
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
    EmptyFolder,
    // Since the last publish:
    DeletedThere,
    ChangedHere, ///< but not newer
    ChangedThere,
    ChangedOnBoth,
    DeletedHere,
    DeletedHereChangedThere,
    // By the publish that is to be taken back:
    Replaced,
    Deleted
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

    /// The receiving side has changed since the last publish, so the row begins unticked.
    [[nodiscard]] bool isMarked() const;
};

/// What a comparison has seen of both sides.
struct SyncCounts
{
    std::size_t sent = 0; ///< files of the sending side
    std::size_t received =
        0;                  ///< of the receiving side; without those only there, unless they were looked for
    std::size_t common = 0; ///< paths that both have
    bool receivingIsEmpty = false;
    std::optional<std::int64_t> freeBytes = {}; ///< on the receiving disk, where that is known
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
    SyncCounts counts = {};
    PublishedFiles published = {}; ///< as to be saved if none of the rows is transferred
    RsyncLeftovers leftovers = {}; ///< of a comparison with rsync
};

/// The rows of what was found, all ticked but the marked ones.
///
/// Files of the same size and time (in whole seconds) are the same, and so are those that are as they were
/// after the last publish, on both sides. Else the newer one is sent, one that has changed since the last
/// publish, and one of the same time and another size. A file or link in the place of a folder counts as
/// missing.
ComparisonReport judged(FoundFiles found, PublishedFiles before, Direction direction);

/// Whether a comparison lists an item that both sides have. `known` is what both had after the last publish, in the same
/// direction.
bool isListed(const FileFacts& sent, const FileFacts& received,
              const std::optional<PublishedFiles::Pair>& known);

/// Notes in `published` that `row` was transferred, and what the receiving side has since.
void noteTransfer(PublishedFiles& published, const SyncRow& row, const FileFacts& received,
                  Direction direction);

/// How many of the rows are ticked, and what sending them takes.
struct SyncTotals
{
    std::size_t files = 0;
    std::size_t deletions = 0;
    std::int64_t bytes = 0;
};
/// How far a transfer is.
struct SyncProgress
{
    std::size_t rows = 0;   ///< files and deletions that have been dealt with
    std::int64_t bytes = 0; ///< of these files
};
using OnProgress = std::function<void(const SyncProgress& done)>;
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
