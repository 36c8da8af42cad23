// SPDX-License-Identifier: GPL-3.0-or-later
#include "lumactl/commandarguments.h"
#include "lumactl/lumactlcommands.h"
#include "lumactl/standardoutput.h"
#include "site/savedsites.h"

#include <QJsonDocument>
#include <QJsonObject>

namespace luma {

namespace {

std::string jsonOf(const SiteRecord& site)
{
    const QJsonObject object = {{QStringLiteral("name"), site.siteID()},
                                {QStringLiteral("source"), placeOf(*site.sourceDict())},
                                {QStringLiteral("destination"), placeOf(*site.destinationDict())}};
    return QJsonDocument(object).toJson(QJsonDocument::Compact).toStdString();
}

ExitCode run(const std::vector<std::string>& arguments)
{
    const CommandArguments line(arguments, {"--json"}, {});
    if (!line.error().empty() || !line.operands().empty())
        return wrongUsage(sitesCommand, line.error().empty() ? "no arguments are needed" : line.error());
    const auto sites = savedSites();
    if (!sites)
        return unusable("the list of sites: " + sites.error().text);
    StandardOutput output;
    for (const std::shared_ptr<SiteRecord>& site : *sites)
        output.text()
            .append(line.has("--json") ? jsonOf(*site) : site->siteID().toStdString())
            .push_back('\n');
    return output.finish() ? ExitCode::Ok : ExitCode::Found;
}

constexpr std::string_view help =
    "Prints one name a line. Every command takes such a name for SITE, unless a folder\n"
    "of that name is there: the site's source, and its web addresses. changed and\n"
    "publish take it for SOURCE and DESTINATION.\n"
    "\n"
    "  --json               one JSON object a line: name, source, destination\n";

} // namespace

const LumactlCommand sitesCommand = {"sites", "[--json]", "list the sites that are saved in LUMA", help, run};

} // namespace luma
