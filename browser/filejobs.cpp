// SPDX-License-Identifier: GPL-3.0-or-later
#include "browser/filejobs.h"

#include "base/filecalls.h"
#include "base/files.h"
#include "base/mainhop.h"
#include "base/workitem.h"
#include "browser/displaytext.h"
#include "browser/fileoperations.h"

#include <QPointer>
#include <QWidget>

#include <unistd.h>

#include <cerrno>
#include <optional>
#include <utility>

namespace luma {

namespace {

Result<FileJobs::Paths> putAllBack(const std::vector<TrashedItem>& items)
{
    FileJobs::Paths back;
    std::optional<Error> failed;
    for (const TrashedItem& item : items) {
        if (const auto put = putBack(item); put)
            back.push_back(item.original);
        else if (!failed)
            failed = put.error();
    }
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
    const std::filesystem::path folder = fileoperations::newFolderPath(parent);
    if (fileoperations::newFolder(parent))
        offerUndo(tr("New Folder"), [folder] { return removeFolder(folder); });
    emit changed({folder});
}

void FileJobs::duplicate(const std::filesystem::path& item)
{
    const QPointer<FileJobs> guard(this);
    const std::filesystem::path copy = fileoperations::duplicatePath(item);
    run(
        [guard, item, copy] {
            if (fileoperations::duplicate(item, [] { return !isMainHopClosed(); }))
                onMain(guard, [&copy](FileJobs& self) {
                    self.offerUndo(tr("Duplicate"), [copy] { return removeCopy(copy); });
                });
            return true;
        },
        [this, copy] { emit changed({copy}); });
}

void FileJobs::confirmDeletion(const Paths& items, const std::filesystem::path& next)
{
    const QString question = tr("Are you sure you want to delete this item(s)?") + QStringLiteral("\n\n") +
                             tr("To the trash: %1").arg(namesOf(items));
    askToDelete(*m_pane, QStringLiteral("deleteAlert"), question,
                [this, items, next] { moveToTrash(items, next); });
}

void FileJobs::moveToTrash(const Paths& items, const std::filesystem::path& next)
{
    const QPointer<FileJobs> guard(this);
    run(
        [guard, items, next] {
            const TrashOutcome outcome = moveAllToTrash(items, [] { return !isMainHopClosed(); });
            if (!outcome.trashed.empty())
                onMain(guard, [&outcome](FileJobs& self) {
                    self.offerUndo(tr("Delete"), [items = outcome.trashed] { return putAllBack(items); });
                });
            if (!outcome.left.empty())
                onMain(guard, [&](FileJobs& self) { self.confirmRemoval(outcome, next); });
            return !outcome.trashed.empty();
        },
        [this, next] { emit deleted(next); });
}

void FileJobs::confirmRemoval(const TrashOutcome& outcome, const std::filesystem::path& next)
{
    const auto remove = [items = outcome.left] {
        bool isAnyGone = false;
        for (const std::filesystem::path& item : items)
            isAnyGone = (!isMainHopClosed() && removeItem(item)) || isAnyGone;
        return isAnyGone;
    };
    askToDelete(*m_pane, QStringLiteral("removeAlert"), questionAbout(outcome),
                [this, remove, next] { run(remove, [this, next] { emit deleted(next); }); });
}

void FileJobs::offerUndo(const QString& title, const Undo& undo)
{
    emit undoable(title, [guard = QPointer<FileJobs>(this), undo] {
        if (guard)
            guard->runUndo(undo);
    });
}

void FileJobs::runUndo(const Undo& undo)
{
    setRunning(m_running + 1);
    const QPointer<FileJobs> guard(this);
    start(std::make_shared<WorkItem>(), [guard, undo](const WorkItem&) {
        const Result<Paths> done = undo();
        onMain(guard, [&done](FileJobs& self) {
            self.setRunning(self.m_running - 1);
            emit self.changed(done ? *done : Paths());
            if (!done)
                emit self.undoFailed(displayText(done.error().text));
        });
    });
}

/// Runs `job` in the background; it returns whether the disk may have changed.
void FileJobs::run(std::function<bool()> job, std::function<void()> whenChanged)
{
    setRunning(m_running + 1);
    const QPointer<FileJobs> guard(this);
    start(std::make_shared<WorkItem>(),
          [guard, job = std::move(job), whenChanged = std::move(whenChanged)](const WorkItem&) {
              const bool mayHaveChanged = job();
              onMain(guard, [&](FileJobs& self) {
                  self.setRunning(self.m_running - 1);
                  if (mayHaveChanged)
                      whenChanged();
              });
          });
}

void FileJobs::setRunning(int count)
{
    m_running = count;
    emit runningChanged();
}

} // namespace luma
