// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "mounts/sharefolders.h"

namespace luma {

/// The ShareLister that asks gvfs.
Result<std::vector<ShareItem>> listShareFolder(const std::filesystem::path& folder);

} // namespace luma
