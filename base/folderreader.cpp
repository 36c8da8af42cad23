// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/folderreader.h"

#include "base/filecalls.h"

#include <fcntl.h>

#include <cerrno>
#include <string_view>

namespace luma {

namespace {

FolderReader::Type typeOf(mode_t mode)
{
    if (S_ISREG(mode))
        return FolderReader::Type::File;
    if (S_ISDIR(mode))
        return FolderReader::Type::Folder;
    return S_ISLNK(mode) ? FolderReader::Type::Link : FolderReader::Type::Other;
}

} // namespace

FolderReader::Type FolderReader::Entry::type() const
{
    if (m_entry->d_type != DT_UNKNOWN)
        return typeOf(DTTOIF(m_entry->d_type));
    struct stat status = {};
    if (::fstatat(m_folder, name(), &status, AT_SYMLINK_NOFOLLOW) != 0)
        return Type::Other;
    return typeOf(status.st_mode);
}

std::optional<FolderReader::Type> FolderReader::Entry::targetType() const
{
    struct stat status = {};
    if (::fstatat(m_folder, name(), &status, 0) != 0)
        return {};
    return typeOf(status.st_mode);
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
