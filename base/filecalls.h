// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/filedescriptor.h"
#include "base/result.h"

#include <sys/stat.h>

#include <array>
#include <filesystem>
#include <string>

namespace luma {

/// System calls on files with errors as Result. Safe on any thread. Paths are bytes.

/// The system's words for `code`: "No such file or directory".
std::string systemReason(std::errc code);
/// Names the path and the system's reason; `code` is an errno, read directly after the call that failed.
Error systemError(const std::filesystem::path& path, int code);
/// The error of a job on `path` that was stopped: isStopped() is true.
Error stoppedError(const std::filesystem::path& path);

/// open(2); O_CLOEXEC is added to `flags`. With O_NONBLOCK opening a FIFO does not wait for its writer.
Result<FileDescriptor> openFile(const std::string& path, int flags);

/// True for the errors of file systems, mostly on a network, that have no owners, modes or times to set.
bool isUnsupported(int code);

using Times = std::array<timespec, 2>; // last access and last modification, as futimens(3) takes them
Times timesOf(const struct stat& status);

/// Whether `path` is on a file system of a server or in user space, as most of those are (statfs(2)); true if that can't be
/// told. Other computers may then change it unseen.
bool isOnServer(const std::filesystem::path& path);

/// A template for mkostemp(3) and mkdtemp(3): a hidden name beside `target`, in the form that a publish takes for our own
/// temporary file.
std::string temporaryTemplate(const std::filesystem::path& target);

/// Sets the mode or the times of an open file, where the file system has them; errors name `target`.
Result<void> keepMode(int descriptor, mode_t mode, const std::filesystem::path& target);
Result<void> keepTimes(int descriptor, const Times& times, const std::filesystem::path& target);

/// Waits until what was created, renamed or removed in a folder is on the disk. Failures are ignored: some file systems
/// know no such thing.
void syncFolder(const std::filesystem::path& folder);

/// Renames `from` to `to`. An error when `to` exists, even if it appeared only now.
Result<void> renameToFreePlace(const std::filesystem::path& from, const std::filesystem::path& to);

} // namespace luma
