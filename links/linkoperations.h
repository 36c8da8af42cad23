// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/result.h"
#include "links/linkmapping.h"
#include "links/parsedpage.h"

#include <filesystem>
#include <functional>
#include <string>

namespace luma {

/// The page's source with every link rebased from one folder to the other, each as rebasedLink has it.
std::string rebaseLinks(const ParsedPage& page, const std::filesystem::path& oldFolder,
                        const std::filesystem::path& newFolder);

/// Rewrites the links of the page at `page` that begin with the relative path to `oldTarget`, which is gone
/// from there or has been copied, so that they lead to `newTarget`. A link that leads to something else that
/// exists is left alone. True when the page was changed and written; false also for what is no page. Error:
/// the changed page could not be written, and is as it was.
Result<bool> updateLinksTo(const std::filesystem::path& page, const std::filesystem::path& oldTarget,
                           const std::filesystem::path& newTarget);

/// Reads the page, lets `changes` say what is to be changed (on nothing: leave it), and writes the page. When
/// somebody else writes it meanwhile it is read once more; one that is gone meanwhile is no error and stays
/// gone.
using PageChanges = std::function<std::string(std::string source)>;
Result<bool> rewritePage(const std::filesystem::path& page, const PageChanges& changed);

} // namespace luma
