// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/workitem.h"
#include "site/siterecord.h"
#include "site/synctablemodel.h"

#include <QPointer>

#include <functional>
#include <string>
#include <vector>

namespace luma {

/// What the window knows of its two sides when a job begins.
struct SyncSides
{
    bool rsync = false;                ///< key-based login works, so rsync does the work
    std::filesystem::path source;      ///< the folder of the source pane; empty when not connected
    std::filesystem::path destination; ///< of the destination pane
};

/// Compares a site's two sides and copies the ticked rows in one direction, with rsync or by itself.
///
/// Lives on the main thread; its jobs run in the background, own what they need and come back by onMain. A
/// newer job, cancel() and the engine's end drop the older job. A direction is the title of the direction
/// menu: "Upload" means source to destination, any other the way back. The names left unticked are
/// remembered in the record under the direction's title.
class SyncEngine final : public QObject
{
    Q_OBJECT

public:
    enum class State { Idle, Comparing, Ready, Empty, Transferring, Done };

    /// Runs a program, the first element, and gives its standard output; nothing when it failed. Called on
    /// any thread, also when the engine is gone.
    using ShellRunner = std::function<std::string(const std::vector<std::string>&)>;

    /// `record` outlives the engine. `sides` is asked on the main thread whenever a job begins.
    SyncEngine(SiteRecord& record, ShellRunner runShell, std::function<SyncSides()> sides,
               QObject* parent = nullptr);
    ~SyncEngine() override;

    [[nodiscard]] State state() const { return m_state; }
    /// The panel's title line.
    [[nodiscard]] const QString& title() const { return m_title; }
    /// What could not be compared or copied, for one line of the panel; mostly empty.
    [[nodiscard]] const QString& message() const { return m_message; }
    [[nodiscard]] SyncTableModel& table() { return m_table; }
    /// What the next comparison would use; without rsync nothing is ever deleted.
    [[nodiscard]] bool usesRsync() const { return m_sides().rsync; }

    /// Fills the table anew. `deletes` lets rsync also list what only the receiving side has.
    void compare(const QString& direction, bool deletes);
    /// Copies the ticked rows and takes those that were copied out of the table. Only in the state Ready.
    void transfer(bool deletes);
    /// Drops the job and remembers the rows left unticked. rsync, once it runs, is not stopped.
    void cancel();

signals:
    void changed();
    /// Rows dealt with, of the ticked ones; in file mode only, a few times a second.
    void progressed(int done, int total);
    /// A transfer has ended: both sides may look different.
    void transferred();

private:
    SiteRecord& m_record;
    ShellRunner m_runShell;
    std::function<SyncSides()> m_sides;
    SyncTableModel m_table;
    State m_state = State::Idle;
    QString m_direction;
    QString m_title;
    QString m_message;
    WorkItemPointer m_workItem;

    [[nodiscard]] bool isUpload() const;
    [[nodiscard]] SyncFolders folders(const SyncSides& sides) const;
    void startItem();
    void dropItem();
    void setState(State state);
    void rememberUnticked();
    void compareFolders(const SyncFolders& folders);
    void listWithRsync(bool deletes);
    void transferFiles();
    void transferWithRsync(bool deletes);
    void endComparison(const WorkItem& item, std::vector<SyncRow> rows,
                       const std::vector<std::string>& problems);
    void endTransfer(const WorkItem& item, const std::vector<std::size_t>& moved,
                     const std::vector<std::string>& problems);
    void setMessage(const std::vector<std::string>& problems);
};

} // namespace luma
