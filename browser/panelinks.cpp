// SPDX-License-Identifier: GPL-3.0-or-later
#include "browser/panelinks.h"

#include "base/mainhop.h"
#include "base/workitem.h"
#include "browser/linkjobs.h"
#include "browser/linkreportpanel.h"
#include "browser/movejobs.h"
#include "browser/movenotices.h"
#include "browser/outsidemoves.h"
#include "browser/panehost.h"
#include "browser/sitefindpanel.h"
#include "browser/sitenamespanel.h"
#include "browser/unlinkeditemspanel.h"
#include "links/lostlinks.h"
#include "links/sitelinks.h"
#include "links/sitemoves.h"

#include <QPointer>
#include <QWidget>

#include <utility>

namespace luma {

PaneLinks::PaneLinks(const QString& caption, FolderWatcher& watcher, PaneHost& host, QWidget* pane)
    : m_host(host),
      m_pane(pane),
      m_watcher(watcher),
      m_linkJobs(new LinkJobs(host.progress(), this)),
      m_moveJobs(new MoveJobs(host.progress(), host.moveNotices(), pane)),
      m_reportPanel(new LinkReportPanel(pane)),
      unlinkedItemsPanel(new UnlinkedItemsPanel(pane)),
      m_outsideMoves(new OutsideMoves(host.moveNotices(), this))
{
    m_reportPanel->setSide(caption);
    unlinkedItemsPanel->setWindowTitle(tr("Unlinked items in %1").arg(caption));
    connect(&m_watcher, &FolderWatcher::ended, this, [this] {
        if (m_siteLinks)
            m_siteLinks->endWatch();
    });
    connectMoves();
    connectReports();
}

PaneLinks::~PaneLinks() = default;

void PaneLinks::connectMoves()
{
    connect(m_moveJobs, &MoveJobs::fileActivated, this, &PaneLinks::fileActivated);
    connect(m_moveJobs, &MoveJobs::moved, this,
            [this](const QString& title, const std::filesystem::path& site) {
                emit undoable(title, [links = QPointer(this), site, title] {
                    if (links)
                        links->m_moveJobs->undoMove(site, links->m_host.reportChoices(), title);
                });
            });
    connect(m_moveJobs, &MoveJobs::askingStopped, this, [this] { m_host.stopAsking(); });
    connect(m_outsideMoves, &OutsideMoves::foundChanged, this, &PaneLinks::outsideMovesChanged);
}

void PaneLinks::connectReports()
{
    connect(m_linkJobs, &LinkJobs::fileActivated, this, &PaneLinks::fileActivated);
    connect(m_reportPanel, &LinkReportPanel::fileActivated, this, &PaneLinks::fileActivated);
    connect(m_reportPanel, &LinkReportPanel::pageActivated, this, &PaneLinks::pageActivated);
    connect(m_reportPanel, &LinkReportPanel::restartRequested, this, &PaneLinks::showReport);
    connect(m_reportPanel, &LinkReportPanel::replacementRequested, this,
            [this](const std::filesystem::path& target, const std::filesystem::path& file) {
                if (m_siteLinks)
                    m_moveJobs->replaceLinks(m_site, target, file, m_host.reportChoices());
            });
    connect(unlinkedItemsPanel, &UnlinkedItemsPanel::fileActivated, this, &PaneLinks::fileActivated);
    connect(unlinkedItemsPanel, &UnlinkedItemsPanel::restartRequested, this, &PaneLinks::showUnlinkedItems);
    connect(unlinkedItemsPanel, &UnlinkedItemsPanel::itemsDeleted, this, &PaneLinks::itemsChanged);
    connect(unlinkedItemsPanel, &UnlinkedItemsPanel::keptItemsChanged, this,
            [this](const std::vector<std::string>& items) { m_host.setKeptItems(items); });
}

void PaneLinks::begin(const std::filesystem::path& site, bool isLocal)
{
    m_site = site;
    keepLinks();
    m_moveJobs->setKeptLinks(m_siteLinks);
    m_moveJobs->endInterrupted(m_site);
    if (isLocal)
        m_outsideMoves->begin(m_site);
}

void PaneLinks::end()
{
    stopReport();
    stopUnlinkedItems();
    if (m_findPanel)
        m_findPanel->reject();
    if (m_namesPanel)
        m_namesPanel->reject();
    if (m_siteLinks)
        m_siteLinks->endWatch();
    m_siteLinks.reset();
    m_site.clear();
    m_moveJobs->setKeptLinks({});
    m_outsideMoves->end();
}

void PaneLinks::keepLinks()
{
    if (m_siteLinks)
        m_siteLinks->endWatch();
    m_siteLinks = std::make_shared<SiteLinks>(m_site, SiteLinks::Keeping::Stored);
    const auto ask = [pane = QPointer(this), kept = std::weak_ptr(m_siteLinks)](const SiteLinks::Told& told) {
        const bool isAsked = onMain(pane, [&](PaneLinks& self) { self.askWatcher(kept.lock(), told); });
        if (!isAsked)
            told(false);
    };
    m_siteLinks->setWatcher(ask);
    ask([](bool) {});
}

// The watcher may watch another site by now.
void PaneLinks::askWatcher(const std::shared_ptr<SiteLinks>& links, const std::function<void(bool)>& told)
{
    if (links != m_siteLinks || !links) {
        told(false);
        return;
    }
    const auto take = [this, links, told](bool isWatching, const FolderWatcher::Folders& folders) {
        if (isWatching && links == m_siteLinks)
            links->noteChanges(folders);
        told(isWatching);
    };
    m_watcher.askForChanges(take);
}

void PaneLinks::siteChanged(const FolderWatcher::Folders& folders)
{
    if (m_siteLinks)
        m_siteLinks->noteChanges(folders);
    const ReportChoices choices = m_host.reportChoices();
    if (choices.linkRules == LinkRules::Browser)
        m_outsideMoves->siteChanged(folders, choices.webRules, m_siteLinks);
    m_reportPanel->siteChanged();
    unlinkedItemsPanel->siteChanged();
    if (m_namesPanel)
        m_namesPanel->filesChanged();
}

Result<void> PaneLinks::prepareRename(const std::filesystem::path& oldPath,
                                      const std::filesystem::path& newPath)
{
    return m_moveJobs->prepareRename(m_site, oldPath, newPath, m_host.reportChoices());
}

void PaneLinks::dropRename()
{
    m_moveJobs->dropRename();
}

void PaneLinks::updateAfterRename(const std::filesystem::path& oldPath, const std::filesystem::path& newPath)
{
    m_moveJobs->updateAfterRename(m_site, oldPath, newPath, m_host.reportChoices());
}

void PaneLinks::rename(const std::filesystem::path& oldPath, const std::filesystem::path& newPath)
{
    m_moveJobs->rename(m_site, oldPath, newPath, m_host.reportChoices());
}

void PaneLinks::acceptDrop(const Drop& drop)
{
    if (m_siteLinks)
        m_moveJobs->acceptDrop(m_site, drop, m_host.siteFolders(), m_host.reportChoices());
}

void PaneLinks::undoMove()
{
    if (m_siteLinks)
        m_moveJobs->undoMove(m_site, m_host.reportChoices());
}

void PaneLinks::lookForOlderMove()
{
    if (!m_siteLinks) {
        emit olderMoveLooked(false);
        return;
    }
    // The site may be on a server that is silent.
    start(std::make_shared<WorkItem>(), [guard = QPointer(this), site = m_site](const WorkItem&) {
        const bool isThere = SiteMoves::hasUndo(site);
        onMain(guard, [isThere](PaneLinks& self) { emit self.olderMoveLooked(isThere); });
    });
}

FileJobs::LinkCounter PaneLinks::linkCounter(const std::vector<std::filesystem::path>& items) const
{
    const ReportChoices choices = m_host.reportChoices();
    if (choices.linkRules != LinkRules::Browser)
        return {};
    return [site = m_site, items, rules = choices.webRules,
            links = m_siteLinks](const StillWanted& stillWanted) {
        return countLinksTo(site, items, rules, links, stillWanted);
    };
}

void PaneLinks::showReport(LinkReportRun::Kind kind, const std::filesystem::path& item)
{
    using Kind = LinkReportRun::Kind;
    if (!m_siteLinks)
        return;
    const ReportChoices choices = m_host.reportChoices();
    if (choices.linkRules == LinkRules::Browser)
        m_reportPanel->begin({kind, m_site, item, {}, m_siteLinks}, choices);
    else if (kind == Kind::MissingLinks)
        m_linkJobs->findMissingLinks(m_site, choices);
    else
        m_linkJobs->showLinks(m_site, item,
                              kind == Kind::LinksFrom ? LinkJobs::Direction::From : LinkJobs::Direction::To,
                              choices);
}

void PaneLinks::stopReport()
{
    m_linkJobs->stop();
    m_reportPanel->stop();
}

void PaneLinks::showUnlinkedItems()
{
    if (m_siteLinks)
        unlinkedItemsPanel->startFindUnlinkedItems(m_site, m_host.reportChoices(), m_siteLinks);
}

void PaneLinks::stopUnlinkedItems()
{
    unlinkedItemsPanel->stopFindUnlinkedItems();
}

SiteFindPanel& PaneLinks::findPanel()
{
    if (m_findPanel)
        return *m_findPanel;
    m_findPanel = new SiteFindPanel(m_pane);
    connect(m_findPanel, &SiteFindPanel::pageActivated, this, &PaneLinks::pageActivated);
    connect(
        m_findPanel, &SiteFindPanel::replacementRequested, this,
        [this](const SiteQuery& query, const QString& replacement, const std::vector<WantedPlaces>& places) {
            if (m_siteLinks)
                m_moveJobs->replaceText(m_site, query, replacement, places);
        });
    connect(&m_host.moveNotices(), &MoveNotices::linksUpdated, m_findPanel, &SiteFindPanel::filesChanged);
    return *m_findPanel;
}

SiteNamesPanel& PaneLinks::namesPanel()
{
    if (m_namesPanel)
        return *m_namesPanel;
    m_namesPanel = new SiteNamesPanel(m_pane);
    connect(m_namesPanel, &SiteNamesPanel::pageActivated, this, &PaneLinks::pageActivated);
    connect(m_namesPanel, &SiteNamesPanel::renameRequested, this,
            [this](bool isId, const std::string& name, const std::string& newName) {
                if (m_siteLinks)
                    m_moveJobs->renameName(m_site, isId, name, newName, m_host.reportChoices());
            });
    return *m_namesPanel;
}

void PaneLinks::showNames()
{
    if (m_siteLinks)
        namesPanel().begin(m_site, m_host.reportChoices().webRules);
}

void PaneLinks::findText(const QString& text)
{
    if (m_siteLinks)
        findPanel().begin(m_site, text);
}

const std::vector<MovedItem>& PaneLinks::outsideMoves() const
{
    return m_outsideMoves->found();
}

void PaneLinks::followOutsideMoves()
{
    m_moveJobs->followItems(m_site, m_outsideMoves->found(), m_host.reportChoices());
    m_outsideMoves->forgetFound();
}

void PaneLinks::ignoreOutsideMoves()
{
    m_outsideMoves->forgetFound();
}

} // namespace luma
