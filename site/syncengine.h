// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/result.h"
#include "base/workitem.h"
#include "shell/commandrunner.h"
#include "site/foldercomparison.h"
#include "site/ignorednames.h"
#include "site/keptversions.h"
#include "site/siterecord.h"
#include "site/syncguards.h"
#include "site/synctablemodel.h"

#include <QPointer>

#include <functional>
#include <optional>
#include <string>
#include <unordered_set>
#include <vector>

namespace luma {

/// The two sides of the window when a job begins.
struct SyncSides
{
    bool rsync = false;                ///< key-based login works, so rsync compares and transfers
    std::filesystem::path source;      ///< the folder of the source pane; empty when not connected
    std::filesystem::path destination; ///< of the destination pane
};

/// Problems as one line for a panel: the first one, and how many more there are. Empty without any.
QString problemLine(const std::vector<std::string>& problems);

/// Unticks what the user has left unticked in the site's window.
void untickRemembered(std::vector<SyncRow>& rows, const SiteRecord& record, Direction direction);

/// What publishes of the site keep on its destination, reached as `sides` says.
Result<KeptVersions> keptVersionsOf(const SiteRecord& record, const SyncSides& sides,
                                    const ProgramRunner& runProgram);

/// Compares a site's two sides and copies the ticked rows in one direction, with rsync or by itself.
///
/// Lives on the main thread; its jobs run in the background on copies of what they need and report by onMain.
/// A newer job, cancel() and the destructor drop a running job. The names left unticked are remembered in the
/// record; rows that begin unticked, because the receiving side has changed, only if they were before. After a
/// transfer, what both sides have is remembered (PublishedFiles). Only one transfer of a site runs at a time.
class SyncEngine final : public QObject
{
    Q_OBJECT

public:
    /// Failed: the comparison; the rows are those of the one before.
    enum class State { Idle, Comparing, Ready, Empty, Failed, Transferring, Done };

    /// `record` outlives the engine. `runProgram` is called on any thread, even after the engine is destroyed;
    /// `sides` on the main thread when a job begins.
    SyncEngine(SiteRecord& record, ProgramRunner runProgram, std::function<SyncSides()> sides,
               QObject* parent = nullptr);
    ~SyncEngine() override;

    [[nodiscard]] State state() const { return m_state; }
    [[nodiscard]] Direction direction() const { return m_direction; }
    /// The panel's title line.
    [[nodiscard]] const QString& title() const { return m_title; }
    /// What could not be compared or copied, as one line for the panel; empty when all went well.
    [[nodiscard]] const QString& message() const { return m_message; }
    /// How many files and folders the last comparison left alone (IgnoredNames).
    [[nodiscard]] std::size_t ignoredCount() const { return m_ignoredCount; }
    [[nodiscard]] SyncTableModel& table() { return m_table; }
    /// What the user should answer before transfer() is called (guardQuestions).
    [[nodiscard]] QStringList questions() const { return guardQuestions(m_table.rows(), m_counts); }

    /// Fills the table again. With `only`, paths below both folders, only what is at or below one of them is
    /// listed, all ticked but the marked rows; what is left unticked there is not remembered.
    void compare(Direction direction, Deletions deletions, const std::vector<std::string>& only = {});
    /// Ticks only the rows shown at `indexes`, until the end of the next transfer or restoreTicks(). Such ticks
    /// are not remembered.
    void tickOnly(const QModelIndexList& indexes);
    void restoreTicks();
    /// From now on, comparisons leave the file of this path alone. False if no pattern can name it: its name is
    /// not UTF-8.
    bool ignore(const std::string& path);
    /// Does the ticked rows and removes those that are done from the table. Does nothing unless the state is
    /// Ready.
    void transfer();
    /// Ends a transfer. What is done stays done; the message says how much.
    void stop();
    [[nodiscard]] bool isStopping() const { return m_stop && m_stop->isCancelled(); }
    /// The last transfer was stopped; transfer() goes on with the rest.
    [[nodiscard]] bool wasStopped() const { return m_wasStopped; }
    /// Drops the job, ends its programs, and remembers the rows left unticked.
    void cancel();

signals:
    void changed();
    /// How far the transfer is; several times a second, and at its end.
    void progressed(const luma::SyncProgress& done, const luma::SyncTotals& all);
    /// A transfer has ended; both sides may have changed.
    void transferred();

private:
    // Of either mode.
    struct Transferred
    {
        std::vector<std::size_t> done = {};
        std::vector<FileFacts> received = {};
        std::vector<std::string> problems = {};
    };

    // What a transfer keeps, and for how long.
    struct Keeping
    {
        KeptVersions versions;
        KeptPublish publish;
        int days = 0;
    };

    SiteRecord& m_record;
    ProgramRunner m_runProgram;
    std::function<SyncSides()> m_sides;
    SyncTableModel m_table;
    State m_state = State::Idle;
    Direction m_direction = Direction::Upload;
    Deletions m_deletions = Deletions::Ignored; // of the last comparison
    QString m_title;
    QString m_message;
    std::vector<std::string> m_only; // the paths to which the list is limited; empty: all
    std::optional<std::unordered_set<std::string>> m_tickedBefore; // paths, while tickOnly() counts
    WorkItemPointer m_workItem;
    WorkItemPointer m_stop; // cancelled when the running transfer is to stop
    bool m_wasStopped = false;
    std::size_t m_ignoredCount = 0;
    SyncCounts m_counts;
    std::vector<std::string> m_foldersOnlyThere;
    RsyncLeftovers m_leftovers;
    PublishedFiles m_published;        // as to be saved after the next transfer
    std::vector<SyncRow> m_rowsBefore; // of the comparison before the running one, in the same direction

    [[nodiscard]] SyncFolders folders(const SyncSides& sides) const;
    void startItem();
    void dropItem();
    void setState(State state);
    void rememberUnticked();
    [[nodiscard]] IgnoredNames ignoredNames() const;
    void compareFolders(const SyncFolders& folders, Deletions deletions);
    void compareWithRsync(Deletions deletions);
    [[nodiscard]] Result<std::optional<Keeping>> keeping() const;
    void transferFiles(const std::optional<Keeping>& keeping);
    [[nodiscard]] OnProgress progressReporter(const WorkItem& item, const std::vector<SyncRow>& rows);
    void transferWithRsync(const std::optional<Keeping>& keeping);
    void endComparison(const WorkItem& item, Result<ComparisonReport> result);
    void showFailure(const std::vector<std::string>& problems);
    void startTransfer(std::function<Transferred(const WorkItem& item)> transfer,
                       const std::optional<Keeping>& keeping);
    static void removeOld(const std::optional<Keeping>& keeping, const WorkItem& stop,
                          Transferred& transferred);
    void endTransfer(const WorkItem& item, const Transferred& transferred, PublishedFiles published);
};

} // namespace luma
