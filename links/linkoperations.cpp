// SPDX-License-Identifier: GPL-3.0-or-later
#include "links/linkoperations.h"

#include "base/files.h"

#include <sys/stat.h>

#include <optional>

namespace luma {

namespace fs = std::filesystem;

namespace {

// What tells one state of a file from the next.
struct FileState
{
    dev_t device;
    ino_t inode;
    off_t size;
    timespec modified;

    bool operator==(const FileState& other) const
    {
        return device == other.device && inode == other.inode && size == other.size &&
               modified.tv_sec == other.modified.tv_sec && modified.tv_nsec == other.modified.tv_nsec;
    }
};

std::optional<FileState> stateOf(const fs::path& path)
{
    struct stat status = {};
    if (::stat(path.c_str(), &status) != 0)
        return std::nullopt;
    return FileState{status.st_dev, status.st_ino, status.st_size, status.st_mtim};
}

} // namespace

std::string rebaseLinks(const ParsedPage& page, const fs::path& oldFolder, const fs::path& newFolder)
{
    std::vector<LinkChange> changes;
    for (std::size_t i = 0; i < page.links.size(); ++i) {
        std::string value = rebasedLink(page.links[i].value, oldFolder, newFolder);
        if (value != page.links[i].value)
            changes.push_back({i, std::move(value)});
    }
    return withChangedLinks(page, std::move(changes));
}

Result<bool> rewritePage(const fs::path& page, const PageChanges& changed)
{
    constexpr int mostAttempts = 3;
    for (int attempt = 0; attempt < mostAttempts; ++attempt) {
        const auto before = stateOf(page);
        const auto source = readFile(page);
        if (!before || !source)
            return false;
        const std::string result = changed(*source);
        if (result == *source)
            return false;
        const auto now = stateOf(page);
        if (!now)
            return false;
        if (!(*now == *before))
            continue;
        if (auto written = writeFile(page, result); !written)
            return written.error();
        return true;
    }
    return Error{page.string() + ": is being changed by somebody else"};
}

Result<bool> updateLinksTo(const fs::path& page, const fs::path& oldTarget, const fs::path& newTarget)
{
    const LinkMapping mapping({{oldTarget, newTarget}});
    return rewritePage(page, [&](std::string source) {
        if (!mapping.mayConcern(source))
            return source;
        const auto parsed = parsePage(source);
        if (!parsed)
            return source;
        return withChangedLinks(*parsed, mapping.changesOf(*parsed, page.parent_path()));
    });
}

} // namespace luma
