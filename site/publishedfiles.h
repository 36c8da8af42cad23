// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/filedescriptor.h"
#include "base/result.h"
#include "site/filefacts.h"
#include "site/samefiles.h"
#include "site/siterecord.h"

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

namespace luma {

/// What both sides of a site had after its last publish: size and time of each file.
///
/// Kept in one file a site below the user's state folder, readable by the user alone and replaced in one step.
/// Losing it costs only the knowledge of what has changed since. Any thread, one at a time.
class PublishedFiles final
{
public:
    /// One file after the last publish, in the direction that was asked for.
    struct Pair
    {
        FileFacts sent;
        FileFacts received;
    };

    PublishedFiles() = default;
    /// Reads what was saved for `site` (siteIdentity); what is missing or damaged counts as nothing.
    static PublishedFiles load(const std::string& site);
    /// Does nothing for files that belong to no site.
    [[nodiscard]] Result<void> save() const;

    [[nodiscard]] const std::string& site() const { return m_site; }
    [[nodiscard]] bool isEmpty() const { return m_entries.empty() && m_same.size() == 0; }
    /// What was loaded, kept or set.
    [[nodiscard]] std::optional<Pair> find(const std::string& path, Direction direction) const;
    /// Forgets `path` unless both are files.
    void set(const std::string& path, const Pair& pair, Direction direction);
    /// Takes from `other` what it has for `path`, if anything.
    void keep(const std::string& path, PublishedFiles& other);
    /// Notes, for save(), files that none of the others notes. A site has many of them, and most comparisons
    /// end without a save.
    void addSame(SameFiles same) { m_same = std::move(same); }
    void forget(const std::string& path) { m_entries.erase(path); }
    /// The same site, without files.
    [[nodiscard]] PublishedFiles emptied() const;

private:
    struct Facts
    {
        std::int64_t size = 0;
        std::int64_t time = 0;
    };
    struct Entry
    {
        Facts source;
        Facts destination;
    };

    std::string m_site;
    std::unordered_map<std::string, Entry> m_entries;
    SameFiles m_same; // count for more than the entries

    [[nodiscard]] bool parse(std::string_view bytes);
};

/// What tells a site from all others, from its endpoints: where the two sides are, however they are reached.
std::string siteIdentity(const SiteRecord& record);
/// The same for a local folder and one on an ssh server, with its login, user@host.
std::string siteIdentity(const std::filesystem::path& source, const std::string& login,
                         const std::string& destination);
/// The same for two local folders.
std::string siteIdentity(const std::filesystem::path& source, const std::filesystem::path& destination);

/// Where something about publishing `site` is kept, below the user's state folder. `extension` says what.
std::filesystem::path publishingFile(const std::string& site, const char* extension);

/// Keeps all others from publishing the site, in this program or another one, until it is closed. An error when
/// somebody else holds it.
Result<FileDescriptor> lockForPublishing(const std::string& site);

} // namespace luma
