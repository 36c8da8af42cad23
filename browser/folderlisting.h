// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "browser/filesystemnode.h"

#include <optional>
#include <string_view>

namespace luma {

/// The colour label that the extended attribute user.xdg.tags gives an item: the first tag of this
/// comma-separated list that names a colour (freedesktop.org, Common Extended Attributes).
LabelColor labelColorFromTags(std::string_view tags);

/// Reads the attributes of the item at `url`; none if it does not exist.
std::optional<FileProperties> readProperties(const std::string& url);

/// The items of a folder in display order, hidden ones only if asked for. None if the folder can't be opened; a
/// read error ends the list.
std::optional<std::vector<FileSystemNodePointer>> listFolder(const std::string& url, bool showsHidden);

} // namespace luma
