// SPDX-License-Identifier: GPL-3.0-or-later
#include "site/comparedside.h"

#include "base/filecalls.h"
#include "site/folderaccess.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <climits>

namespace luma {

namespace {

std::string linkTarget(int folder, const char* name)
{
    std::array<char, PATH_MAX> target;
    const ssize_t length = ::readlinkat(folder, name, target.data(), target.size());
    return {target.data(), length < 0 ? 0 : static_cast<std::size_t>(length)};
}

} // namespace

FileFacts factsOf(int folder, const char* name, const struct stat& status)
{
    FileFacts facts = FileFacts::of(status);
    if (facts.type == FileFacts::Type::Link)
        facts.target = linkTarget(folder, name);
    return facts;
}

Result<FolderReader> readFolderBelow(const FileDescriptor& root, const std::string& relativePath)
{
    auto folder = openFolderBelow(root, relativePath);
    if (!folder)
        return folder.error();
    return FolderReader::open(*std::move(folder), relativePath);
}

Result<ComparedSide> ComparedSide::open(const std::filesystem::path& path)
{
    auto root = openSiteFolder(path);
    if (!root)
        return root.error();
    return ComparedSide{*std::move(root), path, shareListerFor(path)};
}

Result<ComparedSide::Items> ComparedSide::items(const std::string& relativePath) const
{
    Items all;
    if (shareLister) {
        auto listed = shareLister(relativePath.empty() ? path : path / relativePath);
        if (!listed)
            return listed.error();
        for (ShareItem& item : *listed) {
            FileFacts facts = FileFacts::of(item.status);
            facts.target = std::move(item.target);
            all.emplace(std::move(item.name), std::move(facts));
        }
        return all;
    }
    auto reader = readFolderBelow(root, relativePath);
    if (!reader)
        return reader.error();
    while (const auto entry = reader->next()) {
        struct stat status = {};
        if (::fstatat(reader->descriptor(), entry->name(), &status, AT_SYMLINK_NOFOLLOW) == 0)
            all.emplace(entry->name(), factsOf(reader->descriptor(), entry->name(), status));
        else if (errno != ENOENT)
            return systemError(entry->name(), errno);
    }
    if (reader->error())
        return *reader->error();
    return all;
}

} // namespace luma
