// SPDX-License-Identifier: GPL-3.0-or-later
#include "browser/movejobs.h"

#include "base/mainhop.h"
#include "base/pathbelow.h"
#include "browser/movenotices.h"
#include "browser/moverun.h"
#include "browser/planpreview.h"
#include "links/sitelinks.h"
#include "links/sitemoves.h"
#include "links/sitenames.h"
#include "links/sitesearch.h"

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>

#include <algorithm>
#include <memory>
#include <optional>

namespace luma {

namespace fs = std::filesystem;

namespace {

QString updateStatus()
{
    return MoveJobs::tr("Please wait while links in all possible files are being updated...");
}

// For the next move, in the background.
void keepLinks(const std::shared_ptr<SiteLinks>& links, const WebRules& rules)
{
    start(std::make_shared<WorkItem>(), [links, rules](const WorkItem&) {
        (void)links->findMissing(
            rules, [](const WebPage&) {}, [] { return !isMainHopClosed(); });
        links->store();
    });
}

} // namespace

MoveJobs::MoveJobs(ProgressReporter& reporter, MoveNotices& notices, QWidget* pane)
    : PanelJobs(Kind::Update, reporter, pane), m_notices(&notices), m_pane(pane)
{}

void MoveJobs::acceptDrop(const fs::path& site, const Drop& drop, const std::vector<fs::path>& siteFolders,
                          const ReportChoices& choices)
{
    if (choices.linkRules == LinkRules::Letter) {
        beginUpdate(
            site,
            [drop](LinkUpdatingMove& move) { return move.run(drop.operation, drop.items, drop.folder); },
            drop.operation);
        return;
    }
    MoveRequest request{site, {}, drop.operation, {}, choices.webRules};
    for (const fs::path& item : drop.items)
        request.items.push_back({item, drop.folder / item.filename()});
    const auto holdsAll = [&drop](const fs::path& folder) {
        return std::all_of(drop.items.begin(), drop.items.end(), [&folder](const fs::path& item) {
            return isAtOrBelow(item.native(), folder.native());
        });
    };
    if (const auto root = std::find_if(siteFolders.begin(), siteFolders.end(), holdsAll);
        root != siteFolders.end() && !holdsAll(site))
        request.sourceRoot = *root;
    beginMove(std::move(request), choices.askAbove);
}

Result<void> MoveJobs::prepareRename(const fs::path& site, const fs::path& oldPath, const fs::path& newPath,
                                     const ReportChoices& choices)
{
    m_renaming.reset();
    if (choices.linkRules == LinkRules::Letter)
        return {};
    auto moves = SiteMoves::open(site);
    if (!moves)
        return moves.error();
    if (auto noted = moves->noteRename({oldPath, newPath}); !noted)
        return noted;
    m_renaming = std::make_shared<SiteMoves>(*std::move(moves));
    return {};
}

void MoveJobs::dropRename()
{
    if (m_renaming)
        (void)m_renaming->takeRenameBack();
    m_renaming.reset();
}

void MoveJobs::updateAfterRename(const fs::path& site, const fs::path& oldPath, const fs::path& newPath,
                                 const ReportChoices& choices)
{
    if (choices.linkRules == LinkRules::Letter)
        beginUpdate(
            site,
            [oldPath, newPath](LinkUpdatingMove& move) { return move.updateAfterRename(oldPath, newPath); },
            MoveOperation::Move);
    else
        beginMove({site, {}, MoveOperation::Move, {{oldPath, newPath}}, choices.webRules, true},
                  choices.askAbove, std::exchange(m_renaming, nullptr));
}

void MoveJobs::rename(const fs::path& site, const fs::path& oldPath, const fs::path& newPath,
                      const ReportChoices& choices)
{
    if (choices.linkRules == LinkRules::Letter)
        beginUpdate(
            site,
            [oldPath, newPath](LinkUpdatingMove& move) {
                return move.rename(oldPath, newPath.filename().native());
            },
            MoveOperation::Move);
    else
        beginMove({site, {}, MoveOperation::Move, {{oldPath, newPath}}, choices.webRules}, choices.askAbove);
}

void MoveJobs::replaceLinks(const fs::path& site, const fs::path& target, const fs::path& file,
                            const ReportChoices& choices)
{
    MoveRequest request{site, {}, MoveOperation::Move, {{target, file}}, choices.webRules};
    request.changesLinksOnly = true;
    beginMove(std::move(request), {});
}

void MoveJobs::followItems(const fs::path& site, const std::vector<MovedItem>& items,
                           const ReportChoices& choices)
{
    MoveRequest request{site, {}, MoveOperation::Move, items, choices.webRules, true};
    request.isMovedOutside = true;
    beginMove(std::move(request), {});
}

void MoveJobs::replaceText(const fs::path& site, const SiteQuery& query, const QString& replacement,
                           const std::vector<WantedPlaces>& places)
{
    beginTextChange(
        site, tr("Replacing text..."),
        [site, query, replacement, places](const StillWanted& stillWanted) {
            return planReplacement(site, query, replacement, places, stillWanted);
        },
        MoveRun::Shown::Not);
}

void MoveJobs::renameName(const fs::path& site, bool isId, const std::string& name,
                          const std::string& newName, const ReportChoices& choices)
{
    beginTextChange(
        site, isId ? tr("Renaming an id...") : tr("Renaming a class..."),
        [site, isId, name, newName, rules = choices.webRules](const StillWanted& stillWanted) {
            return planNameChange(site, isId, name, newName, rules, stillWanted);
        },
        MoveRun::Shown::First);
}

void MoveJobs::beginTextChange(const fs::path& site, const QString& status, const MoveRun::TextPlan& makePlan,
                               MoveRun::Shown shown)
{
    const auto run = std::make_shared<MoveRun>(site, this, m_notices);
    run->setGoOn([guard = QPointer(this), site, status, makePlan, shown] {
        if (guard)
            guard->beginTextChange(site, status, makePlan, shown);
    });
    beginLong(status, [run, makePlan, shown](const WorkItemPointer& item, const std::shared_ptr<JobLog>& log,
                                             const Done& done) {
        run->begin(log, wantedAs(item), done);
        run->changeText(makePlan, shown);
    });
}

void MoveJobs::beginMove(MoveRequest request, std::optional<int> askAbove, std::shared_ptr<SiteMoves> moves)
{
    request.keptLinks = m_keptLinks;
    const auto run = std::make_shared<MoveRun>(request.site, this, m_notices, std::move(moves));
    run->setGoOn([guard = QPointer(this), again = request, askAbove]() mutable {
        // A stop has given a renamed item its old name back.
        again.isRenamedAlready = again.isMovedOutside;
        if (guard)
            guard->beginMove(again, askAbove);
    });
    beginLong(updateStatus(),
              [run, request = std::move(request),
               askAbove](const WorkItemPointer& item, const std::shared_ptr<JobLog>& log, const Done& done) {
                  run->begin(log, wantedAs(item),
                             [done, links = request.keptLinks, rules = request.rules](const JobEnd& end) {
                                 done(end);
                                 if (links)
                                     keepLinks(links, rules);
                             });
                  run->move(request, askAbove);
              });
}

void MoveJobs::undoMove(const fs::path& site, const ReportChoices& choices, const QString& title)
{
    const auto run = std::make_shared<MoveRun>(site, this, m_notices);
    run->setGoOn([guard = QPointer(this), site, choices, title] {
        if (guard)
            guard->undoMove(site, choices, title);
    });
    beginLong(updateStatus(),
              [run, rules = choices.webRules, title](const WorkItemPointer& item,
                                                     const std::shared_ptr<JobLog>& log, const Done& done) {
                  run->begin(log, wantedAs(item), done);
                  run->undo(rules, title);
              });
}

void MoveJobs::endInterrupted(const fs::path& site)
{
    const auto run = std::make_shared<MoveRun>(site, this, m_notices);
    start(std::make_shared<WorkItem>(), [guard = QPointer(this), run, site](const WorkItem&) {
        const std::vector<MoveReport> reports = SiteMoves::recover(site);
        const auto show = [run, reports](const WorkItemPointer& item, const std::shared_ptr<JobLog>& log,
                                         const Done& done) {
            run->begin(log, wantedAs(item), done);
            run->showEnded(reports);
        };
        if (!reports.empty())
            onMain(guard, [&show](MoveJobs& self) {
                self.beginLong(tr("An interrupted move was finished or taken back."), show);
            });
    });
}

void MoveJobs::showPlan(const std::shared_ptr<const LinkPlan>& plan, std::optional<int> askAbove,
                        const Answered& answered)
{
    QWidget* const sheet = QApplication::activeModalWidget();
    QWidget* const window = m_pane->window();
    const bool isOnSheet = sheet && sheet->parentWidget() == window;
    auto* const preview = new PlanPreview(plan, askAbove, isOnSheet ? sheet : window);
    connect(preview, &PlanPreview::askingStopped, this, &MoveJobs::askingStopped);
    setStatus(tr("Nothing is changed yet: the changes are shown first."));
    connect(preview, &QDialog::finished, this, [this, answered](int result) {
        setStatus(updateStatus());
        answered(result == QDialog::Accepted);
    });
    preview->open();
}

void MoveJobs::offerSkip(const QString& reason, const Answered& answered)
{
    QWidget* const sheet = QApplication::activeModalWidget();
    QWidget* const window = m_pane->window();
    const bool isOnSheet = sheet && sheet->parentWidget() == window;
    auto* const question = new QMessageBox(QMessageBox::Question, tr("Undo"), tr("This can't be taken back."),
                                           QMessageBox::NoButton, isOnSheet ? sheet : window);
    question->setObjectName(QStringLiteral("skipUndoAlert"));
    question->setAttribute(Qt::WA_DeleteOnClose);
    question->setTextFormat(Qt::PlainText);
    question->setInformativeText(
        reason + QStringLiteral("\n\n") +
        tr("Leave it as it is for good? Edit > Undo then takes back what was done before it."));
    QPushButton* const skip = question->addButton(tr("Leave It"), QMessageBox::AcceptRole);
    QPushButton* const cancel = question->addButton(tr("Cancel"), QMessageBox::RejectRole);
    question->setDefaultButton(cancel);
    question->setEscapeButton(cancel);
    connect(question, &QDialog::finished, this,
            [answered, question, skip] { answered(question->clickedButton() == skip); });
    question->open();
}

void MoveJobs::beginUpdate(const fs::path& site, MoveRun::Update update, MoveOperation operation)
{
    const auto run = std::make_shared<MoveRun>(site, this, m_notices);
    run->setGoOn([guard = QPointer(this), site, update, operation] {
        if (guard)
            guard->beginUpdate(site, update, operation);
    });
    beginLong(updateStatus(),
              [run, update = std::move(update),
               operation](const WorkItemPointer& item, const std::shared_ptr<JobLog>& log, const Done& done) {
                  run->begin(log, wantedAs(item), done);
                  run->update(update, operation);
              });
}

} // namespace luma
