// SPDX-License-Identifier: GPL-3.0-or-later
#include "browser/linkjobs.h"

#include "browser/displaytext.h"
#include "browser/joblog.h"
#include "browser/panehost.h"
#include "links/browserreports.h"
#include "links/linkreports.h"

namespace luma {

namespace fs = std::filesystem;

namespace {

void addFindings(JobLog& log, const PageFindings& page)
{
    log.addLine(page.path, page.path);
    std::string line;
    for (const LinkFinding& link : page.links) {
        line.clear();
        appendLinkLine(line, page, link);
        line.pop_back();
        log.addLine(line);
    }
}

void addPage(JobLog& log, const fs::path& site, const WebPage& page)
{
    log.addLine((site / page.path).native(), site / page.path);
    if (!page.unreadable.empty())
        log.addLine("    *** UNREADABLE *** " + page.unreadable);
    std::string line;
    for (const WebLink& link : page.links) {
        line.assign("    ").append(nameOf(link.place)).append(" : ").append(link.value);
        if (link.state == LinkState::Missing)
            line += "    *** MISSING ***";
        log.addLine(line);
    }
}

Result<bool> listLinksFrom(JobLog& log, const fs::path& site, const fs::path& item,
                           const ReportChoices& choices)
{
    if (choices.linkRules == LinkRules::Letter) {
        if (const PageFindings page = findLinksFrom(item); page.isPage)
            addFindings(log, page);
        return true;
    }
    const auto page = checkWebPage(site, item, choices.webRules);
    if (!page)
        return page.error();
    addPage(log, site, *page);
    return true;
}

Result<bool> listLinksTo(JobLog& log, const fs::path& site, const fs::path& item,
                         const ReportChoices& choices, const StillWanted& stillWanted)
{
    const auto add = [&](const std::string& subpath) { log.addLine(subpath, site / subpath); };
    if (choices.linkRules == LinkRules::Letter)
        return findLinksTo(site, item, add, stillWanted);
    return findWebLinksTo(
        site, item, choices.webRules, [&](const WebPage& page) { add(page.path); }, stillWanted);
}

Result<bool> listAllLinks(JobLog& log, const fs::path& site, const ReportChoices& choices,
                          const StillWanted& stillWanted)
{
    if (choices.linkRules == LinkRules::Letter)
        return findMissingLinks(
            site, FindingsKept::All, [&](const PageFindings& page) { addFindings(log, page); }, stillWanted);
    return checkWebLinks(
        site, choices.webRules, FindingsKept::All, [&](const WebPage& page) { addPage(log, site, page); },
        stillWanted);
}

JobEnd endOf(JobLog& log, const Result<bool>& done)
{
    if (done)
        return {};
    log.addLine(done.error().text);
    return {.how = JobEnd::How::Failed};
}

} // namespace

void LinkJobs::showLinks(const fs::path& site, const fs::path& item, Direction direction,
                         const ReportChoices& choices)
{
    const bool isFrom = direction == Direction::From;
    const QString status = isFrom ? tr("Listing all links from: ") : tr("Listing all links to: ");
    begin(status + displayText(item.native()),
          [site, item, isFrom, choices](const WorkItemPointer& token, const std::shared_ptr<JobLog>& log) {
              return endOf(*log, isFrom ? listLinksFrom(*log, site, item, choices)
                                        : listLinksTo(*log, site, item, choices, wantedAs(token)));
          });
}

void LinkJobs::findMissingLinks(const fs::path& site, const ReportChoices& choices)
{
    begin(tr("Checking source files for missing links (*** MISSING ***)"),
          [site, choices](const WorkItemPointer& token, const std::shared_ptr<JobLog>& log) {
              return endOf(*log, listAllLinks(*log, site, choices, wantedAs(token)));
          });
}

} // namespace luma
