// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/result.h"
#include "links/linkmapping.h"

#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace luma {

/// What a job has done to the links of a site, for the documents that are open. A plain value; any thread.
struct LinksUpdate
{
    /// A page or style sheet (UTF-8) that was at `oldFile` and is now at `newFile`, with its links right. Error: they can't be
    /// changed without changing more.
    using Updated = std::function<Result<std::string>(
        std::string_view source, const std::filesystem::path& oldFile, const std::filesystem::path& newFile)>;

    /// A file that was rewritten, with the hashes of its bytes before and after (hashOfFile()).
    struct File
    {
        std::filesystem::path path; // where it is now
        std::string oldHash;
        std::string newHash;
    };

    std::vector<MovedItem> items;
    Updated updated; // empty where the job failed and no link has changed
    std::vector<File> files;
    std::string action = {}; // what changed texts rather than links: Replace; empty for links
};

} // namespace luma
