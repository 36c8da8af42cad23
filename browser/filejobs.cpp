// SPDX-License-Identifier: GPL-3.0-or-later
#include "browser/filejobs.h"

#include "base/filecalls.h"
#include "base/files.h"
#include "base/mainhop.h"
#include "base/workitem.h"
#include "browser/countedtext.h"
#include "browser/displaytext.h"
#include "browser/fileoperations.h"

#include <QMessageBox>
#include <QPointer>
#include <QWidget>

#include <unistd.h>

#include <cerrno>
#include <optional>
#include <utility>

namespace luma {

namespace {

// What can't be put back stays in `items`.
Result<FileJobs::Paths> putAllBack(std::vector<TrashedItem>& items)
{
    FileJobs::Paths back;
    std::optional<Error> failed;
    std::erase_if(items, [&](const TrashedItem& item) {
        const auto put = putBack(item);
        if (put)
            back.push_back(item.original);
        else if (!failed)
            failed = put.error();
        return bool(put);
    });
    return failed ? Result<FileJobs::Paths>(*failed) : Result<FileJobs::Paths>(std::move(back));
}

// Only while it is empty.
Result<FileJobs::Paths> removeFolder(const std::filesystem::path& folder)
{
    return ::rmdir(folder.c_str()) == 0 ? Result<FileJobs::Paths>(FileJobs::Paths())
                                        : systemError(folder, errno);
}

Result<FileJobs::Paths> removeCopy(const std::filesystem::path& copy)
{
    const auto removed = moveToTrash(copy);
    return removed ? Result<FileJobs::Paths>(FileJobs::Paths()) : removed.error();
}

} // namespace

FileJobs::FileJobs(QWidget* pane) : QObject(pane), m_pane(pane) {}

void FileJobs::newFolder(const std::filesystem::path& parent)
{
    const auto place = std::make_shared<std::filesystem::path>();
    run(
        [parent, place] {
            auto folder = fileoperations::newFolder(parent);
            if (!folder)
                return Outcome{.mayHaveChanged = false, .problem = folder.error().text};
            *place = *std::move(folder);
            return Outcome{};
        },
        [this, place] { offerName(place); });
}

void FileJobs::offerName(const std::shared_ptr<std::filesystem::path>& newFolder)
{
    m_newFolder = newFolder;
    // Where it is when it is taken back.
    const QString title = tr("New Folder");
    emit undoable(title, [guard = QPointer<FileJobs>(this), title, newFolder] {
        if (guard)
            guard->runUndo(title, [named = *newFolder] { return removeFolder(named); });
    });
    emit folderCreated(*newFolder);
}

void FileJobs::noteRename(const std::filesystem::path& oldPath, const std::filesystem::path& newPath)
{
    if (m_newFolder && *m_newFolder == oldPath)
        *m_newFolder = newPath;
}

bool FileJobs::isNewFolder(const std::filesystem::path& folder) const
{
    std::error_code error;
    return m_newFolder && *m_newFolder == folder && std::filesystem::is_empty(folder, error) && !error;
}

void FileJobs::renameNewFolder(const std::filesystem::path& folder, const std::filesystem::path& newPath,
                               const std::function<void()>& otherwise)
{
    if (!m_newFolder || *m_newFolder != folder) {
        otherwise();
        return;
    }
    const auto isOther = std::make_shared<bool>();
    run(
        [folder, newPath, isOther] {
            std::error_code error;
            *isOther = !std::filesystem::is_empty(folder, error) || error;
            const auto renamed = *isOther ? Result<void>() : renameToFreePlace(folder, newPath);
            return Outcome{.problem = renamed ? std::string() : renamed.error().text};
        },
        [this, folder, newPath, isOther, otherwise] {
            if (*isOther) {
                otherwise();
                return;
            }
            noteRename(folder, newPath);
            emit changed({newPath});
        });
}

void FileJobs::duplicate(const std::filesystem::path& item)
{
    const QPointer<FileJobs> guard(this);
    const std::filesystem::path copy = fileoperations::duplicatePath(item);
    run(
        [guard, item, copy] {
            const auto copied = fileoperations::duplicate(item, [] { return !isMainHopClosed(); });
            if (copied)
                onMain(guard, [&copy](FileJobs& self) {
                    self.offerUndo(tr("Duplicate"), [copy] { return removeCopy(copy); });
                });
            return Outcome{.problem = copied ? std::string() : copied.error().text};
        },
        [this, copy] { emit changed({copy}); });
}

void FileJobs::confirmDeletion(const Paths& items, const std::filesystem::path& next,
                               const LinkCounter& countLinks)
{
    const QString question = tr("Are you sure you want to delete this item(s)?") + QStringLiteral("\n\n") +
                             tr("To the trash: %1").arg(namesOf(items));
    QMessageBox* const alert = askToDelete(*m_pane, QStringLiteral("deleteAlert"), question,
                                           [this, items, next] { moveToTrash(items, next); });
    if (countLinks)
        showLostLinks(*alert, countLinks);
}

// The line is there from the beginning, so that the buttons stay where they are.
void FileJobs::showLostLinks(QMessageBox& alert, const LinkCounter& countLinks)
{
    const QString question = alert.informativeText();
    const auto show = [question](QMessageBox& box, const QString& line) {
        box.setInformativeText(question + u'\n' + line);
    };
    show(alert, tr("Looking for links to it..."));
    const auto item = std::make_shared<WorkItem>();
    connect(&alert, &QDialog::finished, this, [item] { item->cancel(); });
    start(item, [show, countLinks, item, guard = QPointer(&alert)](const WorkItem&) {
        const auto lost = countLinks([item] { return !item->isCancelled() && !isMainHopClosed(); });
        QString line;
        if (!lost)
            line = tr("Links to it can't be counted: %1").arg(displayText(lost.error().text));
        else if (lost->links == 0)
            line = tr("No page that stays links to it.");
        else
            line = tr("%1 on %2 will be missing then.")
                       .arg(counted(lost->links, tr("link"), tr("links")),
                            counted(lost->pages, tr("page"), tr("pages")));
        if (lost || !lost.error().isStopped())
            onMain(guard, [&](QMessageBox& box) { show(box, line); });
    });
}

void FileJobs::moveToTrash(const Paths& items, const std::filesystem::path& next)
{
    const QPointer<FileJobs> guard(this);
    run(
        [guard, items, next] {
            const TrashOutcome outcome = moveAllToTrash(items, [] { return !isMainHopClosed(); });
            if (!outcome.trashed.empty())
                onMain(guard, [&outcome](FileJobs& self) {
                    const auto trashed = std::make_shared<std::vector<TrashedItem>>(outcome.trashed);
                    self.offerUndo(tr("Delete"), [trashed] { return putAllBack(*trashed); });
                });
            if (!outcome.left.empty())
                onMain(guard, [&](FileJobs& self) { self.confirmRemoval(outcome, next); });
            return Outcome{.mayHaveChanged = !outcome.trashed.empty()};
        },
        [this, next] { emit deleted(next); });
}

void FileJobs::confirmRemoval(const TrashOutcome& outcome, const std::filesystem::path& next)
{
    const auto remove = [items = outcome.left] {
        Outcome done{.mayHaveChanged = false};
        for (const std::filesystem::path& item : items) {
            if (isMainHopClosed())
                break;
            // Part of a folder may be gone, too.
            done.mayHaveChanged = true;
            if (const auto removed = removeItem(item); !removed && done.problem.empty())
                done.problem = removed.error().text;
        }
        return done;
    };
    askToDelete(*m_pane, QStringLiteral("removeAlert"), questionAbout(outcome),
                [this, remove, next] { run(remove, [this, next] { emit deleted(next); }); });
}

void FileJobs::offerUndo(const QString& title, const Undo& undo)
{
    emit undoable(title, [guard = QPointer<FileJobs>(this), title, undo] {
        if (guard)
            guard->runUndo(title, undo);
    });
}

// What could not be taken back can be tried again, unless it is gone.
void FileJobs::runUndo(const QString& title, const Undo& undo)
{
    const auto back = std::make_shared<Paths>();
    run(
        [guard = QPointer<FileJobs>(this), title, undo, back] {
            auto done = undo();
            if (!done) {
                if (done.error().code != std::errc::no_such_file_or_directory)
                    onMain(guard, [&](FileJobs& self) { self.offerUndo(title, undo); });
                return Outcome{.problem = done.error().text};
            }
            *back = *std::move(done);
            return Outcome{};
        },
        [this, back] { emit changed(*back); });
}

/// Runs `job` in the background.
void FileJobs::run(std::function<Outcome()> job, std::function<void()> whenChanged)
{
    setRunning(m_running + 1);
    const QPointer<FileJobs> guard(this);
    start(std::make_shared<WorkItem>(),
          [guard, job = std::move(job), whenChanged = std::move(whenChanged)](const WorkItem&) {
              const Outcome outcome = job();
              onMain(guard, [&](FileJobs& self) {
                  self.setRunning(self.m_running - 1);
                  if (outcome.mayHaveChanged)
                      whenChanged();
                  if (!outcome.problem.empty())
                      emit self.failed(displayText(outcome.problem));
              });
          });
}

void FileJobs::setRunning(int count)
{
    m_running = count;
    emit runningChanged();
}

} // namespace luma
