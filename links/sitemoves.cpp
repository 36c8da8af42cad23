// SPDX-License-Identifier: GPL-3.0-or-later
#include "links/sitemoves.h"

#include "base/usertext.h"
#include "links/movedlinks.h"

#include <utility>

namespace luma {

namespace fs = std::filesystem;

namespace {

MoveReport failed(const fs::path& path, const std::string& text)
{
    MoveReport report;
    report.problems.push_back({MoveProblem::Kind::NotMoved, path, text});
    return report;
}

std::vector<LinksUpdate::File> rewrittenFiles(const std::vector<PageRewrite>& pages)
{
    std::vector<LinksUpdate::File> files;
    files.reserve(pages.size());
    for (const PageRewrite& page : pages)
        files.push_back({page.page, page.oldHash, page.newHash});
    return files;
}

LinksUpdate::Updated updatedBy(std::shared_ptr<const MovedLinks> links)
{
    if (!links)
        return {};
    return [links = std::move(links)](std::string_view source, const fs::path& oldFile,
                                      const fs::path& newFile) {
        return links->updated(source, oldFile, newFile);
    };
}

LinksUpdate::Updated updatedBy(const LinkPlan& plan)
{
    return plan.text ? plan.text->updated : updatedBy(plan.links);
}

std::shared_ptr<const LinksUpdate> updateOf(const MoveReport& report, LinksUpdate::Updated updated,
                                            std::vector<LinksUpdate::File> files, const std::string& action)
{
    LinksUpdate update;
    update.action = action;
    if (report.isMove)
        update.items = report.items;
    if (report.isDone) {
        update.files = std::move(files);
        update.updated = std::move(updated);
    }
    const bool hasChanged = report.isMove || !update.files.empty();
    return hasChanged ? std::make_shared<const LinksUpdate>(std::move(update)) : nullptr;
}

} // namespace

Result<SiteMoves> SiteMoves::open(const fs::path& site, MoveRunner::Callbacks callbacks)
{
    auto journal = MoveJournal::open(site);
    if (!journal)
        return journal.error();
    SiteMoves moves(site, *std::move(journal), std::move(callbacks));
    moves.endInterrupted();
    return moves;
}

std::vector<MoveReport> SiteMoves::recover(const fs::path& site)
{
    if (!MoveJournal::isPending(site))
        return {};
    const auto moves = open(site);
    return moves ? moves->recovered() : std::vector<MoveReport>();
}

void SiteMoves::endInterrupted()
{
    std::vector<fs::path> damaged;
    for (MoveJournal::Entry& entry : m_journal.running(damaged)) {
        MoveRunner::Callbacks callbacks = m_callbacks;
        callbacks.stillWanted = {};
        m_recovered.push_back(
            MoveRunner(m_journal, std::move(entry), callbacks, MoveRunner::ChangedPages::LeftAlone).resume());
    }
    for (const fs::path& file : damaged)
        m_recovered.push_back(
            failed(file, userText(QT_TRANSLATE_NOOP("luma::Engines",
                                                    "%1: the journal of an interrupted move can't be read"),
                                  {file.native()})));
}

Result<void> SiteMoves::noteRename(const MovedItem& item)
{
    LinkPlan plan;
    plan.request.items = {item};
    MoveJob job = jobOf(plan);
    const auto number = m_journal.begin(job, MoveRunner::backNote);
    if (!number)
        return number.error();
    m_rename = {*number, std::move(job), {std::string(MoveRunner::backNote)}};
    return {};
}

MoveReport SiteMoves::takeRenameBack()
{
    if (!m_rename)
        return {};
    MoveJournal::Entry entry = *std::exchange(m_rename, std::nullopt);
    return MoveRunner(m_journal, std::move(entry), m_callbacks, MoveRunner::ChangedPages::LeftAlone).resume();
}

MoveReport SiteMoves::runJob(MoveJob job, MoveRunner::ChangedPages changedPages)
{
    const auto number = m_journal.begin(job);
    if (!number) {
        (void)takeRenameBack();
        return failed({}, number.error().text);
    }
    if (m_rename)
        m_journal.forgetRunning(m_rename->number);
    m_rename.reset();
    return MoveRunner(m_journal, {*number, std::move(job), {}}, m_callbacks, changedPages).run();
}

MoveReport SiteMoves::carryOut(const LinkPlan& plan)
{
    const bool itemsStay = plan.text || plan.request.itemsStay();
    const bool isNothing = itemsStay && plan.pages.empty() && plan.symlinks.empty();
    if ((plan.request.items.empty() && !plan.text) || isNothing)
        return {};
    MoveReport report = runJob(jobOf(plan), MoveRunner::ChangedPages::Refused);
    // The originals of copies, and their links, stay as they are.
    if (plan.request.operation == MoveOperation::Move)
        report.links = updateOf(report, updatedBy(plan), rewrittenFiles(plan.pages),
                                plan.text ? plan.text->action : std::string());
    return report;
}

std::optional<std::string> SiteMoves::undoTitle() const
{
    const auto last = m_journal.lastDone();
    return last ? std::optional(titleOf(last->job)) : std::nullopt;
}

std::optional<std::string> SiteMoves::skipUndo()
{
    const auto last = m_journal.lastDone();
    if (!last)
        return std::nullopt;
    m_journal.forgetDone(last->number);
    return titleOf(last->job);
}

MoveReport SiteMoves::undo(const WebRules& rules)
{
    const auto last = m_journal.lastDone();
    if (!last)
        return failed({}, userText(QT_TRANSLATE_NOOP("luma::Engines", "There is no move to take back")));
    MoveJob job = inverseOf(last->job);
    job.undoes = last->number;
    // If the site can't be read, documents that are open keep the links that they have.
    std::shared_ptr<const MovedLinks> links;
    if (job.kind == MoveJob::Kind::Move) {
        if (auto tree = SiteTree::read(m_site))
            links = MovedLinks::of({m_site, {}, MoveOperation::Move, job.items, rules}, *std::move(tree));
    }
    std::vector<LinksUpdate::File> files = rewrittenFiles(job.pages);
    const std::string action = job.kind == MoveJob::Kind::Text
                                   ? userText(QT_TRANSLATE_NOOP("luma::Engines", "Take Back"))
                                   : std::string();
    MoveReport report = runJob(std::move(job), MoveRunner::ChangedPages::LeftAlone);
    report.title = titleOf(last->job);
    report.links = updateOf(report, updatedBy(std::move(links)), std::move(files), action);
    return report;
}

} // namespace luma
