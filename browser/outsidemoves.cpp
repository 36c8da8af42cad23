// SPDX-License-Identifier: GPL-3.0-or-later
#include "browser/outsidemoves.h"

#include "base/mainhop.h"
#include "base/pathbelow.h"
#include "browser/movenotices.h"
#include "links/fileplaces.h"
#include "links/linksupdate.h"

#include <QPointer>

#include <algorithm>
#include <utility>

namespace luma {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t mostOwn = 1000;

bool isPartOf(const MovedItem& item, const MovedItem& move)
{
    const auto below = pathBelow(item.from.native(), move.from.native());
    return below && item.to == (below->empty() ? move.to : move.to / *below);
}

bool areEntangled(const MovedItem& a, const MovedItem& b)
{
    const auto isIn = [](const fs::path& path, const fs::path& folder) {
        return isAtOrBelow(path.native(), folder.native());
    };
    return isIn(b.from, a.to) || isIn(b.from, a.from) || isIn(a.from, b.from);
}

// Whether a page that did not move links to the item's old place.
bool isLinked(const MovedItem& moved, MoveRequest request, const WorkItem& item)
{
    request.items = {moved};
    const auto plan = planMove(request, [&item] { return !item.isCancelled() && !isMainHopClosed(); });
    return plan && std::any_of(plan->pages.begin(), plan->pages.end(),
                               [](const PageRewrite& page) { return page.page == page.oldPage; });
}

} // namespace

OutsideMoves::OutsideMoves(MoveNotices& notices, QObject* parent) : QObject(parent), m_notices(notices)
{
    connect(&notices, &MoveNotices::itemMoved, this, &OutsideMoves::noteOwn);
}

OutsideMoves::~OutsideMoves()
{
    if (m_item)
        m_item->cancel();
}

void OutsideMoves::begin(const fs::path& site)
{
    end();
    m_site = site;
    m_places = std::make_shared<FilePlaces>(site);
    m_isWaiting = true;
    look();
}

void OutsideMoves::end()
{
    if (m_item)
        m_item->cancel();
    m_item.reset();
    m_places.reset();
    m_links.reset();
    m_own.clear();
    m_waiting.emplace();
    m_isWaiting = false;
    forgetFound();
}

void OutsideMoves::forgetFound()
{
    if (!std::exchange(m_found, {}).empty())
        emit foundChanged();
}

void OutsideMoves::noteOwn(const MovedItem& item)
{
    if (!m_places)
        return;
    m_own.push_back(item);
    if (m_own.size() > mostOwn)
        m_own.erase(m_own.begin());
}

void OutsideMoves::siteChanged(const Folders& folders, const WebRules& rules,
                               std::shared_ptr<SiteLinks> links)
{
    if (!m_places)
        return;
    m_rules = rules;
    m_links = std::move(links);
    if (!folders)
        m_waiting.reset();
    else if (m_waiting)
        m_waiting->insert(folders->begin(), folders->end());
    m_isWaiting = true;
    look();
}

void OutsideMoves::look()
{
    if (m_item || !std::exchange(m_isWaiting, false))
        return;
    m_item = std::make_shared<WorkItem>();
    const QPointer<OutsideMoves> guard(this);
    start(m_item, [guard, item = m_item, places = m_places,
                   folders = std::exchange(m_waiting, std::set<std::string>())](const WorkItem&) {
        std::vector<MovedItem> moved =
            places->update(folders, [&item] { return !item->isCancelled() && !isMainHopClosed(); });
        onMain(guard, [&](OutsideMoves& self) {
            if (self.m_item == item)
                self.take(std::move(moved));
        });
    });
}

void OutsideMoves::take(std::vector<MovedItem> moved)
{
    m_item.reset();
    const auto isOwn = [this](const MovedItem& item) {
        return std::any_of(m_own.begin(), m_own.end(),
                           [&item](const MovedItem& own) { return isPartOf(item, own); });
    };
    const std::vector<MovedItem> seen = moved;
    std::erase_if(moved, isOwn);
    std::erase_if(m_own, [&seen](const MovedItem& own) {
        return std::any_of(seen.begin(), seen.end(), [&own](const MovedItem& item) {
            return item.from == own.from && item.to == own.to;
        });
    });
    if (moved.empty()) {
        look();
        return;
    }
    const std::vector<MovedItem> own = m_own;
    for (const MovedItem& item : moved) {
        emit m_notices.itemMoved(item, m_site);
        add(item);
    }
    m_own = own;
    emit m_notices.linksUpdated(std::make_shared<const LinksUpdate>(LinksUpdate{moved, {}, {}}));
    judge();
}

// What moves on, or back, is one move. Nothing is told of a folder and of something in it that went another way.
void OutsideMoves::add(const MovedItem& item)
{
    const auto before = std::find_if(m_found.begin(), m_found.end(),
                                     [&item](const MovedItem& old) { return old.to == item.from; });
    if (before == m_found.end()) {
        const bool isEntangled = std::any_of(m_found.begin(), m_found.end(), [&item](const MovedItem& old) {
            return areEntangled(old, item);
        });
        if (isEntangled)
            m_found.clear();
        else
            m_found.push_back(item);
        return;
    }
    before->to = item.to;
    if (before->from == before->to)
        m_found.erase(before);
}

// Items that no page links to at the old place are forgotten: who moved them has looked after the links. The pages are read in
// the background; until then, changes of the site wait.
void OutsideMoves::judge()
{
    m_item = std::make_shared<WorkItem>();
    MoveRequest request{m_site, {}, MoveOperation::Move, {}, m_rules, true};
    request.isMovedOutside = true;
    request.keptLinks = m_links;
    const QPointer<OutsideMoves> guard(this);
    start(m_item, [guard, item = m_item, request, items = m_found](const WorkItem&) {
        std::vector<MovedItem> settled = items;
        std::erase_if(settled, [&](const MovedItem& moved) { return isLinked(moved, request, *item); });
        onMain(guard, [&](OutsideMoves& self) {
            if (self.m_item != item)
                return;
            self.m_item.reset();
            // The user may have decided about them meanwhile.
            std::erase_if(self.m_found, [&settled](const MovedItem& found) {
                return std::find(settled.begin(), settled.end(), found) != settled.end();
            });
            emit self.foundChanged();
            self.look();
        });
    });
}

} // namespace luma
