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
        {fileoperations::duplicatePath(item)});
}

void FileJobs::confirmDeletion(const Paths& items)
{
    const QString question = tr("Are you sure you want to delete this item(s)?") + QStringLiteral("\n\n") +
                             tr("To the trash: %1").arg(namesOf(items));
    askToDelete(*m_pane, QStringLiteral("deleteAlert"), question, [this, items] { moveToTrash(items); });
}

void FileJobs::moveToTrash(const Paths& items)
{
    const QPointer<FileJobs> guard(this);
    run(
        [guard, items] {
            const TrashOutcome outcome = moveAllToTrash(items, [] { return !isMainHopClosed(); });
            if (!outcome.left.empty())
                onMain(guard, [&](FileJobs& self) { self.confirmRemoval(outcome); });
            return !outcome.trashed.empty();
        },
        {});
}

void FileJobs::confirmRemoval(const TrashOutcome& outcome)
{
    askToDelete(*m_pane, QStringLiteral("removeAlert"), questionAbout(outcome), [this, items = outcome.left] {
        run(
            [items] {
                bool deleted = false;
                for (const std::filesystem::path& item : items)
                    deleted = (!isMainHopClosed() && removeItem(item)) || deleted;
                return deleted;
            },
            {});
    });
}

/// Runs `job` in the background; it returns whether the disk may have changed.
void FileJobs::run(std::function<bool()> job, const Paths& select)
{
    setRunning(m_running + 1);
    const QPointer<FileJobs> guard(this);
    start(std::make_shared<WorkItem>(), [guard, job = std::move(job), select](const WorkItem&) {
        const bool mayHaveChanged = job();
        onMain(guard, [&](FileJobs& self) {
            self.setRunning(self.m_running - 1);
            if (mayHaveChanged)
                emit self.changed(select);
        });
    });
}

void FileJobs::setRunning(int count)
{
    m_running = count;
    emit runningChanged();
}

} // namespace luma
