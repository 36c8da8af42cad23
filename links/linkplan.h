// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/result.h"
#include "base/stillwanted.h"
#include "links/linksupdate.h"
#include "links/linkupdatingmove.h"
#include "links/lostlinks.h"
#include "links/webrules.h"

#include <cstddef>
#include <cstdint>
#include <ctime>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace luma {

class MovedLinks;
class SiteLinks;

/// Items that are to be moved, renamed or copied.
struct MoveRequest
{
    /// The folder whose pages are searched, and in which the items' new places count.
    std::filesystem::path site;
    /// The folder in which their old places count, if it is another: a place in the one stands for that in the other.
    std::filesystem::path sourceRoot;
    MoveOperation operation = MoveOperation::Move;
    std::vector<MovedItem> items;
    WebRules rules;
    /// The items have their new places already. Carrying out the plan changes the pages, and taking it back gives the items
    /// their old places.
    bool isRenamedAlready = false;
    /// Another program has moved them, with isRenamedAlready. Only links change; taking that back leaves the items alone.
    bool isMovedOutside = false;
    /// The items stay where they are: links that lead to exactly `from`, where nothing need be, are to lead to `to`.
    bool changesLinksOnly = false;
    /// What is kept of the site's links, so that only pages with a link to what moves are read; without it every page is.
    std::shared_ptr<SiteLinks> keptLinks = {};

    /// Whether the job doesn't touch the items.
    [[nodiscard]] bool itemsStay() const { return changesLinksOnly || isMovedOutside; }
};

/// A change to a page or style sheet.
struct LinkEdit
{
    std::size_t begin = 0; // of `before` in the file
    std::string before;    // bytes of the file
    std::string after;
    std::uint32_t line = 1;
    std::string oldLink; // as a browser takes it from the page
    std::string newLink;
};

/// The changes to one page or style sheet, in the order of their places.
struct PageRewrite
{
    std::filesystem::path page;    // where it is when the items have their new places
    std::filesystem::path oldPage; // where it is now
    std::vector<LinkEdit> edits;
    std::string oldHash; // of the file's bytes (hashOfFile())
    std::string newHash;
    timespec modified = {}; // when the file was written last
    /// An earlier page of the plan that is the same file under another name (a hard link), and stays so.
    std::optional<std::size_t> twin = {};
};

/// A symbolic link that gets another target.
struct SymlinkChange
{
    std::filesystem::path link;    // where it is when the items have their new places
    std::filesystem::path oldLink; // where it is now
    std::string before;            // what it says
    std::string after;
};

/// Something that the user should know of a plan, though it can be carried out.
struct PlanNote
{
    std::filesystem::path page; // where it is now
    std::string text;
};

/// What a plan is that changes text and moves nothing.
struct TextChange
{
    std::string title;            // for the user: Replace "a" by "b"
    std::string action;           // in a word: Replace
    std::string anyway;           // the same though files stay as they are: Replace Anyway
    std::size_t places = 0;       // how many of them change
    LinksUpdate::Updated updated; // for files that are open with unsaved edits
};

/// What a move, rename or copy will do, as a value: nothing has been touched. Pages are in the byte order of their old
/// subpaths.
struct LinkPlan
{
    MoveRequest request; // without the items that can't be moved
    std::vector<PageRewrite> pages;
    std::vector<SymlinkChange> symlinks;
    std::vector<MoveProblem> problems;
    std::vector<PlanNote> notes;
    LostLinks lost; // to items that leave their site, on pages that stay; a note says so, too
    std::shared_ptr<const MovedLinks> links; // by which the pages were planned
    std::optional<TextChange> text;          // without it, links change

    /// Pages, symbolic links and folders of pages whose links break or may break if the plan is carried out, or whose text
    /// stays, because they can't be written or read. The user is asked before that.
    [[nodiscard]] std::vector<std::filesystem::path> stayingPages() const;
    [[nodiscard]] std::size_t linkCount() const;
};

/// Plans a move as a browser reads links: links to what moves follow it, and links of pages that move keep their targets. A
/// copy's links to other copies lead to those; links to the originals stay. No other link is touched, and each keeps its
/// form. Uses all cores. Problems are items that can't be moved and pages that can't be rewritten; the plan does without
/// them. Error: the site can't be read, or the job was stopped (isStopped()).
Result<LinkPlan> planMove(const MoveRequest& request, const StillWanted& stillWanted = {});

/// The hash by which plans and journals recognise the bytes of a file.
std::string hashOfFile(std::string_view bytes);

/// `bytes` with the edits made.
std::string withEdits(std::string_view bytes, const std::vector<LinkEdit>& edits);

} // namespace luma
