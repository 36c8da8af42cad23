// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/workitem.h"
#include "site/keptplace.h"
#include "site/rsynccommand.h"
#include "site/syncrow.h"

#include <optional>
#include <string>
#include <vector>

namespace luma {

/// What one publish has replaced or deleted.
struct KeptFiles
{
    std::string publish;              ///< the name of its folder
    std::int64_t time = 0;            ///< when it began: seconds since 1970
    std::vector<FilePair> files = {}; ///< what is kept of each, as sent; in byte order of their paths
};

/// The outcome of putting files back.
struct RestoreReport
{
    std::vector<std::size_t> done = {}; ///< numbers of the rows, ascending
    std::vector<std::string> problems = {};
};

/// The kept versions of one receiving folder, here, on a mounted share or on an ssh server: lists them, puts
/// them back and removes old ones. All calls block the calling thread, which may be any.
///
/// Files are put back as they are published: what has been changed since the publish begins unticked, and what
/// is replaced is kept in its turn. What was put back stays among the kept versions.
class KeptVersions final
{
public:
    /// Of the folder `receiving` on this computer. Errors as of KeptPlace.
    static Result<KeptVersions> here(const std::string& receiving, const KeepChoice& choice);
    /// Of the remote folder of `server`.
    static Result<KeptVersions> onServer(RsyncArguments server, ProgramRunner runProgram,
                                         const KeepChoice& choice);

    /// The newest publish first.
    [[nodiscard]] Result<std::vector<KeptFiles>> list(const WorkItem& item) const;
    /// The rows of those files of `kept` that are not in place now. `published` says how the last publish left
    /// the receiving side of `direction`.
    [[nodiscard]] Result<std::vector<SyncRow>> rows(const KeptFiles& kept, const PublishedFiles& published,
                                                    Direction direction, const WorkItem& item) const;
    /// Puts the ticked rows of `site` (siteIdentity), which the caller has locked, back until `stop` is cancelled;
    /// `item` ends the last questions to the server, too. What a killed one leaves, the next run removes.
    [[nodiscard]] RestoreReport restore(const std::string& site, const std::string& publish,
                                        const std::vector<SyncRow>& rows, const WorkItem& stop,
                                        const WorkItem& item, const OnProgress& progress = {}) const;
    /// The place for what a publish that begins now will keep.
    [[nodiscard]] KeptPublish newPublish() const { return {m_place, KeptPlace::publishNow()}; }
    /// Removes what publishes have kept that began more than `days` ago.
    [[nodiscard]] Result<void> removeOlder(int days, const StillWanted& stillWanted) const;

private:
    explicit KeptVersions(KeptPlace place) : m_place(std::move(place)) {}

    KeptPlace m_place;
    std::string m_receiving;
    std::optional<RsyncArguments> m_server;
    ProgramRunner m_runProgram;

    [[nodiscard]] std::string folderOf(const std::string& publish) const;
    [[nodiscard]] Result<std::vector<KeptFiles>> listHere(const WorkItem& item) const;
    [[nodiscard]] Result<std::vector<KeptFiles>> listOnServer(const StillWanted& stillWanted) const;
    [[nodiscard]] Result<std::vector<FilePair>> pairsHere(const KeptFiles& kept, const WorkItem& item) const;
    [[nodiscard]] Result<std::vector<FilePair>> pairsOnServer(const KeptFiles& kept,
                                                              const WorkItem& item) const;
    [[nodiscard]] RestoreReport restoreHere(const std::string& publish, std::vector<SyncRow> rows,
                                            const WorkItem& stop, const OnProgress& progress) const;
    [[nodiscard]] RestoreReport restoreOnServer(const std::string& site, const std::string& publish,
                                                const std::vector<SyncRow>& rows, const WorkItem& stop,
                                                const WorkItem& item, const OnProgress& progress) const;
    [[nodiscard]] Result<void> removeOnServer(std::int64_t before, const StillWanted& stillWanted) const;
};

} // namespace luma
