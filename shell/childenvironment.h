// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

namespace luma {

/// Our environment as "NAME=value" strings for a child, with a locale whose characters are UTF-8: ours when
/// it is one, else C.UTF-8. Programs such as rsync print file names as they are only then.
std::vector<std::string> childEnvironment();

} // namespace luma
