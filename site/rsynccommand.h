// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "site/siterecord.h"
#include "site/syncrow.h"

#include <string>
#include <string_view>
#include <vector>

namespace luma {

/// The arguments of one run. They go into the command line unquoted, as the user typed them.
struct RsyncArguments
{
    std::string source;
    std::string destination;
    std::string port = "22";
    bool deletes = false; ///< deletes from the receiving side what the sending side does not have

    /// From the endpoints of `record`. A side that lacks its path, user or server is empty.
    static RsyncArguments of(const SiteRecord& record, Direction direction, bool deletes);
};

/// A rule of rsync's filter (rsync(1), FILTER RULES); the first one that matches a path decides.
struct RsyncRule
{
    bool excludes = true;
    std::string pattern;
};

/// The rules that leave out the unticked rows and nothing else.
///
/// A name of letters, digits, blanks and "._-/" is a pattern by itself, which also matches files of that name
/// in other folders; rules before it include those that are ticked. Any other name is anchored at the
/// transferred folder and its wildcards are escaped.
std::vector<RsyncRule> rsyncRules(const std::vector<SyncRow>& rows, bool deletes);

/// A row's name without the word that marks a deletion.
std::string nameWithoutDeleting(std::string_view displayName);

/// The shell command lines of rsync over ssh: the dry run that lists, and the run that transfers.
class RsyncCommand final
{
public:
    explicit RsyncCommand(RsyncArguments arguments) : m_arguments(std::move(arguments)) {}

    /// Prints the files that would be transferred or deleted, one a line, without folders.
    [[nodiscard]] std::string dryRun() const;
    [[nodiscard]] std::string transfer(const std::vector<RsyncRule>& rules) const;

    /// For more rules than a command line holds (one argument is limited to 128 KiB): the same run with the
    /// rules in a file, whose text is rulesFile().
    [[nodiscard]] static bool fitCommandLine(const std::vector<RsyncRule>& rules);
    [[nodiscard]] static std::string rulesFile(const std::vector<RsyncRule>& rules);
    [[nodiscard]] std::string transferWithRulesFile(const std::string& path) const;

    /// The lines of the dry run's output.
    [[nodiscard]] static std::vector<std::string> listing(std::string_view output);

private:
    RsyncArguments m_arguments;

    [[nodiscard]] std::string start() const;
    [[nodiscard]] std::string transferWith(const std::string& options) const;
};

} // namespace luma
