// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/filedescriptor.h"
#include "base/result.h"

#include <dirent.h>
#include <sys/stat.h>

#include <memory>
#include <optional>
#include <string>

namespace luma {

/// Reads the entries of one folder, in the file system's order and without "." and "..". Used by one thread.
///
///     while (const auto entry = folder.next())
///         use(*entry);
///     if (folder.error())
///         return *folder.error();
class FolderReader final
{
public:
    enum class Type { File, Folder, Link, Other };

    /// One entry, valid until the next one is read.
    class Entry final
    {
    public:
        Entry(int folder, const dirent& entry) : m_folder(folder), m_entry(&entry) {}

        /// Bytes, in any encoding or none.
        [[nodiscard]] const char* name() const { return static_cast<const char*>(m_entry->d_name); }
        /// True when the listing itself says "folder"; false also where it gives no types. Costs nothing.
        [[nodiscard]] bool isListedAsFolder() const { return m_entry->d_type == DT_DIR; }
        /// The entry's own type, a link's being Link. Other when it is gone. Costs a system call only where
        /// the file system lists no types.
        [[nodiscard]] Type type() const;
        /// The type of what the entry leads to, links followed; nothing for a broken link.
        [[nodiscard]] std::optional<Type> targetType() const;

    private:
        int m_folder;
        const dirent* m_entry;
    };

    static Type typeOf(const struct stat& status);

    /// Opens the folder at `path`; a link to a folder is followed.
    static Result<FolderReader> open(const std::string& path);
    /// Reads an open folder; `path` is for errors.
    static Result<FolderReader> open(FileDescriptor folder, std::string path);

    /// The next entry; nothing at the end or after an error.
    [[nodiscard]] std::optional<Entry> next();
    /// Why next() stopped before the end.
    [[nodiscard]] const std::optional<Error>& error() const { return m_error; }
    /// The open folder, which the reader owns.
    [[nodiscard]] int descriptor() const { return ::dirfd(m_stream.get()); }

private:
    struct Closer
    {
        void operator()(DIR* stream) const { ::closedir(stream); }
    };

    FolderReader(DIR* stream, std::string path) : m_stream(stream), m_path(std::move(path)) {}

    std::unique_ptr<DIR, Closer> m_stream;
    std::string m_path;
    std::optional<Error> m_error;
};

} // namespace luma
