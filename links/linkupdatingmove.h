// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/result.h"
#include "base/stillwanted.h"
#include "links/linksupdate.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace luma {

enum class MoveOperation : std::uint8_t { Move, Copy };

/// Something that a move could not do. It went on with the rest.
struct MoveProblem
{
    enum class Kind : std::uint8_t {
        Clash,        // the target folder has something of that name
        NotMoved,     // the file system refused to move or copy the item
        NotRewritten, // a page's links could not be changed; the page is unchanged
        SiteUnreadable
    };
    Kind kind = Kind::NotMoved;
    std::filesystem::path path;
    std::string text; // for the user, without line feed
};

/// What a move did.
struct MoveOutcome
{
    std::vector<MovedItem> moved;
    // Pages, at their new places, in the byte order of their subpaths.
    std::vector<std::filesystem::path> rewritten;
    std::vector<MoveProblem> problems;
    bool complete = true;                     // false: stopped
    std::shared_ptr<const LinksUpdate> links; // for documents that are open; null where nothing moved
};

/// Moves, copies or renames items of a site and keeps the links right: links in pages that move keep their
/// targets, and links to the items are rewritten in every page of the site (after a copy they lead to the copy).
/// All file operations come first, then one pass over the pages, which reads each page at most once.
///
/// Run it on a background thread; it uses the other cores too. The callbacks run on that thread, in order, but
/// for stillWanted. When it is stopped, what has been done stays: there is no undo.
class LinkUpdatingMove final
{
public:
    struct Callbacks
    {
        /// Text for the log, with its line feeds.
        std::function<void(const std::string& text)> log;
        /// Called as soon as a problem occurs; MoveOutcome holds them all.
        std::function<void(const MoveProblem& problem)> problem;
        /// Runs a file operation, for example on the main thread; an operation that it drops has failed. If it
        /// is empty, operations run in place.
        std::function<void(const std::function<void()>& operation)> fileOperation;
        /// An item has been moved; called inside the file operation. May be empty.
        std::function<void(const MovedItem& item)> itemMoved;
        StillWanted stillWanted;
    };

    /// `site` is the folder whose pages are searched, as an absolute path. Items and folders inside it must
    /// begin with it, in the same spelling.
    LinkUpdatingMove(const std::filesystem::path& site, Callbacks callbacks);

    /// Moves or copies the items into `folder` and updates the links.
    MoveOutcome run(MoveOperation operation, const std::vector<std::filesystem::path>& items,
                    const std::filesystem::path& folder);

    /// Renames an item within its folder and updates the links.
    MoveOutcome rename(const std::filesystem::path& item, const std::string& newName);

    /// Updates the links to an item that was renamed already.
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
