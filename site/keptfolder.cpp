// SPDX-License-Identifier: GPL-3.0-or-later
#include "site/keptfolder.h"

#include "base/filecalls.h"
#include "base/files.h"
#include "base/folderreader.h"
#include "base/pathbelow.h"
#include "base/usertext.h"
#include "site/folderaccess.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

namespace luma {

namespace {

// The folder `name` of `parent`, made with `mode` where there is none.
Result<FileDescriptor> openOrMakeIn(const FileDescriptor& parent, const std::string& name, mode_t mode)
{
    if (::mkdirat(parent.get(), name.c_str(), mode) != 0 && errno != EEXIST)
        return systemError(name, errno);
    return openFolderBelow(parent, name);
}

} // namespace

Result<FileDescriptor> KeptFolder::open() const
{
    auto parent = openSiteFolder(m_place.parent());
    if (!parent)
        return parent;
    return openFolderBelow(*parent, m_place.name());
}

Result<FileDescriptor> KeptFolder::openOrMake(const std::string& publish, std::string_view folder) const
{
    // What was replaced may be for few eyes. The folders below get the usual mode, because those that are put
    // back may be missing in the site.
    constexpr mode_t forUserAlone = 0700;
    constexpr mode_t usual = 0777;
    auto opened = openSiteFolder(m_place.parent());
    if (opened)
        opened = openOrMakeIn(*opened, m_place.name(), forUserAlone);
    if (opened)
        opened = openOrMakeIn(*opened, publish, forUserAlone);
    while (opened && !folder.empty()) {
        const std::size_t end = std::min(folder.find('/'), folder.size());
        opened = openOrMakeIn(*opened, std::string(folder.substr(0, end)), usual);
        folder.remove_prefix(std::min(end + 1, folder.size()));
    }
    return opened;
}

std::string KeptFolder::keep(const FileDescriptor& folder, const std::string& name,
                             const std::string& publish, const std::string& path, Original original,
                             const StillWanted& stillWanted)
{
    const auto kept = openOrMake(publish, folderPart(path));
    if (!kept)
        return userText(QT_TRANSLATE_NOOP("luma::Engines", "the old version can't be kept: %1"),
                        {systemReason(kept.error().code)});
    if (original == Original::Goes && ::renameat(folder.get(), name.c_str(), kept->get(), name.c_str()) == 0)
        return {};
    if (original == Original::Stays &&
        ::linkat(folder.get(), name.c_str(), kept->get(), name.c_str(), 0) == 0)
        return {};
    // On another file system, or one without links.
    const auto copied = copyFile(entryOf(folder, name), entryOf(*kept, name), Existing::Keep,
                                 Durability::Unsynced, stillWanted);
    return copied ? std::string() : "the old version can't be kept: " + systemReason(copied.error().code);
}

void KeptFolder::forget(const std::string& publish, const std::string& path) const
{
    if (const auto folder = openOrMake(publish, folderPart(path)))
        (void)::unlinkat(folder->get(), std::string(namePart(path)).c_str(), 0);
}

Result<std::vector<std::string>> KeptFolder::publishes() const
{
    std::vector<std::string> names;
    auto folder = open();
    if (!folder && folder.error().code == std::errc::no_such_file_or_directory)
        return names;
    auto reader = folder ? FolderReader::open(*std::move(folder), m_place.name())
                         : Result<FolderReader>(folder.error());
    if (!reader)
        return reader.error();
    while (const auto entry = reader->next()) {
        if (KeptPlace::timeOf(entry->name()) && entry->type() == FolderReader::Type::Folder)
            names.emplace_back(entry->name());
    }
    if (reader->error())
        return *reader->error();
    std::sort(names.begin(), names.end());
    return names;
}

Result<void> KeptFolder::removeBefore(std::int64_t time) const
{
    const auto names = publishes();
    const auto folder = open();
    if (!names)
        return names.error();
    for (const std::string& name : *names) {
        if (*KeptPlace::timeOf(name) >= time || !folder)
            continue;
        if (const auto removed = removeItem(entryOf(*folder, name)); !removed)
            return Error{
                userText(QT_TRANSLATE_NOOP("luma::Engines", "Old kept versions can't be removed: %1"),
                         {systemReason(removed.error().code)})};
    }
    return {};
}

} // namespace luma
