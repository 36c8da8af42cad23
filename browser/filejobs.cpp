// SPDX-License-Identifier: GPL-3.0-or-later
#include "browser/filejobs.h"

#include "base/files.h"
#include "base/mainhop.h"
#include "base/workitem.h"
#include "browser/fileoperations.h"

#include <QWidget>

namespace luma {

FileJobs::FileJobs(QWidget* pane) : QObject(pane), m_pane(pane) {}

void FileJobs::newFolder(const std::filesystem::path& parent)
{
    (void)fileoperations::newFolder(parent);
    emit changed({fileoperations::newFolderPath(parent)});
}

void FileJobs::duplicate(const std::filesystem::path& item)
{
    run(
        [item] {
            (void)fileoperations::duplicate(item, [] { return !isMainHopClosed(); });
            return true;
        },
        [this, item] { emit changed({fileoperations::duplicatePath(item)}); });
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
