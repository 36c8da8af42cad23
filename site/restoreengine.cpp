// SPDX-License-Identifier: GPL-3.0-or-later
#include "site/restoreengine.h"

#include "base/mainhop.h"

#include <algorithm>
#include <utility>

namespace luma {

RestoreEngine::RestoreEngine(const SiteRecord& record, ProgramRunner runProgram,
                             std::function<SyncSides()> sides, QObject* parent)
    : QObject(parent), m_record(record), m_runProgram(std::move(runProgram)), m_sides(std::move(sides))
{
    m_table.setRestoring();
}

RestoreEngine::~RestoreEngine()
{
    dropItem();
}

void RestoreEngine::dropItem()
{
    for (WorkItemPointer* const item : {&m_workItem, &m_stop}) {
        if (*item)
            (*item)->cancel();
        item->reset();
    }
}

void RestoreEngine::startItem(State state)
{
    dropItem();
    m_workItem = std::make_shared<WorkItem>();
    m_stop = std::make_shared<WorkItem>();
    setState(state);
}

void RestoreEngine::setState(State state, const std::vector<std::string>& problems)
{
    m_state = state;
    m_message = problemLine(problems);
    emit changed();
}

std::size_t RestoreEngine::tickedConflicts() const
{
    const auto& rows = m_table.rows();
    return static_cast<std::size_t>(std::count_if(
        rows.begin(), rows.end(), [](const SyncRow& row) { return row.select && row.isMarked(); }));
}

void RestoreEngine::list()
{
    m_publishes.clear();
    m_table.setRows({});
    startItem(State::Listing);
    emit listed();
    start(m_workItem, [self = QPointer(this),
                       versions = keptVersionsOf(m_record, m_sides(), m_runProgram)](const WorkItem& item) {
        auto publishes = versions ? versions->list(item) : Result<std::vector<KeptFiles>>(versions.error());
        onMain(self, [&](RestoreEngine& engine) { engine.endListing(item, std::move(publishes)); });
    });
}

void RestoreEngine::endListing(const WorkItem& item, Result<std::vector<KeptFiles>> publishes)
{
    if (&item != m_workItem.get())
        return;
    dropItem();
    if (!publishes) {
        setState(State::Failed, {publishes.error().text});
        return;
    }
    m_publishes = *std::move(publishes);
    emit listed();
    if (m_publishes.empty())
        setState(State::Empty);
    else
        choose(0);
}

void RestoreEngine::choose(std::size_t publish)
{
    if (publish >= m_publishes.size() || m_state == State::Restoring)
        return;
    m_chosen = publish;
    m_table.setRows({});
    startItem(State::Comparing);
    start(m_workItem, [self = QPointer(this), versions = keptVersionsOf(m_record, m_sides(), m_runProgram),
                       kept = m_publishes[publish], site = siteIdentity(m_record)](const WorkItem& item) {
        auto rows = versions ? versions->rows(kept, PublishedFiles::load(site), Direction::Upload, item)
                             : Result<std::vector<SyncRow>>(versions.error());
        onMain(self, [&](RestoreEngine& engine) { engine.endComparison(item, std::move(rows)); });
    });
}

void RestoreEngine::endComparison(const WorkItem& item, Result<std::vector<SyncRow>> rows)
{
    if (&item != m_workItem.get())
        return;
    dropItem();
    if (!rows) {
        setState(State::Failed, {rows.error().text});
        return;
    }
    m_table.setRows(*std::move(rows));
    setState(m_table.rows().empty() ? State::Complete : State::Ready);
}

void RestoreEngine::restore()
{
    if (m_state != State::Ready)
        return;
    startItem(State::Restoring);
    start(m_workItem, [self = QPointer(this), versions = keptVersionsOf(m_record, m_sides(), m_runProgram),
                       publish = m_publishes[m_chosen].publish, rows = m_table.rows(), stop = m_stop,
                       site = siteIdentity(m_record)](const WorkItem& item) {
        RestoreReport report;
        // Unlocked before the window hears of the end.
        if (const auto lock = lockForPublishing(site); !lock)
            report.problems.push_back(lock.error().text);
        else if (!versions)
            report.problems.push_back(versions.error().text);
        else
            report = versions->restore(site, publish, rows, *stop, item);
        onMain(self, [&](RestoreEngine& engine) { engine.endRestore(item, report); });
    });
}

void RestoreEngine::endRestore(const WorkItem& item, const RestoreReport& report)
{
    if (&item == m_workItem.get()) {
        dropItem();
        m_table.removeRowsAt(report.done);
        setState(m_table.rows().empty() ? State::Complete : State::Ready, report.problems);
    }
    emit restored();
}

void RestoreEngine::stop()
{
    if (m_state == State::Restoring && m_stop)
        m_stop->cancel();
}

void RestoreEngine::cancel()
{
    dropItem();
    m_table.setRows({});
    setState(State::Idle);
}

} // namespace luma
