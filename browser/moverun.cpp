// SPDX-License-Identifier: GPL-3.0-or-later
#include "browser/moverun.h"

#include "base/console.h"
#include "base/filecalls.h"
#include "base/mainhop.h"
#include "base/usertext.h"
#include "base/workitem.h"
#include "browser/countedtext.h"
#include "browser/displaytext.h"
#include "browser/joblog.h"
#include "browser/movejobs.h"
#include "browser/movenotices.h"
#include "browser/planpreview.h"
#include "links/sitemoves.h"

#include <utility>

namespace luma {

namespace fs = std::filesystem;

namespace {

using How = JobEnd::How;
using Notices = QPointer<MoveNotices>;

std::string stoppedAtOnce()
{
    return '\n' + MoveRun::tr("Stopped before anything was moved or copied.").toStdString();
}

std::string stoppedInPages()
{
    return '\n' +
           MoveRun::tr("Stopped before all pages were looked at; links in the others are as they were.")
               .toStdString();
}

void addProblem(JobLog& log, const MoveProblem& problem)
{
    if (problem.kind == MoveProblem::Kind::Clash)
        printLine(problem.text);
    log.addLine(problem.text, problem.path);
}

// A move is short and must be complete before the columns are drawn again; a copy may take long and would block the
// window, and so does a server that is silent.
std::function<void(const std::function<void()>&)> fileOperations(MoveOperation operation,
                                                                 const fs::path& site)
{
    if (operation == MoveOperation::Copy || isOnServer(site))
        return {};
    return [](const std::function<void()>& move) { onMain(move); };
}

void tellOfMove(const Notices& notices, const MovedItem& item, const fs::path& site)
{
    onMain(notices, [&](MoveNotices& all) { emit all.itemMoved(item, site); });
}

void tellOfLinks(const Notices& notices, const std::shared_ptr<const LinksUpdate>& update)
{
    if (update)
        onMain(notices, [&](MoveNotices& all) { emit all.linksUpdated(update); });
}

// What a job did to its items.
QString textOf(const std::vector<MovedItem>& items, MoveOperation operation, bool itemsStay)
{
    const MovedItem& first = items.front();
    const QString name = displayText(first.from.filename().native());
    const QString what =
        items.size() == 1 ? name : counted(items.size(), MoveRun::tr("item"), MoveRun::tr("items"));
    const QString folder = displayText(first.to.parent_path().filename().native());
    if (itemsStay)
        return MoveRun::tr("Changed the links to %1").arg(what);
    if (operation == MoveOperation::Copy)
        return MoveRun::tr("Copied %1 to %2").arg(what, folder);
    const bool isRename = items.size() == 1 && first.from.parent_path() == first.to.parent_path();
    return isRename ? MoveRun::tr("Renamed %1 to %2").arg(name, displayText(first.to.filename().native()))
                    : MoveRun::tr("Moved %1 to %2").arg(what, folder);
}

QString pagesText(std::size_t pages)
{
    return pages == 0
               ? MoveRun::tr("no page had to change")
               : MoveRun::tr("%1 changed").arg(counted(pages, MoveRun::tr("page"), MoveRun::tr("pages")));
}

QString linksText(const LinkPlan& plan)
{
    if (plan.pages.empty())
        return pagesText(0);
    return MoveRun::tr("%1 on %2 changed")
        .arg(counted(plan.linkCount(), MoveRun::tr("link"), MoveRun::tr("links")),
             counted(plan.pages.size(), MoveRun::tr("page"), MoveRun::tr("pages")));
}

QString joined(const QString& first, const QString& second)
{
    return first + QStringLiteral("; ") + second;
}

QString doneText(const LinkPlan& plan)
{
    if (plan.text)
        return joined(displayText(plan.text->title),
                      MoveRun::tr("%1 in %2 changed")
                          .arg(counted(plan.text->places, MoveRun::tr("place"), MoveRun::tr("places")),
                               counted(plan.pages.size(), MoveRun::tr("file"), MoveRun::tr("files"))));
    if (plan.request.items.empty())
        return {};
    QString text =
        joined(textOf(plan.request.items, plan.request.operation, plan.request.itemsStay()), linksText(plan));
    if (!plan.notes.empty())
        text = joined(text, counted(plan.notes.size(), MoveRun::tr("note"), MoveRun::tr("notes")));
    return text;
}

QString stoppedText()
{
    return MoveRun::tr("Stopped; everything is as it was before.");
}

} // namespace

MoveRun::MoveRun(fs::path site, MoveJobs* jobs, Notices notices, std::shared_ptr<SiteMoves> moves)
    : m_site(std::move(site)), m_jobs(jobs), m_notices(std::move(notices)), m_moves(std::move(moves))
{}

MoveRun::~MoveRun() = default;

void MoveRun::begin(std::shared_ptr<JobLog> log, StillWanted stillWanted, Done done)
{
    m_log = std::move(log);
    m_stillWanted = std::move(stillWanted);
    m_done = std::move(done);
}

Result<void> MoveRun::open(MoveOperation operation)
{
    MoveRunner::Callbacks callbacks;
    callbacks.fileOperation = fileOperations(operation, m_site);
    callbacks.itemMoved = [notices = m_notices, site = m_site](const MovedItem& item) {
        tellOfMove(notices, item, site);
    };
    callbacks.stillWanted = m_stillWanted;
    if (m_moves) {
        m_moves->setCallbacks(std::move(callbacks));
    } else {
        auto moves = SiteMoves::open(m_site, std::move(callbacks));
        if (!moves)
            return moves.error();
        m_moves = std::make_shared<SiteMoves>(*std::move(moves));
    }
    showRecovered(m_moves->recovered());
    return {};
}

void MoveRun::move(const MoveRequest& request, std::optional<int> askAbove)
{
    if (auto opened = open(request.operation); !opened) {
        fail(opened.error(), request);
        return;
    }
    auto plan = planMove(request, m_stillWanted);
    if (!plan) {
        fail(plan.error(), request);
        return;
    }
    const bool isMany = askAbove && plan->pages.size() > static_cast<std::size_t>(*askAbove);
    const bool isOfLinks = request.itemsStay();
    const bool breaksLinks = !plan->stayingPages().empty();
    if (isOfLinks && !plan->problems.empty() && plan->request.items.empty()) {
        fail(Error{plan->problems.front().text}, request);
    } else if ((isMany || isOfLinks || breaksLinks) && takeRenameBack(plan->request)) {
        plan->request.isRenamedAlready = false;
        ask(*std::move(plan), isMany && !isOfLinks ? askAbove : std::nullopt);
    } else {
        m_plan = std::make_shared<const LinkPlan>(*std::move(plan));
        carryOut();
    }
}

void MoveRun::changeText(const TextPlan& makePlan, Shown shown)
{
    if (auto opened = open(MoveOperation::Move); !opened) {
        fail(opened.error(), {});
        return;
    }
    auto plan = makePlan(m_stillWanted);
    if (!plan)
        fail(plan.error(), {});
    else if (shown == Shown::First || !plan->stayingPages().empty())
        ask(*std::move(plan), std::nullopt);
    else {
        m_plan = std::make_shared<const LinkPlan>(*std::move(plan));
        carryOut();
    }
}

void MoveRun::fail(const Error& error, const MoveRequest& request)
{
    m_log->addText(error.isStopped() ? stoppedAtOnce() : error.text);
    const bool isBack = takeRenameBack(request);
    if (error.isStopped() && isBack)
        end({.how = How::Stopped, .status = stoppedText(), .goOn = m_goOn});
    else
        end({.how = How::Failed, .status = tr("Not done: %1").arg(displayText(error.text))});
}

// The site is free before the user can begin another job.
void MoveRun::end(const JobEnd& end)
{
    m_moves.reset();
    m_done(end);
}

JobEnd MoveRun::endOf(const MoveReport& report, const QString& done,
                      const std::vector<MoveProblem>& problems) const
{
    if (report.isStopped && report.problems.empty())
        return {.how = How::Stopped, .status = stoppedText(), .goOn = m_goOn};
    const std::size_t count = problems.size() + report.problems.size();
    if (count == 0)
        return {.status = done.isEmpty() ? tr("There was nothing to change.") : done};
    const MoveProblem& first = problems.empty() ? report.problems.front() : problems.front();
    if (!report.isDone)
        return {.how = How::Failed, .status = tr("Not done: %1").arg(displayText(first.text))};
    return {.how = How::Failed, .status = joined(done, counted(count, tr("problem"), tr("problems")))};
}

// What could not be taken back can be tried again.
void MoveRun::keepUndo(const QString& title)
{
    if (!title.isEmpty())
        onMain(m_jobs, [&](MoveJobs& jobs) { emit jobs.moved(title, m_site); });
}

// Whatever happens while the user looks at the plan, a renamed item has its old name.
void MoveRun::ask(LinkPlan plan, std::optional<int> askAbove)
{
    m_plan = std::make_shared<const LinkPlan>(std::move(plan));
    const auto answered = [self = shared_from_this()](bool isAccepted) {
        start(std::make_shared<WorkItem>(),
              [self, isAccepted](const WorkItem&) { self->answer(isAccepted); });
    };
    onMain(m_jobs, [&](MoveJobs& jobs) { jobs.showPlan(m_plan, askAbove, answered); });
}

void MoveRun::answer(bool isAccepted)
{
    if (isAccepted) {
        carryOut();
        return;
    }
    const QString text = tr("Cancelled; everything is as it was before.");
    m_log->addText(text.toStdString());
    end({.status = text});
}

void MoveRun::carryOut()
{
    for (const MoveProblem& problem : m_plan->problems)
        addProblem(*m_log, problem);
    for (const PlanNote& note : m_plan->notes)
        m_log->addLine(note.page.lexically_relative(m_site).native() + ": " + note.text, note.page);
    const MoveReport report = m_moves->carryOut(*m_plan);
    for (const MovedItem& item : report.items)
        m_log->addText(userText(QT_TRANSLATE_NOOP("luma::Engines", "Updating links to: %1"),
                                {item.from.filename().native()}) +
                       "\n\n");
    show(report);
    JobEnd ended = endOf(report, doneText(*m_plan), m_plan->problems);
    ended.isUndoable = report.isDone;
    if (report.isDone)
        onMain(m_jobs, [this](MoveJobs& jobs) { emit jobs.moved(PlanPreview::actionName(*m_plan), m_site); });
    end(ended);
}

// The columns had renamed the item, which gets its old name again. False if it can't.
bool MoveRun::takeRenameBack(const MoveRequest& request) const
{
    if (!request.isRenamedAlready || request.isMovedOutside || !m_moves)
        return true;
    const MoveReport report = m_moves->takeRenameBack();
    for (const MoveProblem& problem : report.problems)
        m_log->addLine(problem.text);
    tellOfLinks(m_notices, std::make_shared<const LinksUpdate>(LinksUpdate{request.items, {}, {}}));
    return report.problems.empty();
}

void MoveRun::undo(const WebRules& rules, const QString& title)
{
    if (auto opened = open(MoveOperation::Move); !opened) {
        m_log->addLine(opened.error().text);
        keepUndo(title);
        end({.how = How::Failed, .status = tr("Not done: %1").arg(displayText(opened.error().text))});
        return;
    }
    if (!m_moves->undoTitle()) {
        const QString text = tr("There is nothing to take back.");
        m_log->addText(text.toStdString());
        end({.status = text});
        return;
    }
    const MoveReport report = m_moves->undo(rules);
    if (report.isDone)
        m_log->addText(tr("Took back: %1").arg(displayText(report.title)).toStdString() + "\n\n");
    show(report);
    const auto blocked =
        report.isDone || report.isStopped || report.problems.empty() ? std::nullopt : m_moves->undoTitle();
    if (!blocked) {
        if (!report.isDone && m_moves->undoTitle())
            keepUndo(title);
        end(endOf(
            report,
            joined(tr("Took back: %1").arg(displayText(report.title)), pagesText(report.rewritten.size())),
            {}));
        return;
    }
    const QString reason = displayText(*blocked) + u'\n' + displayText(report.problems.front().text);
    const auto answered = [self = shared_from_this(), title](bool isAccepted) {
        start(std::make_shared<WorkItem>(),
              [self, isAccepted, title](const WorkItem&) { self->skip(isAccepted, title); });
    };
    onMain(m_jobs, [&](MoveJobs& jobs) { jobs.offerSkip(reason, answered); });
}

void MoveRun::skip(bool isAccepted, const QString& title)
{
    const auto skipped = isAccepted ? m_moves->skipUndo() : std::nullopt;
    if (skipped)
        m_log->addText('\n' + tr("Left as it is: %1").arg(displayText(*skipped)).toStdString());
    else
        keepUndo(title);
    end({.status = skipped ? tr("Left as it is: %1").arg(displayText(*skipped))
                           : tr("Not taken back; everything is as it was before.")});
}

void MoveRun::showEnded(const std::vector<MoveReport>& reports)
{
    showRecovered(reports);
    JobEnd ended{.status = tr("An interrupted move was finished or taken back.")};
    for (const MoveReport& report : reports) {
        if (!report.problems.empty())
            ended.how = How::Failed;
    }
    end(ended);
}

void MoveRun::update(const Update& update, MoveOperation operation)
{
    LinkUpdatingMove::Callbacks callbacks;
    callbacks.log = [this](const std::string& text) { m_log->addText(text); };
    callbacks.problem = [this](const MoveProblem& problem) { addProblem(*m_log, problem); };
    callbacks.fileOperation = fileOperations(operation, m_site);
    callbacks.itemMoved = [this](const MovedItem& moved) { tellOfMove(m_notices, moved, m_site); };
    callbacks.stillWanted = m_stillWanted;
    LinkUpdatingMove move(m_site, callbacks);
    const MoveOutcome outcome = update(move);
    if (!outcome.complete)
        m_log->addText(outcome.moved.empty() ? stoppedAtOnce() : stoppedInPages());
    tellOfLinks(m_notices, outcome.links);
    MoveReport report;
    report.isDone = !outcome.moved.empty();
    report.problems = outcome.problems;
    const QString done =
        report.isDone ? joined(textOf(outcome.moved, operation, false), pagesText(outcome.rewritten.size()))
                      : QString();
    JobEnd ended = endOf(report, done, {});
    if (!outcome.complete && !report.isDone)
        ended = {.how = How::Stopped, .status = stoppedText(), .goOn = m_goOn};
    else if (!outcome.complete)
        ended = {.how = How::Stopped, .status = joined(done, tr("stopped before all pages were looked at"))};
    end(ended);
}

void MoveRun::showRecovered(const std::vector<MoveReport>& reports) const
{
    for (const MoveReport& report : reports) {
        if (!report.title.empty())
            m_log->addText((report.isDone ? tr("Finished what was interrupted: %1")
                                          : tr("Took back what was interrupted: %1"))
                               .arg(displayText(report.title))
                               .toStdString() +
                           "\n\n");
        show(report);
    }
}

/// Shows what a job did, and passes it on to what is open.
void MoveRun::show(const MoveReport& report) const
{
    for (const fs::path& page : report.rewritten) {
        const fs::path subpath = page.lexically_relative(m_site);
        m_log->addLine(subpath.native(), page);
    }
    for (const MoveProblem& problem : report.problems)
        addProblem(*m_log, problem);
    if (report.isDone || report.problems.empty())
        m_log->addText('\n' + (report.isStopped ? stoppedText() : tr("Done")).toStdString());
    else
        m_log->addText('\n' + tr("Everything is as it was before.").toStdString());
    tellOfLinks(m_notices, report.links);
}

} // namespace luma
