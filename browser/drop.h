// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "links/linkupdatingmove.h"

#include <filesystem>
#include <vector>

namespace luma {

/// What the user has dropped onto a pane: these items are to be moved or copied into this folder.
struct Drop
{
    MoveOperation operation = MoveOperation::Copy;
    std::vector<std::filesystem::path> items;
    std::filesystem::path folder;
};

} // namespace luma
