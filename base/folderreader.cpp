// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/folderreader.h"

#include "base/filecalls.h"

#include <fcntl.h>

#include <cerrno>
#include <string_view>

namespace luma {

FolderReader::Type FolderReader::typeOf(const struct stat& status)
{
    switch (status.st_mode & S_IFMT) {
    case S_IFREG:
        return Type::File;
    case S_IFDIR:
        return Type::Folder;
    case S_IFLNK:
        return Type::Link;
    default:
        return Type::Other;
    }
}

FolderReader::Type FolderReader::Entry::type() const
{
    struct stat status = {};
    switch (m_entry->d_type) {
    case DT_REG:
        return Type::File;
    case DT_DIR:
        return Type::Folder;
    case DT_LNK:
        return Type::Link;
    case DT_UNKNOWN:
        return ::fstatat(m_folder, name(), &status, AT_SYMLINK_NOFOLLOW) == 0 ? typeOf(status) : Type::Other;
    default:
        return Type::Other;
    }
}

std::optional<FolderReader::Type> FolderReader::Entry::targetType() const
{
    struct stat status = {};
    if (::fstatat(m_folder, name(), &status, 0) != 0)
        return {};
    return typeOf(status);
}

Result<FolderReader> FolderReader::open(const std::string& path)
{
    DIR* const stream = ::opendir(path.c_str());
    if (!stream)
        return systemError(path, errno);
    return FolderReader(stream, path);
}

Result<FolderReader> FolderReader::open(FileDescriptor folder, std::string path)
{
    DIR* const stream = ::fdopendir(folder.get());
    if (!stream)
        return systemError(path, errno);
    (void)folder.release(); // the stream owns it now
    return FolderReader(stream, std::move(path));
}

std::optional<FolderReader::Entry> FolderReader::next()
{
    for (;;) {
        errno = 0;
        const dirent* const entry = ::readdir(m_stream.get());
        if (!entry) {
            if (errno != 0)
                m_error = systemError(m_path, errno);
            return {};
        }
        const std::string_view name = static_cast<const char*>(entry->d_name);
        if (name != "." && name != "..")
            return Entry(descriptor(), *entry);
    }
}

} // namespace luma
