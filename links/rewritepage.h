// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/result.h"

#include <filesystem>
#include <functional>
#include <string>

namespace luma {

/// Gives the new source of a page; the source itself when nothing changes.
using PageChanges = std::function<std::string(std::string source)>;

/// Reads a page, applies `changes` and writes the result, if it differs, in one step. If the page changes on
/// disk meanwhile, it is read again; if it disappears, it stays gone, which is no error. True when the page was
/// written; false also when it can't be read. Error: the page could not be written and is unchanged, or it
/// keeps changing.
Result<bool> rewritePage(const std::filesystem::path& page, const PageChanges& changes);

} // namespace luma
