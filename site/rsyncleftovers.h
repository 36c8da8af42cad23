// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "site/siterecord.h"

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace luma {

/// The paths among `receiving` that look like temporary files of rsync for one of `sending`: ".NAME.XXXXXX" beside
/// NAME.
std::vector<std::string> rsyncTemporaries(const std::vector<std::string_view>& receiving,
                                          const std::vector<std::string_view>& sending);
/// The same for any file, also one that is not there.
std::vector<std::string> rsyncTemporaries(const std::vector<std::string_view>& receiving);

/// What killed transfers of a site have left of rsync's temporary files on the receiving side.
///
/// A name alone proves nothing: the user may have a file ".index.html.backup". So a transfer first notes the files
/// that look like temporary ones already, and removes the note once it has ended well. Where there is a note, the
/// next transfer removes those that have come since. Kept beside what PublishedFiles saves. Any thread, one at a
/// time.
class RsyncLeftovers final
{
public:
    /// Nothing is left, and nothing is noted.
    RsyncLeftovers() = default;
    /// `temporaries` are those that the receiving side of `direction` has now. Nothing is noted for an empty `site`
    /// (siteIdentity).
    RsyncLeftovers(std::string site, Direction direction, const std::vector<std::string>& temporaries);
    /// For a transfer that can't tell a temporary file from the user's: the next one removes what was to be removed,
    /// and what this one leaves if it is killed.
    [[nodiscard]] RsyncLeftovers leftToTheNext() const;

    [[nodiscard]] const std::string& site() const { return m_site; }
    /// Those to remove.
    [[nodiscard]] const std::vector<std::string>& paths() const { return m_paths; }
    /// A transfer begins. If this can't be noted, what it leaves stays.
    void noteBegin() const;
    /// It has ended well.
    void noteEnd() const;

private:
    std::string m_site;
    Direction m_direction = Direction::Upload;
    bool m_keepsNote = false;
    std::vector<std::string> m_paths;
    std::vector<std::string> m_others; // the user's own

    [[nodiscard]] std::filesystem::path note() const;
};

} // namespace luma
