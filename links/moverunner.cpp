// SPDX-License-Identifier: GPL-3.0-or-later
#include "links/moverunner.h"

#include "base/filecalls.h"
#include "base/files.h"
#include "base/orderedwork.h"
#include "base/usertext.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <numeric>
#include <span>
#include <system_error>

namespace luma {

namespace fs = std::filesystem;

namespace {

// Notes in the journal. Those of one item end in its number.
const std::string copiedNote = "copied ";   // the copy is whole, under its temporary name or in its place
const std::string removedNote = "removed "; // the original has left its place for good
const std::string committedNote = "committed";

bool isCopyUnchanged(const CopiedItem& item)
{
    struct stat status = {};
    std::error_code error;
    if (::lstat(item.path.c_str(), &status) != 0)
        return false;
    if (item.type == CopiedItem::Type::Link)
        return S_ISLNK(status.st_mode) && fs::read_symlink(item.path, error).native() == item.mark;
    if (!S_ISREG(status.st_mode))
        return false;
    if (!item.mark.empty()) {
        const auto bytes = readFile(item.path);
        return bytes && hashOfFile(*bytes) == item.mark;
    }
    // Some file systems keep times in steps of two seconds.
    constexpr time_t coarsest = 2;
    return static_cast<std::uint64_t>(status.st_size) == item.size &&
           std::abs(status.st_mtim.tv_sec - item.modified.tv_sec) <= coarsest;
}

} // namespace

// The other pages that are names of the same file: of its first page all, of the others the first.
MoveRunner::Twins MoveRunner::twinsIn(const std::vector<PageRewrite>& pages)
{
    Twins twins;
    for (std::size_t i = 0; i < pages.size(); ++i) {
        if (const auto first = pages[i].twin) {
            twins[i] = {*first};
            twins[*first].push_back(i);
        }
    }
    return twins;
}

bool MoveRunner::isNoted(std::string_view text) const
{
    return std::find(m_entry.notes.begin(), m_entry.notes.end(), text) != m_entry.notes.end();
}

Result<void> MoveRunner::note(std::string_view text)
{
    if (auto noted = m_journal.note(m_entry.number, text); !noted)
        return noted;
    m_entry.notes.emplace_back(text);
    return {};
}

void MoveRunner::report(MoveProblem::Kind kind, const fs::path& path, const std::string& text)
{
    m_report.problems.push_back({kind, path, text});
}

fs::path MoveRunner::temporaryBeside(const fs::path& path, std::size_t index) const
{
    return path.parent_path() / temporaryName(job(), index);
}

MoveReport MoveRunner::run()
{
    m_report.title = titleOf(job());
    m_report.items = job().items;
    m_report.isMove = job().kind == MoveJob::Kind::Move;
    const auto done = forward();
    if (!done) {
        m_report.isStopped = done.error().isStopped();
        if (!m_report.isStopped)
            report(MoveProblem::Kind::NotMoved, job().items.empty() ? fs::path() : job().items.front().from,
                   done.error().text);
        // If the note fails, a crash from here on would let the job be finished, which is as good.
        (void)note(backNote);
        back();
        return std::move(m_report);
    }
    m_report.isDone = true;
    if (job().undoes > 0) {
        m_journal.forgetDone(job().undoes);
        m_journal.forgetRunning(m_entry.number);
    } else if (const auto finished = m_journal.finish(m_entry.number); !finished) {
        report(MoveProblem::Kind::NotMoved, {}, finished.error().text);
    }
    return std::move(m_report);
}

MoveReport MoveRunner::resume()
{
    removeTemporaries();
    m_arePagesBegun = true;
    m_changedPages = ChangedPages::LeftAlone;
    if (!isNoted(backNote))
        return run();
    m_report.title = titleOf(job());
    m_report.items = job().items;
    m_report.isMove = job().kind == MoveJob::Kind::Move;
    back();
    return std::move(m_report);
}

Result<void> MoveRunner::forward()
{
    if (!isNoted(committedNote)) {
        for (std::size_t i = 0; i < job().items.size(); ++i) {
            if (!isWanted(m_callbacks.stillWanted))
                return stoppedError(job().items[i].from);
            if (auto placed = place(i); !placed)
                return placed;
        }
        // A page may be a symbolic link.
        if (auto changed = changeSymlinks(job().symlinks, Direction::Forward); !changed)
            return changed;
        if (auto written = writePages(job().pages, Direction::Forward); !written)
            return written;
    }
    if (needsCommit()) {
        if (!isNoted(committedNote)) {
            syncFolders();
            if (auto noted = note(committedNote); !noted)
                return noted;
        }
        commit();
    }
    syncFolders();
    return {};
}

void MoveRunner::back()
{
    if (m_arePagesBegun) {
        const MoveJob inverse = inverseOf(job());
        (void)writePages(inverse.pages, Direction::Back);
        (void)changeSymlinks(inverse.symlinks, Direction::Back);
    }
    for (std::size_t i = job().items.size(); i > 0; --i)
        takeBack(i - 1);
    syncFolders();
    m_journal.forgetRunning(m_entry.number);
}

void MoveRunner::tellOfMove(const fs::path& from, const fs::path& to) const
{
    if (job().kind == MoveJob::Kind::Move && m_callbacks.itemMoved)
        m_callbacks.itemMoved({from, to});
}

// Gives an item its new place. `from` is where it or its copy is.
Result<void> MoveRunner::rename(const fs::path& from, std::size_t index)
{
    const MovedItem& item = job().items[index];
    // Remains if the operation is dropped.
    Result<void> done = Error{userText(QT_TRANSLATE_NOOP("luma::Engines", "%1: not moved"), {from.native()})};
    const auto act = [&] {
        done = renameToFreePlace(from, item.to);
        if (done)
            tellOfMove(item.from, item.to);
    };
    if (m_callbacks.fileOperation)
        m_callbacks.fileOperation(act);
    else
        act();
    return done;
}

Result<void> MoveRunner::place(std::size_t index)
{
    if (job().kind == MoveJob::Kind::RemoveCopies || job().kind == MoveJob::Kind::Links)
        return {};
    const auto& [from, to] = job().items[index];
    const std::string copied = copiedNote + std::to_string(index);
    const fs::path folder = temporaryBeside(to, index);
    if (!isNoted(copied)) {
        if (itemExists(folder))
            (void)removeItem(folder);
        if (!itemExists(from))
            return itemExists(to) && job().kind == MoveJob::Kind::Move ? Result<void>()
                                                                       : systemError(from, ENOENT);
        if (itemExists(to))
            return systemError(to, EEXIST);
        std::error_code error;
        if (job().undoes > 0)
            fs::create_directories(to.parent_path(), error);
        if (job().kind == MoveJob::Kind::Move) {
            auto renamed = rename(from, index);
            if (renamed || renamed.error().code != std::errc::cross_device_link)
                return renamed;
        }
        if (::mkdir(folder.c_str(), S_IRWXU) != 0)
            return systemError(to, errno);
        if (auto made = copyItem(from, folder / to.filename(), m_callbacks.stillWanted); !made)
            return made;
        if (auto noted = note(copied); !noted)
            return noted;
    }
    return placeCopy(index);
}

// The copy is whole and stands under its temporary name, or in its place already.
Result<void> MoveRunner::placeCopy(std::size_t index)
{
    const fs::path& to = job().items[index].to;
    const fs::path folder = temporaryBeside(to, index);
    const fs::path copy = folder / to.filename();
    if (itemExists(copy)) {
        if (auto placed = rename(copy, index); !placed)
            return placed;
    }
    ::rmdir(folder.c_str());
    return {};
}

void MoveRunner::takeBack(std::size_t index)
{
    if (job().kind == MoveJob::Kind::RemoveCopies || job().kind == MoveJob::Kind::Links)
        return;
    const auto& [from, to] = job().items[index];
    const fs::path folder = temporaryBeside(to, index);
    const bool isPlaced = !itemExists(folder / to.filename());
    if (itemExists(folder))
        (void)removeItem(folder);
    Result<void> done;
    const bool wasThere = itemExists(to);
    if (isNoted(copiedNote + std::to_string(index))) {
        // The original is still there: it goes only after the job can't be taken back any more.
        if (isPlaced && itemExists(from) && itemExists(to))
            done = removeItem(to);
    } else if (job().kind == MoveJob::Kind::Move && itemExists(to) && !itemExists(from)) {
        // In place even where the program quits and runs no other operation.
        done = renameToFreePlace(to, from);
    }
    if (!done)
        report(MoveProblem::Kind::NotMoved, to, done.error().text);
    else if (wasThere && !itemExists(to))
        tellOfMove(to, from);
}

Result<void> MoveRunner::writePages(const std::vector<PageRewrite>& pages, Direction direction)
{
    const bool isForward = direction == Direction::Forward;
    const bool restoresTimes = isForward ? job().restoresTimes : !job().restoresTimes;
    const StillWanted stillWanted = isForward ? m_callbacks.stillWanted : StillWanted();
    m_arePagesBegun = true;
    const Twins twins = twinsIn(pages);
    std::vector<std::size_t> order(pages.size());
    std::iota(order.begin(), order.end(), std::size_t(0));
    const auto later =
        std::stable_partition(order.begin(), order.end(), [&pages](std::size_t i) { return !pages[i].twin; });
    std::vector<Result<PageState>> states(pages.size(), PageState::Gone);
    std::size_t done = 0;
    const auto write = [&](std::span<const std::size_t> part) {
        return OrderedWork<Result<PageState>>(part.size(), [&] { return isWanted(stillWanted); })
            .run([&](std::size_t i, std::size_t) { return writePage(pages, part[i], twins, restoresTimes); },
                 [&](std::size_t i, Result<PageState>&& state) {
                     states[part[i]] = std::move(state);
                     if (m_callbacks.progress)
                         m_callbacks.progress(++done, pages.size());
                 });
    };
    if (!write({order.begin(), later}) || !write({later, order.end()}))
        return stoppedError(job().items.empty() ? fs::path() : job().items.front().from);
    Result<void> all;
    for (std::size_t i = 0; i < pages.size(); ++i) {
        if (auto judged = judge(states[i], pages[i].page, direction); !judged && all)
            all = judged;
    }
    return all;
}

// Makes the page's edits unless they are made. Where an item is in its old place, so is the page.
Result<MoveRunner::PageState> MoveRunner::writePage(const std::vector<PageRewrite>& pages, std::size_t index,
                                                    const Twins& twins, bool restoresTime) const
{
    const PageRewrite& page = pages[index];
    PageState state = PageState::Gone;
    for (const fs::path& path : {page.page, page.oldPage}) {
        const fs::path file = realFile(path);
        const auto bytes = readFile(file);
        if (!bytes)
            continue;
        const std::string hash = hashOfFile(*bytes);
        if (hash == page.newHash)
            return PageState::WasWritten;
        if (hash == page.oldHash) {
            const auto others = twins.find(index);
            if (others != twins.end() &&
                std::any_of(others->second.begin(), others->second.end(),
                            [&](std::size_t twin) { return linkToTwin(file, pages[twin], index); }))
                return PageState::Written;
            const auto time = restoresTime ? std::optional(page.modified) : std::nullopt;
            // The copy of a page that may not be written is ours all the same.
            const ReadOnly readOnly = job().kind == MoveJob::Kind::Copy ? ReadOnly::Replaced : ReadOnly::Kept;
            const auto written = replaceFile(file, withEdits(*bytes, page.edits),
                                             temporaryBeside(file, index), time, readOnly);
            return written ? Result<PageState>(PageState::Written) : written.error();
        }
        state = PageState::Changed;
    }
    return state;
}

// False where the twin is not written, or can't be linked to: it may be on another file system now.
bool MoveRunner::linkToTwin(const fs::path& file, const PageRewrite& twin, std::size_t index) const
{
    for (const fs::path& path : {twin.page, twin.oldPage}) {
        const auto bytes = readFile(path);
        if (!bytes || hashOfFile(*bytes) != twin.newHash)
            continue;
        const fs::path temporary = temporaryBeside(file, index);
        if (::link(path.c_str(), temporary.c_str()) != 0)
            return false;
        if (::rename(temporary.c_str(), file.c_str()) == 0)
            return true;
        ::unlink(temporary.c_str());
        return false;
    }
    return false;
}

// An error ends the job.
std::string MoveRunner::textOf(PageState state, const fs::path& file, bool isRefused)
{
    const char* source = nullptr;
    if (state == PageState::Gone)
        source = isRefused ? QT_TRANSLATE_NOOP("luma::Engines", "%1: is gone")
                           : QT_TRANSLATE_NOOP("luma::Engines", "%1: is gone, left as it is");
    else
        source = isRefused ? QT_TRANSLATE_NOOP("luma::Engines", "%1: has changed since")
                           : QT_TRANSLATE_NOOP("luma::Engines", "%1: has changed since, left as it is");
    return userText(source, {file.native()});
}

Result<void> MoveRunner::judge(const Result<PageState>& state, const fs::path& file, Direction direction)
{
    const bool isForward = direction == Direction::Forward;
    if (state && (*state == PageState::Written || *state == PageState::WasWritten)) {
        if (isForward)
            m_report.rewritten.push_back(file);
        return {};
    }
    const bool isRefused = isForward && (!state || m_changedPages == ChangedPages::Refused);
    if (isRefused)
        return state ? Error{textOf(*state, file, isRefused)} : state.error();
    const std::string text = state ? textOf(*state, file, isRefused) : state.error().text;
    report(MoveProblem::Kind::NotRewritten, file, text);
    return {};
}

Result<void> MoveRunner::changeSymlinks(const std::vector<SymlinkChange>& changes, Direction direction)
{
    for (std::size_t i = 0; i < changes.size(); ++i) {
        m_arePagesBegun = true;
        const auto state = changeSymlink(changes[i], job().pages.size() + i);
        if (auto judged = judge(state, changes[i].link, direction); !judged)
            return judged;
    }
    return {};
}

Result<MoveRunner::PageState> MoveRunner::changeSymlink(const SymlinkChange& change, std::size_t index) const
{
    PageState state = PageState::Gone;
    for (const fs::path& path : {change.link, change.oldLink}) {
        if (!itemExists(path))
            continue;
        std::error_code error;
        const std::string target = fs::read_symlink(path, error).native();
        if (target == change.after)
            return PageState::WasWritten;
        if (target == change.before) {
            const fs::path temporary = temporaryBeside(path, index);
            if (::symlink(change.after.c_str(), temporary.c_str()) != 0)
                return systemError(path, errno);
            if (::rename(temporary.c_str(), path.c_str()) == 0)
                return PageState::Written;
            Error failed = systemError(path, errno);
            ::unlink(temporary.c_str());
            return failed;
        }
        state = PageState::Changed;
    }
    return state;
}

bool MoveRunner::needsCommit() const
{
    const bool anyCopied = std::any_of(m_entry.notes.begin(), m_entry.notes.end(),
                                       [](const std::string& note) { return note.starts_with(copiedNote); });
    return job().kind == MoveJob::Kind::RemoveCopies || (job().kind == MoveJob::Kind::Move && anyCopied);
}

// What can't be taken back comes last.
void MoveRunner::commit()
{
    if (job().kind == MoveJob::Kind::RemoveCopies) {
        removeCopies();
        return;
    }
    for (std::size_t i = 0; i < job().items.size(); ++i) {
        if (isNoted(copiedNote + std::to_string(i)))
            removeSource(i);
    }
}

// The original of an item that was copied to another file system. It gets a temporary name first, so that a second run never
// takes something new in its place for it.
void MoveRunner::removeSource(std::size_t index)
{
    const fs::path& from = job().items[index].from;
    const fs::path away = temporaryBeside(from, index);
    const std::string removed = removedNote + std::to_string(index);
    if (!isNoted(removed) && !itemExists(away)) {
        if (const auto renamed = renameToFreePlace(from, away); !renamed) {
            report(MoveProblem::Kind::NotMoved, from, renamed.error().text);
            return;
        }
    }
    (void)note(removed);
    if (!itemExists(away))
        return;
    if (const auto gone = removeItem(away); !gone)
        report(MoveProblem::Kind::NotMoved, from, gone.error().text);
}

// Folders are behind what is in them when the list is read from its end.
void MoveRunner::removeCopies()
{
    for (auto item = job().copies.rbegin(); item != job().copies.rend(); ++item) {
        if (!itemExists(item->path))
            continue;
        if (item->type == CopiedItem::Type::Folder)
            ::rmdir(item->path.c_str());
        else if (!isCopyUnchanged(*item))
            report(MoveProblem::Kind::NotMoved, item->path,
                   userText(QT_TRANSLATE_NOOP("luma::Engines", "%1: has changed since, left as it is"),
                            {item->path.native()}));
        else if (::unlink(item->path.c_str()) != 0)
            report(MoveProblem::Kind::NotMoved, item->path, systemError(item->path, errno).text);
    }
}

// Those of pages that were being written when the job was interrupted. place() looks after those of items.
void MoveRunner::removeTemporaries() const
{
    for (std::size_t i = 0; i < job().pages.size(); ++i) {
        for (const fs::path& path : {job().pages[i].page, job().pages[i].oldPage})
            ::unlink(temporaryBeside(realFile(path), i).c_str());
    }
    for (std::size_t i = 0; i < job().symlinks.size(); ++i) {
        for (const fs::path& path : {job().symlinks[i].link, job().symlinks[i].oldLink})
            ::unlink(temporaryBeside(path, job().pages.size() + i).c_str());
    }
}

void MoveRunner::syncFolders() const
{
    std::set<fs::path> folders;
    for (const MovedItem& item : job().items) {
        folders.insert(item.from.parent_path());
        folders.insert(item.to.parent_path());
    }
    for (const PageRewrite& page : job().pages)
        folders.insert(page.page.parent_path());
    for (const SymlinkChange& change : job().symlinks)
        folders.insert(change.link.parent_path());
    for (const fs::path& folder : folders)
        syncFolder(folder);
}

} // namespace luma
