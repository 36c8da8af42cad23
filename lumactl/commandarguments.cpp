// SPDX-License-Identifier: GPL-3.0-or-later
#include "lumactl/commandarguments.h"

#include "base/filecalls.h"
#include "base/files.h"
#include "base/folderreader.h"
#include "links/sitemoves.h"
#include "lumactl/standardoutput.h"
#include "site/savedsites.h"

#include <algorithm>
#include <system_error>

namespace luma {

namespace fs = std::filesystem;

namespace {

template <class List>
bool contains(const List& list, std::string_view name)
{
    return std::find(list.begin(), list.end(), name) != list.end();
}

// Without "." and ".."; symbolic links stay as they are.
fs::path absolutePath(const fs::path& path)
{
    std::error_code error;
    fs::path absolute = fs::absolute(path, error).lexically_normal();
    return absolute.has_filename() || absolute == absolute.root_path() ? absolute : absolute.parent_path();
}

void finishInterruptedMoves(const fs::path& site)
{
    for (const MoveReport& report : SiteMoves::recover(site)) {
        if (!report.title.empty())
            complain(std::string(report.isDone ? "finished" : "took back") +
                     " what was interrupted: " + report.title);
        for (const MoveProblem& problem : report.problems)
            complain(problem.text);
    }
}

} // namespace

CommandArguments::CommandArguments(const std::vector<std::string>& arguments,
                                   const std::vector<std::string_view>& flags,
                                   const std::vector<std::string_view>& options)
{
    auto next = arguments.begin();
    for (; next != arguments.end() && *next != "--" && m_error.empty(); ++next) {
        const std::size_t equals = std::min(next->find('='), next->size());
        const std::string name = next->substr(0, equals);
        if (next->size() < 2 || !next->starts_with('-'))
            m_operands.push_back(*next);
        else if (contains(flags, *next))
            m_given.push_back({*next, {}});
        else if (!contains(options, name))
            m_error = "unknown option " + *next;
        else if (equals < next->size())
            m_given.push_back({name, next->substr(equals + 1)});
        else if (std::next(next) == arguments.end())
            m_error = name + " needs a value";
        else
            m_given.push_back({name, *++next});
    }
    if (m_error.empty() && next != arguments.end())
        m_operands.insert(m_operands.end(), std::next(next), arguments.end());
}

bool CommandArguments::has(std::string_view name) const
{
    return std::any_of(m_given.begin(), m_given.end(),
                       [name](const Given& given) { return given.name == name; });
}

std::string CommandArguments::value(std::string_view name) const
{
    const auto found = std::find_if(m_given.rbegin(), m_given.rend(),
                                    [name](const Given& given) { return given.name == name; });
    return found == m_given.rend() ? std::string() : found->value;
}

std::vector<std::string> CommandArguments::values(std::string_view name) const
{
    std::vector<std::string> values;
    for (const Given& given : m_given) {
        if (given.name == name)
            values.push_back(given.value);
    }
    return values;
}

std::optional<std::shared_ptr<SiteRecord>> savedSite(const std::string& argument)
{
    std::error_code error;
    if (argument.empty() || fs::is_directory(argument, error))
        return nullptr;
    const auto sites = savedSites();
    if (!sites) {
        complain("the list of sites: " + sites.error().text);
        return std::nullopt;
    }
    const auto isNamed = [name = QString::fromStdString(argument)](const std::shared_ptr<SiteRecord>& site) {
        return site->siteID() == name;
    };
    const auto found = std::find_if(sites->begin(), sites->end(), isNamed);
    if (found == sites->end())
        return nullptr;
    if (std::any_of(std::next(found), sites->end(), isNamed)) {
        complain(argument + ": two sites have this name");
        return std::nullopt;
    }
    return *found;
}

std::optional<fs::path> siteFolder(const std::string& argument)
{
    const auto record = savedSite(argument);
    if (!record)
        return std::nullopt;
    if (*record) {
        const fs::path folder = localFolder(*(*record)->sourceDict());
        if (!folder.empty())
            return siteFolder(fs::absolute(folder).native() + '/');
        complain(argument + ": the source of this site is not on this computer");
        return std::nullopt;
    }
    // Read before anything is moved: links can't be updated in a site that can't be listed.
    const fs::path site = absolutePath(argument);
    const auto reader = FolderReader::open(argument.empty() ? "" : site.native());
    if (reader) {
        finishInterruptedMoves(site);
        return site;
    }
    const std::errc reason = reader.error().code;
    complain(
        argument + ": " +
        (argument.empty() || reason == std::errc::not_a_directory ? "Not a folder" : systemReason(reason)));
    return std::nullopt;
}

fs::path itemPath(const fs::path& site, const std::string& argument)
{
    const fs::path inside = absolutePath(site / argument);
    return fs::path(argument).is_absolute() || !itemExists(inside) ? absolutePath(argument) : inside;
}

} // namespace luma
