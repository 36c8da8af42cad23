// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "browser/filesystemnode.h"

#include <optional>

namespace luma {

/// Reads what a node keeps of the item at `url`; nothing when there is no such item.
std::optional<FileProperties> readProperties(const std::string& url);

/// One level of a folder, hidden names left out, in display order. Nothing when the folder can't be opened;
/// an error on the way ends the list.
std::optional<std::vector<FileSystemNodePointer>> listFolder(const std::string& url);

} // namespace luma
