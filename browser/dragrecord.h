// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>

#include <filesystem>
#include <vector>

namespace luma {

/// The MIME type of drags between panes: an XML property list of an array of full paths.
inline constexpr char dragRecordType[] = "application/x-luma-paths";

/// A path is stored as a string if possible, otherwise as data (a name that is not UTF-8 or contains control
/// characters).
QByteArray dragRecord(const std::vector<std::filesystem::path>& paths);
/// The paths in a record of dragRecord(), without entries of other types; none if it is not such a record.
std::vector<std::filesystem::path> pathsOfDragRecord(const QByteArray& record);

/// The same paths for other programs (text/uri-list, RFC 2483): every byte not allowed in a URL is
/// percent-encoded, so names of any bytes are preserved.
QByteArray uriList(const std::vector<std::filesystem::path>& paths);
/// The clipboard of file managers: "copy" or "cut" in the first line, then the addresses.
inline constexpr char fileClipboardType[] = "x-special/gnome-copied-files";

/// The local files in a list written by any program, without comments, other URLs and files on other hosts.
std::vector<std::filesystem::path> pathsOfUriList(const QByteArray& list);

} // namespace luma
