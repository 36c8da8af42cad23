// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/trash.h"

#include "base/filecalls.h"
#include "base/files.h"
#include "base/fileuri.h"
#include "base/usertext.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <ctime>
#include <optional>

namespace luma {

namespace fs = std::filesystem;

namespace {

struct TrashFolder
{
    fs::path path;
    fs::path top; // of the volume; the paths in the records are relative to it. Empty: absolute
};

Error noTrash(const fs::path& item)
{
    return Error{
        userText(QT_TRANSLATE_NOOP("luma::Engines", "%1: This volume has no trash"), {item.native()})};
}

std::optional<dev_t> deviceOf(const fs::path& path)
{
    struct stat status = {};
    return ::stat(path.c_str(), &status) == 0 ? std::optional(status.st_dev) : std::nullopt;
}

// Makes the folder, which must then be the user's own and no link.
bool makeOwnFolder(const fs::path& folder)
{
    struct stat status = {};
    if (::mkdir(folder.c_str(), 0700) != 0 && errno != EEXIST)
        return false;
    return ::lstat(folder.c_str(), &status) == 0 && S_ISDIR(status.st_mode) && status.st_uid == ::getuid();
}

fs::path dataFolder()
{
    if (const char* data = std::getenv("XDG_DATA_HOME"); data && *data == '/')
        return data;
    const char* home = std::getenv("HOME");
    return home && *home == '/' ? fs::path(home) / ".local/share" : fs::path();
}

std::optional<TrashFolder> volumeTrash(const fs::path& folder, dev_t device)
{
    if (isOnServer(folder))
        return {};
    fs::path top = folder;
    while (top.has_relative_path() && deviceOf(top.parent_path()) == device)
        top = top.parent_path();
    const std::string user = std::to_string(::getuid());
    struct stat shared = {};
    if (::lstat((top / ".Trash").c_str(), &shared) == 0 && S_ISDIR(shared.st_mode) &&
        (shared.st_mode & S_ISVTX) && makeOwnFolder(top / ".Trash" / user))
        return TrashFolder{top / ".Trash" / user, top};
    if (makeOwnFolder(top / (".Trash-" + user)))
        return TrashFolder{top / (".Trash-" + user), top};
    return {};
}

std::optional<TrashFolder> trashFor(const fs::path& item)
{
    const auto device = deviceOf(item.parent_path());
    if (!device)
        return {};
    const fs::path data = dataFolder();
    std::error_code error;
    if (!data.empty())
        fs::create_directories(data, error);
    if (!data.empty() && deviceOf(data) == device)
        return makeOwnFolder(data / "Trash") ? std::optional(TrashFolder{data / "Trash", {}}) : std::nullopt;
    return volumeTrash(item.parent_path(), *device);
}

std::string recordOf(const fs::path& item, const fs::path& top)
{
    const bool isRelative = !top.empty();
    const QByteArray address = fileUri(isRelative ? "/" / item.lexically_relative(top) : item);
    const std::time_t now = std::time(nullptr);
    std::tm local = {};
    ::localtime_r(&now, &local);
    std::array<char, 32> date = {};
    (void)std::strftime(date.data(), date.size(), "%Y-%m-%dT%H:%M:%S", &local);
    const std::string path = address.mid(isRelative ? 8 : 7).toStdString(); // after "file://"
    return "[Trash Info]\nPath=" + path + "\nDeletionDate=" + date.data() + "\n";
}

// Reserves a name with its record.
Result<void> writeRecord(const fs::path& info, const std::string& record)
{
    const FileDescriptor file(::open(info.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
    if (!file)
        return systemError(info, errno);
    const ssize_t written = ::write(file.get(), record.data(), record.size());
    if (written == static_cast<ssize_t>(record.size()))
        return {};
    const int code = written < 0 ? errno : ENOSPC;
    ::unlink(info.c_str());
    return systemError(info, code);
}

} // namespace

Result<TrashedItem> moveToTrash(const fs::path& path)
{
    const fs::path item = fs::absolute(path).lexically_normal();
    if (!itemExists(item))
        return systemError(item, ENOENT);
    const auto trash = trashFor(item);
    if (!trash || !makeOwnFolder(trash->path / "files") || !makeOwnFolder(trash->path / "info"))
        return noTrash(item);
    constexpr std::size_t longestName = 200; // leaves room for a number and ".trashinfo"
    constexpr int mostTries = 10'000;
    const std::string name = item.filename().native().substr(0, longestName);
    const std::string record = recordOf(item, trash->top);
    for (int number = 1; number < mostTries; ++number) {
        const std::string candidate = number == 1 ? name : name + ' ' + std::to_string(number);
        const TrashedItem trashed{item, trash->path / "files" / candidate,
                                  trash->path / "info" / (candidate + ".trashinfo")};
        if (itemExists(trashed.file) || itemExists(trashed.info))
            continue;
        if (auto written = writeRecord(trashed.info, record); !written)
            return written.error();
        auto moved = renameToFreePlace(item, trashed.file);
        if (moved)
            return trashed;
        ::unlink(trashed.info.c_str());
        if (!itemExists(trashed.file))
            return moved.error();
    }
    return noTrash(item);
}

Result<void> putBack(const TrashedItem& item)
{
    std::error_code error;
    fs::create_directories(item.original.parent_path(), error);
    if (auto moved = renameToFreePlace(item.file, item.original); !moved)
        return moved;
    ::unlink(item.info.c_str());
    return {};
}

} // namespace luma
