// SPDX-License-Identifier: GPL-3.0-or-later
#include "site/panemarks.h"

#include "base/mainhop.h"
#include "base/pathbelow.h"
#include "browser/browser.h"
#include "browser/browsercontroller.h"

#include <set>

namespace luma {

namespace {

constexpr int delay = 100; // milliseconds: refreshes come in groups

std::set<std::string> shownFolders(const BrowserController& pane)
{
    std::set<std::string> folders;
    const std::string site = pane.mountPath().native();
    for (const QModelIndex& folder : pane.browser().shownFolders())
        folders.emplace(pathBelow(pane.browser().model().node(folder)->url().native(), site).value_or(""));
    return folders;
}

// What is not there has no items. Nothing if it can't be told.
std::optional<ComparedSide::Items> itemsOf(const ComparedSide& side, const std::string& folder)
{
    auto items = side.items(folder);
    if (items)
        return *std::move(items);
    const bool isMissing = items.error().code == std::errc::no_such_file_or_directory ||
                           items.error().code == std::errc::not_a_directory;
    return isMissing ? std::optional<ComparedSide::Items>(ComparedSide::Items()) : std::nullopt;
}

} // namespace

PaneMarks::PaneMarks(BrowserController& source, BrowserController& destination, const SiteRecord& record,
                     QObject* parent)
    : QObject(parent), m_source(source), m_destination(destination), m_record(record)
{
    m_soon.setSingleShot(true);
    m_soon.setInterval(delay);
    connect(&m_soon, &QTimer::timeout, this, &PaneMarks::begin);
    for (BrowserController* pane : {&source, &destination}) {
        connect(&pane->browser(), &Browser::listed, this, &PaneMarks::update);
        connect(pane, &BrowserController::stateChanged, this, &PaneMarks::update);
    }
}

PaneMarks::~PaneMarks()
{
    if (m_job)
        m_job->cancel();
}

void PaneMarks::update()
{
    if (!m_soon.isActive())
        m_soon.start();
}

void PaneMarks::begin()
{
    if (m_job) {
        m_isAskedAgain = true;
        return;
    }
    if (!m_source.rootNode() || !m_destination.rootNode()) {
        end({});
        return;
    }
    std::set<std::string> folders = shownFolders(m_source);
    folders.merge(shownFolders(m_destination));
    m_job = std::make_shared<WorkItem>();
    const QPointer<PaneMarks> guard(this);
    start(m_job, [guard, folders, from = m_source.mountPath(), to = m_destination.mountPath(),
                  site = siteIdentity(m_record),
                  patterns = m_record.ignoredNames().toStdString()](const WorkItem& item) {
        Marks marks;
        const auto source = ComparedSide::open(from);
        const auto destination = ComparedSide::open(to);
        const PublishedFiles published = PublishedFiles::load(site);
        const IgnoredNames ignored(patterns);
        for (const std::string& folder : folders) {
            if (!source || !destination || item.isCancelled())
                break;
            const auto here = itemsOf(*source, folder);
            const auto there = itemsOf(*destination, folder);
            if (here && there)
                marks[folder] = marksOf(folder, *here, *there, published, ignored);
        }
        onMain(guard, [&](PaneMarks& self) {
            self.m_job.reset();
            self.end(marks);
        });
    });
}

void PaneMarks::end(const Marks& marks)
{
    show(m_source, marks, &FolderMarks::source);
    show(m_destination, marks, &FolderMarks::destination);
    if (std::exchange(m_isAskedAgain, false))
        update();
}

void PaneMarks::show(BrowserController& pane, const Marks& marks, SideMarks FolderMarks::*side)
{
    if (!pane.rootNode())
        return;
    for (const QModelIndex& folder : pane.browser().shownFolders()) {
        const std::string path = pane.browser().model().node(folder)->url().native();
        const auto found = marks.find(std::string(pathBelow(path, pane.mountPath().native()).value_or("")));
        pane.browser().model().setMarks(folder, found == marks.end() ? SideMarks() : found->second.*side);
    }
}

} // namespace luma
