// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/commandrunner.h"
#include "site/ignorednames.h"
#include "site/keptplace.h"
#include "site/siterecord.h"
#include "site/syncrow.h"

#include <chrono>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace luma {

/// The two ends of a run, as the user typed them.
struct RsyncArguments
{
    std::string local;  ///< a folder, with a slash at its end
    std::string remote; ///< user@server:folder, with a slash at its end
    Direction direction = Direction::Upload;
    std::string port = "22";
    std::chrono::seconds patience = std::chrono::seconds(60); ///< with a server that does not answer

    /// From the endpoints of `record`. A side that lacks its path, user or server is empty.
    static RsyncArguments of(const SiteRecord& record, Direction direction);

    /// The path of the remote folder, without slashes at its end.
    [[nodiscard]] std::string remoteFolder() const;
    /// The login, then `folder`: another one of the same server, with a slash at its end.
    [[nodiscard]] std::string remoteWith(const std::string& folder) const;
};

/// What the remote side has.
struct RsyncListing
{
    std::unordered_map<std::string, FileFacts> items = {}; ///< by their paths as bytes; the root is ""
    std::vector<std::string> hidden = {};                  ///< paths of what was ignored
};
RsyncListing readRsyncListing(std::string_view output);

/// Of the files in `listing`, hidden ones too; valid as long as it is.
std::vector<std::string_view> pathsOf(const RsyncListing& listing);

/// The paths, as bytes, that a transfer or deletion has named in its output; those of folders too.
std::vector<std::string> readRsyncNames(std::string_view output);

/// Counts the files of a log (RsyncCommand::logged) in `done`.
void readRsyncLog(std::string_view lines, SyncProgress& done);

/// Whether rsync has done its work, though perhaps not for all files (rsync(1), EXIT VALUES).
bool hasAnswered(const ProgramResult& result);

/// What rsync, ssh or env(1) said about a failure; at least one line.
std::vector<std::string> rsyncReasons(const ProgramResult& result);

/// The free bytes in the output of df(1), POSIX format; none if that is something else.
std::optional<std::int64_t> readFreeSpace(std::string_view output);

/// A row's name without the word that marks a deletion.
std::string nameWithoutDeleting(std::string_view displayName);

/// The words that start rsync over ssh: a program and its arguments, which no shell reads. Where a server does not
/// answer, ssh ends, and so does rsync where the rsync there does not.
///
/// Only the listing walks a site. Each other run gets the names of its files on standard input (nameList), and
/// nothing but these is touched. Every run prints one line for each item.
class RsyncCommand final
{
public:
    explicit RsyncCommand(RsyncArguments arguments) : m_arguments(std::move(arguments)) {}

    [[nodiscard]] const RsyncArguments& arguments() const { return m_arguments; }
    /// Both sides have what is needed to name them.
    [[nodiscard]] bool isComplete() const;

    /// Lists the whole remote side, for readRsyncListing().
    [[nodiscard]] std::vector<std::string> listing(const IgnoredNames& ignored) const;
    /// Lists the named items of the remote side, folders with what is in them but not below.
    [[nodiscard]] std::vector<std::string> listingOfNames(const IgnoredNames& ignored) const;

    /// From now on, transfers and deletions keep what they replace or delete.
    void keep(const KeptPublish& kept);
    /// Lists the named items of the remote side with all that is below them.
    [[nodiscard]] std::vector<std::string> listingBelowNames() const;

    enum class Overwrites { OlderFiles, AllFiles };
    /// Sends the named files.
    [[nodiscard]] std::vector<std::string> transfer(Overwrites overwrites) const;
    /// Deletes the named files and empty folders from the receiving side, if the sending side lacks them.
    [[nodiscard]] std::vector<std::string> deletion() const;
    /// Asks the remote side for the room on its disk, for readFreeSpace(); empty if it is on no server. Here a
    /// shell, the remote one, reads the folder's name; it is quoted.
    [[nodiscard]] std::vector<std::string> freeSpace() const;
    /// Deletes the named folders of the receiving side with all that is in them, if the sending side lacks them.
    [[nodiscard]] std::vector<std::string> deletionOfFolders() const;
    /// The dry run of a transfer or deletion: lists what is still to be done.
    [[nodiscard]] static std::vector<std::string> dryRunOf(std::vector<std::string> words);

    /// A transfer or deletion that also writes a line for each file it has sent to the file `log`, for
    /// readRsyncLog().
    [[nodiscard]] static std::vector<std::string> logged(std::vector<std::string> words,
                                                         const std::string& log);

    /// The paths as bytes, as the option --from0 wants them.
    [[nodiscard]] static std::string nameList(const std::vector<std::string>& paths);

private:
    RsyncArguments m_arguments;
    std::vector<std::string> m_keepOptions;

    [[nodiscard]] std::vector<std::string> sshWords() const;
    [[nodiscard]] std::string remoteShell() const;
    [[nodiscard]] std::string timeLimit() const;
    [[nodiscard]] std::vector<std::string> words(const std::vector<std::string>& options) const;
    [[nodiscard]] std::vector<std::string> listingWords(const std::vector<std::string>& options,
                                                        const std::vector<std::string>& filters) const;
};

} // namespace luma
