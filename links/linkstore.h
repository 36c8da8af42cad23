// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/result.h"
#include "links/addresstexts.h"
#include "links/filestamp.h"
#include "links/pagedigest.h"

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace luma {

/// A page and what it said when its file had this stamp.
struct StoredPage
{
    std::string subpath;
    FileStamp stamp;
    PageDigest digest;
};

/// What the pages of one site say, in a file of the user's cache folder that the user alone can read. Everything in it can be
/// made again. Any thread.
class LinkStore final
{
public:
    struct Content
    {
        AddressTexts texts; // of the digests
        std::vector<StoredPage> pages;
    };

    /// For the site at this path.
    explicit LinkStore(const std::filesystem::path& site);

    [[nodiscard]] const std::filesystem::path& file() const { return m_file; }

    /// Nothing where there is no file, where it is damaged, of another site, or written by another version of the program, which
    /// may have read pages in another way.
    [[nodiscard]] std::optional<Content> load() const;

    using PageSink =
        std::function<void(const std::string& subpath, const FileStamp& stamp, const PageDigest& digest)>;
    /// Gives each page to be stored.
    using Pages = std::function<void(const PageSink& page)>;

    /// Writes a file in the place of the old one. Files that were not written for months are removed from the folder.
    Result<void> save(const AddressTexts& texts, const Pages& pages) const;

private:
    std::filesystem::path m_site;
    std::filesystem::path m_file;
};

} // namespace luma
