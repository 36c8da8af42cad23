// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "lumactl/commandarguments.h"
#include "lumactl/lumactlcommands.h"
#include "site/foldercomparison.h"
#include "site/keptversions.h"
#include "site/rsyncjob.h"

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace luma {

/// What to compare and to publish, as the arguments of a command say.
struct PublishSides
{
    std::filesystem::path source;
    std::string destination; // a folder, here or on the server
    std::string login;       // user@host, or empty
    std::string port = "22";
    Direction direction = Direction::Upload;
    IgnoredNames ignored;
    Deletions deletions = Deletions::Ignored;
    KeepChoice keep;
    std::string identity;             // siteIdentity
    std::shared_ptr<SiteRecord> site; // a saved one

    [[nodiscard]] SyncFolders folders() const
    {
        if (direction == Direction::Upload)
            return {source, destination};
        return {destination, source};
    }
    [[nodiscard]] RsyncArguments arguments() const
    {
        return {source.native() + '/', login + ':' + destination + '/', direction, port};
    }
    [[nodiscard]] RsyncJob rsync() const { return {arguments(), &runProgram}; }
    // Of the receiving side.
    [[nodiscard]] Result<KeptVersions> keptVersions() const
    {
        if (!login.empty() && direction == Direction::Upload)
            return KeptVersions::onServer(arguments(), &runProgram, keep);
        return KeptVersions::here(direction == Direction::Upload ? destination : source.native(), keep);
    }
};

/// Nothing, after a message, if the arguments or the folders can't be used.
std::optional<PublishSides> publishSidesOf(const LumactlCommand& command, const CommandArguments& line);

/// How rows are printed: --json, -0, or a name a line.
enum class RowForm { Lines, Json, Bytes };
RowForm rowFormOf(const CommandArguments& line);

/// Prints the rows, or the ticked ones; false if that failed.
bool printRows(const std::vector<SyncRow>& rows, RowForm form, bool tickedOnly);

/// Ticks or unticks the rows of these names. A name may be given as it was printed, else as its bytes.
void tickNamed(std::vector<SyncRow>& rows, const std::vector<std::string>& names, bool on);

} // namespace luma
