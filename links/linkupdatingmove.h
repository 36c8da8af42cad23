// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/result.h"
#include "base/stillwanted.h"
#include "links/linkmapping.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace luma {

enum class MoveOperation : std::uint8_t { Move, Copy };

/// Something that a move could not do; it went on with the rest.
struct MoveProblem
{
    enum class Kind : std::uint8_t {
        Clash,        // something of that name stands in the target folder
        NotMoved,     // the file system refused to move or copy the item
        NotRewritten, // a page's links should have changed; it stays as it was
        SiteUnreadable
    };
    Kind kind = Kind::NotMoved;
    std::filesystem::path path;
    std::string text; // for the reader, without line feed
};

/// What came of it.
struct MoveOutcome
{
    std::vector<MovedItem> moved;
    std::vector<std::filesystem::path>
        rewritten; // pages, in the byte order of their subpaths, where they are now
    std::vector<MoveProblem> problems;
    bool complete = true; // false: it was no longer wanted
};

/// Moves, copies or renames items of a site and keeps the links right: pages that moved go on meaning the
/// same files, links to what moved are rewritten in every page of the site. After a copy links lead to the
/// copy. All file operations come first, then one pass over the pages, each of which is read once at most.
///
/// Run it on a background thread; it uses the other cores too. The callables are called on the thread that
/// runs it, in order, but for stillWanted. There is no way back: what was done when it is stopped stays.
class LinkUpdatingMove final
{
public:
    struct Callbacks
    {
        /// Text for the log, with its line feeds.
        std::function<void(const std::string& text)> log;
        /// At once when a problem is met; MoveOutcome holds them all.
        std::function<void(const MoveProblem& problem)> problem;
        /// Runs a file operation, on the main thread for instance; without it it is just called. An operation
        /// that it does not run counts as failed.
        std::function<void(const std::function<void()>& operation)> fileOperation;
        StillWanted stillWanted;
    };

    /// `site` is the folder whose pages are looked through, as an absolute path; items and folders are
    /// spelled with the same beginning where they are inside of it.
    LinkUpdatingMove(const std::filesystem::path& site, Callbacks callbacks);

    /// Moves or copies the items into `folder` and updates the links.
    MoveOutcome run(MoveOperation operation, const std::vector<std::filesystem::path>& items,
                    const std::filesystem::path& folder);

    /// Renames an item within its folder and updates the links.
    MoveOutcome rename(const std::filesystem::path& item, const std::string& newName);

    /// Updates the links to an item that has been renamed already.
    MoveOutcome updateAfterRename(const std::filesystem::path& oldPath, const std::filesystem::path& newPath);

private:
    enum class MovedPages : std::uint8_t { Rebased, Kept };

    bool moveItemTo(MoveOutcome& outcome, MoveOperation operation, const std::filesystem::path& item,
                    const std::filesystem::path& target);
    void updateLinks(MoveOutcome& outcome, MovedPages movedPages);
    void report(MoveOutcome& outcome, MoveProblem problem) const;
    void log(const std::string& text) const;

    std::filesystem::path m_site;
    Callbacks m_callbacks;
};

} // namespace luma
