// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "site/ignorednames.h"
#include "site/siterecord.h"
#include "site/syncrow.h"

#include <string>
#include <string_view>
#include <vector>

namespace luma {

/// The two ends of a run, as the user typed them, and whether it looks for deletions.
struct RsyncArguments
{
    std::string source;
    std::string destination;
    std::string port = "22";
    bool deletes = false; ///< also lists what only the receiving side has

    /// From the endpoints of `record`. A side that lacks its path, user or server is empty.
    static RsyncArguments of(const SiteRecord& record, Direction direction, bool deletes);
};

/// What a run printed: its rows in rsync's order, without folders.
ComparisonReport readRsyncOutput(std::string_view output);

/// A row's name without the word that marks a deletion.
std::string nameWithoutDeleting(std::string_view displayName);

/// The words that start rsync over ssh: a program and its arguments, which no shell reads.
///
/// Only the comparison walks the site. Each other run gets the names of its files on standard input
/// (nameList), and nothing but these is touched. Every run prints one line for each item, which
/// readRsyncOutput() reads.
class RsyncCommand final
{
public:
    explicit RsyncCommand(RsyncArguments arguments) : m_arguments(std::move(arguments)) {}

    /// Both sides have what is needed to name them.
    [[nodiscard]] bool isComplete() const;

    /// Lists all that is new or newer, and the deletions; changes nothing.
    [[nodiscard]] std::vector<std::string> comparison(const IgnoredNames& ignored) const;
    /// Sends the named files.
    [[nodiscard]] std::vector<std::string> transfer() const;
    /// Deletes the named files and empty folders from the receiving side, if the sending side lacks them.
    [[nodiscard]] std::vector<std::string> deletion() const;
    /// The dry run of one of the two: lists what is still to be done.
    [[nodiscard]] static std::vector<std::string> dryRunOf(std::vector<std::string> words);

    /// The paths as bytes, as the option --from0 wants them.
    [[nodiscard]] static std::string nameList(const std::vector<std::string>& paths);

private:
    RsyncArguments m_arguments;

    [[nodiscard]] std::vector<std::string> words(const std::vector<std::string>& options) const;
};

} // namespace luma
