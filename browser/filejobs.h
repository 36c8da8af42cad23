// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/result.h"
#include "base/stillwanted.h"
#include "browser/deletionalert.h"
#include "links/lostlinks.h"

#include <QObject>

#include <filesystem>
#include <functional>
#include <memory>
#include <vector>

class QMessageBox;
class QWidget;

namespace luma {

/// The file operations of a pane's menu and keys: new folders, duplicates, and deletions after a question. What is done can be
/// taken back, except for what is deleted for good. Copying and deleting run in the background on copies of their values, even
/// if the pane is destroyed. A failed operation changes nothing and says why. Main thread only.
class FileJobs final : public QObject
{
    Q_OBJECT

public:
    using Paths = std::vector<std::filesystem::path>;

    /// `pane` owns the jobs; its window gets the question as a sheet.
    explicit FileJobs(QWidget* pane);

    [[nodiscard]] bool isRunning() const { return m_running > 0; }

    /// Creates an untitled folder in `parent`.
    void newFolder(const std::filesystem::path& parent);
    /// An item has been renamed: taking a new folder back removes it under its name of then.
    void noteRename(const std::filesystem::path& oldPath, const std::filesystem::path& newPath);
    /// Whether `folder` is the folder made last and nothing is in it yet.
    [[nodiscard]] bool isNewFolder(const std::filesystem::path& folder) const;
    /// Renames the folder made last in the background, if it is `folder` and nothing is in it yet; any other item is left to
    /// `otherwise`.
    void renameNewFolder(const std::filesystem::path& folder, const std::filesystem::path& newPath,
                         const std::function<void()>& otherwise);
    /// Copies an item beside itself and has the copy selected, or the item that already has its name.
    void duplicate(const std::filesystem::path& item);
    /// Asks with their names, then moves the items to the trash. Asks again before it deletes for good what can't
    /// be moved there. `next` is the item to go on with, or empty. `countLinks` is called in the background; the question
    /// says what it has found.
    using LinkCounter = std::function<Result<LostLinks>(const StillWanted& stillWanted)>;
    void confirmDeletion(const Paths& items, const std::filesystem::path& next,
                         const LinkCounter& countLinks = {});

signals:
    /// A job has started or ended.
    void runningChanged();
    /// The disk may have changed; select these items.
    void changed(const luma::FileJobs::Paths& select);
    /// A new folder is there, to be named.
    void folderCreated(const std::filesystem::path& folder);
    /// A job has failed; emitted after its other signals.
    void failed(const QString& reason);
    /// Items were deleted.
    void deleted(const std::filesystem::path& next);
    /// Something was done that can be taken back: `undo`, called once, begins to. `title` says what it was: "Delete".
    void undoable(const QString& title, const std::function<void()>& undo);

private:
    struct Outcome
    {
        bool mayHaveChanged = true; // the disk
        std::string problem = {};
    };

    QWidget* m_pane;
    std::shared_ptr<std::filesystem::path> m_newFolder; // the one made last, wherever it is now
    int m_running = 0;

    /// Takes something back, on a background thread; gives the items to select then.
    using Undo = std::function<Result<Paths>()>;
    void offerName(const std::shared_ptr<std::filesystem::path>& newFolder);
    void offerUndo(const QString& title, const Undo& undo);
    void runUndo(const QString& title, const Undo& undo);
    void showLostLinks(QMessageBox& alert, const LinkCounter& countLinks);
    void moveToTrash(const Paths& items, const std::filesystem::path& next);
    void confirmRemoval(const TrashOutcome& outcome, const std::filesystem::path& next);
    void run(std::function<Outcome()> job, std::function<void()> whenChanged);
    void setRunning(int count);
};

} // namespace luma
