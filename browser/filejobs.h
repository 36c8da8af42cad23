// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/result.h"
#include "browser/deletionalert.h"

#include <QObject>

#include <filesystem>
#include <functional>
#include <vector>

class QWidget;

namespace luma {

/// The file operations of a pane's menu and keys: new folders, duplicates, and deletions after a question. What is done can be
/// taken back, except for what is deleted for good. Copying and deleting run in the background on copies of their values, even
/// if the pane is destroyed. A failed operation changes nothing; failures to copy are ignored. Main thread only.
class FileJobs final : public QObject
{
    Q_OBJECT

public:
    using Paths = std::vector<std::filesystem::path>;

    /// `pane` owns the jobs; its window gets the question as a sheet.
    explicit FileJobs(QWidget* pane);

    [[nodiscard]] bool isRunning() const { return m_running > 0; }

    /// Creates "New Folder" in `parent` and has it selected, even if it existed before.
    void newFolder(const std::filesystem::path& parent);
    /// Copies an item beside itself and has the copy selected, or the item that already has its name.
    void duplicate(const std::filesystem::path& item);
    /// Asks with their names, then moves the items to the trash. Asks again before it deletes for good what can't
    /// be moved there. `next` is the item to go on with, or empty.
    void confirmDeletion(const Paths& items, const std::filesystem::path& next);

signals:
    /// A job has started or ended.
    void runningChanged();
    /// The disk may have changed; select these items.
    void changed(const luma::FileJobs::Paths& select);
    /// Items were deleted.
    void deleted(const std::filesystem::path& next);
    /// Something was done that can be taken back: `undo`, called once, begins to. `title` says what it was: "Delete".
    void undoable(const QString& title, const std::function<void()>& undo);
    /// Something could not be taken back, for this reason.
    void undoFailed(const QString& reason);

private:
    QWidget* m_pane;
    int m_running = 0;

    /// Takes something back, on a background thread; gives the items to select then.
    using Undo = std::function<Result<Paths>()>;
    void offerUndo(const QString& title, const Undo& undo);
    void runUndo(const Undo& undo);
    void moveToTrash(const Paths& items, const std::filesystem::path& next);
    void confirmRemoval(const TrashOutcome& outcome, const std::filesystem::path& next);
    void run(std::function<bool()> job, std::function<void()> whenChanged);
    void setRunning(int count);
};

} // namespace luma
