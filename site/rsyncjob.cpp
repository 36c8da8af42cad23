// SPDX-License-Identifier: GPL-3.0-or-later
#include "site/rsyncjob.h"

#include <algorithm>
#include <functional>
#include <map>
#include <string_view>
#include <unordered_set>

namespace luma {

namespace {

// rsync(1), EXIT VALUES: some files failed; some files were not there.
constexpr int partialTransfer = 23;
constexpr int vanishedFiles = 24;

using Words = std::vector<std::string>;
using RowNumbers = std::vector<std::size_t>;

std::vector<std::string> linesOf(std::string_view text)
{
    std::vector<std::string> lines;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        if (end > 0)
            lines.emplace_back(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return lines;
}

// Says only that something failed; the reason is in another line.
bool isSummary(const std::string& line)
{
    return line.starts_with("rsync error: ") || line.starts_with("rsync warning: ") ||
           line.starts_with("rsync: connection unexpectedly closed") ||
           line.find("] write error: ") != std::string::npos;
}

// What rsync, ssh or env(1) said; at least one line.
std::vector<std::string> reasons(const ProgramResult& result)
{
    const std::vector<std::string> lines = linesOf(result.errors);
    std::vector<std::string> chosen;
    std::remove_copy_if(lines.begin(), lines.end(), std::back_inserter(chosen), isSummary);
    if (!chosen.empty())
        return chosen;
    if (!lines.empty())
        return {lines.back()};
    return {result.status ? "rsync ended with code " + std::to_string(*result.status) : "rsync was ended"};
}

// One transfer of some rows.
class Run final
{
public:
    Run(const ProgramRunner& runProgram, const std::vector<SyncRow>& rows, const StillWanted& stillWanted,
        const StillWanted& mayCheck, RsyncReport& report)
        : m_runProgram(runProgram),
          m_rows(rows),
          m_stillWanted(stillWanted),
          m_mayCheck(mayCheck),
          m_report(report)
    {}

    // The rows that are done are added to the report. False if the next run would fail too.
    bool transfer(const Words& words, const RowNumbers& numbers);
    bool deleteRows(const Words& words, const std::vector<std::string>& deletedFolders);

private:
    const ProgramRunner& m_runProgram;
    const std::vector<SyncRow>& m_rows;
    const StillWanted& m_stillWanted;
    const StillWanted& m_mayCheck;
    RsyncReport& m_report;

    bool run(const Words& words, const RowNumbers& numbers, bool mayMissFiles);
    void check(const Words& words, const RowNumbers& numbers, const std::string& output);
    void addProblems(const ProgramResult& result);
};

void Run::addProblems(const ProgramResult& result)
{
    if (!isWanted(m_stillWanted))
        return;
    for (std::string& reason : reasons(result))
        m_report.problems.push_back(std::move(reason));
}

bool Run::run(const Words& words, const RowNumbers& numbers, bool mayMissFiles)
{
    if (numbers.empty())
        return true;
    if (!isWanted(m_stillWanted))
        return false;
    std::vector<std::string> paths;
    for (const std::size_t row : numbers)
        paths.push_back(m_rows[row].relativePath);
    const ProgramResult result = m_runProgram(words, RsyncCommand::nameList(paths), m_stillWanted);
    if (result.status == 0 || (mayMissFiles && result.status == vanishedFiles)) {
        m_report.done.insert(m_report.done.end(), numbers.begin(), numbers.end());
        return true;
    }
    addProblems(result);
    check(words, numbers, result.output);
    return result.status == partialTransfer || result.status == vanishedFiles;
}

// Keeps those rows that rsync has named and no longer wants to do.
void Run::check(const Words& words, const RowNumbers& numbers, const std::string& output)
{
    std::vector<std::string> named;
    for (SyncRow& row : readRsyncOutput(output).rows)
        named.push_back(std::move(row.relativePath));
    if (named.empty())
        return;
    const ProgramResult result =
        m_runProgram(RsyncCommand::dryRunOf(words), RsyncCommand::nameList(named), m_mayCheck);
    if (result.status != 0 && result.status != partialTransfer && result.status != vanishedFiles)
        return;
    std::unordered_set<std::string> done(named.begin(), named.end());
    for (const SyncRow& row : readRsyncOutput(result.output).rows)
        done.erase(row.relativePath);
    std::copy_if(numbers.begin(), numbers.end(), std::back_inserter(m_report.done),
                 [&](std::size_t row) { return done.contains(m_rows[row].relativePath); });
}

bool Run::transfer(const Words& words, const RowNumbers& numbers)
{
    return run(words, numbers, false);
}

bool Run::deleteRows(const Words& words, const std::vector<std::string>& deletedFolders)
{
    RowNumbers numbers;
    for (std::size_t i = 0; i < m_rows.size(); ++i) {
        if (m_rows[i].select && m_rows[i].mode == SyncMode::RsyncDelete)
            numbers.push_back(i);
    }
    // rsync warns of the missing folders of missing files.
    if (!run(words, numbers, true))
        return false;
    std::unordered_set<std::string> above;
    for (const std::size_t row : numbers) {
        const std::string& path = m_rows[row].relativePath;
        for (std::size_t slash = path.find('/'); slash != std::string::npos;
             slash = path.find('/', slash + 1))
            above.insert(path.substr(0, slash));
    }
    // One run for each depth, the deepest first: within a run, rsync tries a folder before those in it.
    std::map<std::ptrdiff_t, std::vector<std::string>, std::greater<>> byDepth;
    for (const std::string& folder : deletedFolders) {
        if (above.contains(folder))
            byDepth[std::count(folder.begin(), folder.end(), '/')].push_back(folder);
    }
    for (const auto& [depth, folders] : byDepth) {
        const ProgramResult result = m_runProgram(words, RsyncCommand::nameList(folders), m_stillWanted);
        if (result.status != 0 && result.status != vanishedFiles) {
            addProblems(result);
            return false;
        }
    }
    return true;
}

} // namespace

RsyncJob::RsyncJob(RsyncArguments arguments, ProgramRunner runProgram)
    : m_command(std::move(arguments)), m_runProgram(std::move(runProgram))
{}

Result<ComparisonReport> RsyncJob::compare(const IgnoredNames& ignored, const StillWanted& stillWanted) const
{
    if (!m_command.isComplete())
        return Error{"The site lacks a path, a server or a user name"};
    const ProgramResult result = m_runProgram(m_command.comparison(ignored), {}, stillWanted);
    ComparisonReport report = readRsyncOutput(result.output);
    if (result.status == 0)
        return report;
    report.problems = reasons(result);
    const bool isPartial = result.status == partialTransfer || result.status == vanishedFiles;
    if (!isPartial || report.rows.empty())
        return Error{report.problems.back()};
    return report;
}

RsyncReport RsyncJob::transfer(const std::vector<SyncRow>& rows,
                               const std::vector<std::string>& deletedFolders, const StillWanted& stillWanted,
                               const StillWanted& mayCheck) const
{
    RsyncReport report;
    RowNumbers files = transferOrder(rows);
    const auto firstPage = std::partition_point(
        files.begin(), files.end(), [&rows](std::size_t row) { return !isPage(rows[row].relativePath); });
    const RowNumbers pages(firstPage, files.end());
    files.erase(firstPage, files.end());
    Run run(m_runProgram, rows, stillWanted, mayCheck, report);
    if (run.transfer(m_command.transfer(), files) && run.transfer(m_command.transfer(), pages) &&
        report.problems.empty())
        run.deleteRows(m_command.deletion(), deletedFolders);
    std::sort(report.done.begin(), report.done.end());
    return report;
}

} // namespace luma
