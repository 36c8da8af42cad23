// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>

#include <filesystem>
#include <functional>
#include <vector>

class QWidget;

namespace luma {

/// What a pane's menu and keys do to files: new folders, duplicates, and deletions after one question.
/// Copying and deleting run in the background on values of their own; the pane may go meanwhile. What fails
/// leaves the disk as it was and is told to nobody. Main thread only.
class FileJobs final : public QObject
{
    Q_OBJECT

public:
    using Paths = std::vector<std::filesystem::path>;

    /// The question is a sheet of the window that `pane` is in; `pane` owns the jobs.
    explicit FileJobs(QWidget* pane);

    [[nodiscard]] bool isRunning() const { return m_running > 0; }

    /// Makes "New Folder" in `parent`; whether it is new or was there before, it is to be selected.
    void newFolder(const std::filesystem::path& parent);
    /// Copies an item beside itself; the copy, or what had its name before, is to be selected.
    void duplicate(const std::filesystem::path& item);
    /// Asks, then deletes the items for good.
    void confirmDeletion(const Paths& items);

signals:
    /// A job has begun or ended.
    void runningChanged();
    /// The disk may have changed; these items are to be selected.
    void changed(const luma::FileJobs::Paths& select);

private:
    QWidget* m_pane;
    int m_running = 0;

    void deleteItems(const Paths& items);
    void run(std::function<bool()> job, const Paths& select);
    void setRunning(int count);
};

} // namespace luma
