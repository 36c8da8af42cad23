// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/stillwanted.h"
#include "links/linkupdatingmove.h"

#include <cstdint>
#include <filesystem>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace luma {

/// Remembers which items are where in a site, to tell when another program has moved or renamed some: one is gone, and the same
/// one is at another place. A file is recognised by its size and time, and by its inode or its name, else by its size and content;
/// a folder by its inode and a file in it. Of a large file the begin and the end are read, and of a large site not every file.
/// Hidden items are left out, and so are sites with more than some 200,000 items, which would cost too much memory.
/// One thread at a time.
class FilePlaces final
{
public:
    explicit FilePlaces(std::filesystem::path site) : m_site(std::move(site)) {}

    /// Looks at the items in these folders (absolute paths), or at all, and gives those that have moved since the last time.
    /// Nothing the first time. A folder counts as one item. If it is stopped, it looks at all the next time.
    std::vector<MovedItem> update(const std::optional<std::set<std::string>>& folders,
                                  const StillWanted& stillWanted = {});

private:
    struct Identity
    {
        std::uint64_t device = 0;
        std::uint64_t inode = 0;
        std::uint64_t size = 0;
        std::int64_t modified = 0; // in nanoseconds
        std::uint64_t content = 0; // its hash; 0 where it is not known
        bool isFolder = false;
    };
    using Names = std::map<std::string, Identity>; // names in a folder, or subpaths
    class Matcher;

    [[nodiscard]] Names namesIn(const std::string& folder, const Names& before,
                                const StillWanted& stillWanted);
    [[nodiscard]] std::uint64_t contentOf(const std::filesystem::path& file, std::uint64_t size);
    bool lookAt(const std::string& folder, const StillWanted& stillWanted);
    bool addBelow(const std::string& folder, const StillWanted& stillWanted);
    void forgetBelow(const std::string& folder);
    std::vector<MovedItem> takeMoves();

    std::filesystem::path m_site;
    std::map<std::string, Names> m_folders; // by subpath
    Names m_gone;                           // and not found again yet
    Names m_come;
    std::size_t m_seen = 0;    // items that were found in folders so far
    std::uint64_t m_read = 0;  // bytes of files
    bool m_isKnown = false;    // every item has been seen
    bool m_isComplete = false; // the last look at the items was not stopped
};

} // namespace luma
