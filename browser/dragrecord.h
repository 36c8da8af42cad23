// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>

#include <filesystem>
#include <vector>

namespace luma {

/// The type under which panes hand each other paths: an XML property list holding an array of full paths.
inline constexpr char dragRecordType[] = "application/x-luma-paths";

/// A path is a string where a property list can hold it, else data (a name that is not UTF-8, or that holds
/// control characters).
QByteArray dragRecord(const std::vector<std::filesystem::path>& paths);
/// What dragRecord() wrote; entries of another kind are left out, and anything else is no paths at all.
std::vector<std::filesystem::path> pathsOfDragRecord(const QByteArray& record);

/// The same paths for other programs (text/uri-list, RFC 2483): every byte that may not stand in a URL is
/// percent-encoded, so that a name of any bytes arrives.
QByteArray uriList(const std::vector<std::filesystem::path>& paths);
/// The local files of such a list, whoever wrote it; comments, other URLs and files of other machines are
/// left out.
std::vector<std::filesystem::path> pathsOfUriList(const QByteArray& list);

} // namespace luma
