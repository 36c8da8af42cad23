// SPDX-License-Identifier: GPL-3.0-or-later
#include "browser/linkreportrun.h"

#include "base/mainhop.h"
#include "browser/displaytext.h"

#include <mutex>
#include <utility>

namespace luma {

namespace {

Result<bool> report(const LinkReportRun::Request& request, const WebPageSink& page,
                    const StillWanted& stillWanted)
{
    SiteLinks* const links = request.links.get();
    if (request.kind == LinkReportRun::Kind::MissingLinks)
        return links ? links->findMissing(request.rules, page, stillWanted)
                     : checkWebLinks(request.site, request.rules, FindingsKept::Missing, page, stillWanted);
    if (request.kind == LinkReportRun::Kind::LinksTo)
        return links ? links->findTo(request.item, request.rules, page, stillWanted)
                     : findWebLinksTo(request.site, request.item, request.rules, page, stillWanted);
    const auto found = links ? links->findFrom(request.item, request.rules, stillWanted)
                             : checkWebPage(request.site, request.item, request.rules);
    if (!found)
        return found.error();
    page(*found);
    return true;
}

} // namespace

struct LinkReportRun::Findings
{
    std::mutex mutex;
    std::vector<WebPage> pages;
};

void LinkReportRun::start(const Request& request)
{
    stop();
    m_item = std::make_shared<WorkItem>();
    m_findings = std::make_shared<Findings>();
    const QPointer<LinkReportRun> guard(this);
    luma::start(m_item, [guard, request, item = m_item, findings = m_findings](const WorkItem&) {
        const auto add = [&findings](const WebPage& page) {
            const std::scoped_lock lock(findings->mutex);
            findings->pages.push_back(page);
        };
        const auto done = report(request, add, [item] { return !item->isCancelled() && !isMainHopClosed(); });
        onMain(guard, [&](LinkReportRun& self) {
            if (self.m_item != item)
                return;
            self.m_item.reset();
            emit self.ended(done ? QString() : displayText(done.error().text));
        });
        if (request.links)
            request.links->store();
    });
}

void LinkReportRun::stop()
{
    if (m_item)
        m_item->cancel();
    m_item.reset();
    m_findings.reset();
}

std::vector<WebPage> LinkReportRun::take()
{
    if (!m_findings)
        return {};
    const std::scoped_lock lock(m_findings->mutex);
    return std::exchange(m_findings->pages, {});
}

} // namespace luma
