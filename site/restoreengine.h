// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "site/keptversions.h"
#include "site/syncengine.h"

#include <functional>
#include <vector>

namespace luma {

/// Puts back what publishes have replaced or deleted on a site's destination, with rsync or by itself.
///
/// Lives on the main thread; its jobs run in the background on copies of what they need and report by onMain.
/// A newer job, cancel() and the destructor drop a running one. Nothing is put back while the site is being
/// published.
class RestoreEngine final : public QObject
{
    Q_OBJECT

public:
    /// Empty: no publish has kept anything. Complete: all is in place.
    enum class State { Idle, Listing, Comparing, Ready, Empty, Complete, Failed, Restoring };

    /// As of SyncEngine.
    RestoreEngine(const SiteRecord& record, ProgramRunner runProgram, std::function<SyncSides()> sides,
                  QObject* parent = nullptr);
    ~RestoreEngine() override;

    [[nodiscard]] State state() const { return m_state; }
    /// What could not be done, as one line; empty when all went well.
    [[nodiscard]] const QString& message() const { return m_message; }
    /// The newest first, once listed() was emitted.
    [[nodiscard]] const std::vector<KeptFiles>& publishes() const { return m_publishes; }
    /// The files of the chosen publish that are not in place.
    [[nodiscard]] SyncTableModel& table() { return m_table; }
    /// How many ticked rows would replace what has been changed since the last publish.
    [[nodiscard]] std::size_t tickedConflicts() const;

    /// Lists the publishes and chooses the last one.
    void list();
    /// Fills the table for that publish.
    void choose(std::size_t publish);
    /// Puts the ticked rows back and removes those that are done from the table. Does nothing unless Ready.
    void restore();
    /// Ends restore(). What is done stays done.
    void stop();
    /// Drops the job and ends its programs.
    void cancel();

signals:
    void listed();
    void changed();
    /// Files were put back.
    void restored();

private:
    const SiteRecord& m_record;
    ProgramRunner m_runProgram;
    std::function<SyncSides()> m_sides;
    SyncTableModel m_table;
    State m_state = State::Idle;
    QString m_message;
    std::vector<KeptFiles> m_publishes;
    std::size_t m_chosen = 0;
    WorkItemPointer m_workItem;
    WorkItemPointer m_stop;

    void startItem(State state);
    void dropItem();
    void setState(State state, const std::vector<std::string>& problems = {});
    void endListing(const WorkItem& item, Result<std::vector<KeptFiles>> publishes);
    void endComparison(const WorkItem& item, Result<std::vector<SyncRow>> rows);
    void endRestore(const WorkItem& item, const RestoreReport& report);
};

} // namespace luma
