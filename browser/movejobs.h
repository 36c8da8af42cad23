// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/result.h"
#include "browser/droptarget.h"
#include "browser/moverun.h"
#include "browser/paneljobs.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

class QWidget;

namespace luma {

class MoveNotices;
class SiteLinks;
class SiteMoves;
struct LinkPlan;
struct MoveRequest;
struct ReportChoices;
struct SiteQuery;
struct WantedPlaces;

/// The jobs of a pane that move, rename or copy items of its site and update the links, and take that back. As a browser reads
/// links, a job that is stopped or fails is taken back. What is open elsewhere hears of it through the notices, even if the
/// pane is gone by then. Where a plan changes more pages than the user wants changed unasked, or links would break because a page
/// can't be changed, it is shown first; until it is accepted, everything is as it was. Main thread only.
class MoveJobs final : public PanelJobs
{
    Q_OBJECT

public:
    /// While the window closes, `reporter` and `notices` may be destroyed first.
    MoveJobs(ProgressReporter& reporter, MoveNotices& notices, QWidget* pane);

    /// What is kept of the site's links, so that a move as a browser reads links reads fewer pages.
    void setKeptLinks(std::shared_ptr<SiteLinks> links) { m_keptLinks = std::move(links); }

    /// Moves or copies the dropped items and updates the links of `site`. As a browser reads links, an item that comes from
    /// another one of `siteFolders` keeps its relations.
    void acceptDrop(const std::filesystem::path& site, const Drop& drop,
                    const std::vector<std::filesystem::path>& siteFolders, const ReportChoices& choices);
    /// To be called before an item is renamed on disk. As a browser reads links, an interruption from now on gives it its old
    /// name back. Error: it must not be renamed, because another job is running.
    Result<void> prepareRename(const std::filesystem::path& site, const std::filesystem::path& oldPath,
                               const std::filesystem::path& newPath, const ReportChoices& choices);
    /// The item could not be renamed.
    void dropRename();
    /// The item is renamed: updates the links to it.
    void updateAfterRename(const std::filesystem::path& site, const std::filesystem::path& oldPath,
                           const std::filesystem::path& newPath, const ReportChoices& choices);
    /// Renames an item in the background, and updates the links to it.
    void rename(const std::filesystem::path& site, const std::filesystem::path& oldPath,
                const std::filesystem::path& newPath, const ReportChoices& choices);
    /// Shows a plan by which all links of `site` follow items that another program has moved.
    void followItems(const std::filesystem::path& site, const std::vector<MovedItem>& items,
                     const ReportChoices& choices);
    /// Finishes or takes back what was interrupted in `site`, if there is something, and says so.
    void endInterrupted(const std::filesystem::path& site);
    /// Takes the last job in `site` back that moved, renamed or copied as a browser reads links. `title` is what moved() called
    /// it, and calls it again if it could not be taken back; empty for a job of an earlier day.
    void undoMove(const std::filesystem::path& site, const ReportChoices& choices, const QString& title = {});
    /// Shows a plan by which all links of `site` that lead to `target`, where nothing need be, lead to `file`.
    void replaceLinks(const std::filesystem::path& site, const std::filesystem::path& target,
                      const std::filesystem::path& file, const ReportChoices& choices);

    /// Replaces these places of the site's files, which `query` has found.
    void replaceText(const std::filesystem::path& site, const SiteQuery& query, const QString& replacement,
                     const std::vector<WantedPlaces>& places);

    /// Shows a plan by which a class or id has another name in all pages and style sheets of `site`.
    void renameName(const std::filesystem::path& site, bool isId, const std::string& name,
                    const std::string& newName, const ReportChoices& choices);

    using Answered = std::function<void(bool isAccepted)>;
    /// Called by a job that has made a plan. With `askAbove`, the user can choose not to be asked. `answered` is dropped if the
    /// window closes first.
    void showPlan(const std::shared_ptr<const LinkPlan>& plan, std::optional<int> askAbove,
                  const Answered& answered);

    /// Called by a job that could not take the last one back, for this reason: asks whether to leave that as it is for good.
    void offerSkip(const QString& reason, const Answered& answered);

signals:
    /// A job in `site` is done that undoMove() takes back, or still is after one that could not. `title` says what it was:
    /// "Rename".
    void moved(const QString& title, const std::filesystem::path& site);
    /// The user doesn't want to be asked before many pages change.
    void askingStopped();

private:
    QPointer<MoveNotices> m_notices;
    QWidget* m_pane;
    std::shared_ptr<SiteLinks> m_keptLinks;
    std::shared_ptr<SiteMoves> m_renaming; // holds the site from prepareRename() on

    void beginUpdate(const std::filesystem::path& site, MoveRun::Update update, MoveOperation operation);
    void beginTextChange(const std::filesystem::path& site, const QString& status,
                         const MoveRun::TextPlan& makePlan, MoveRun::Shown shown);
    void beginMove(MoveRequest request, std::optional<int> askAbove, std::shared_ptr<SiteMoves> moves = {});
};

} // namespace luma
