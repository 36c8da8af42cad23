// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/result.h"
#include "base/stillwanted.h"

#include <filesystem>

namespace luma {

class SiteFolder;

/// Where a file that a page uses goes: a folder beside the page, or else in the site's folder, that is named as folders of such
/// files are ("images", "css", "js", "fonts"), or else beside the page. Any thread.
std::filesystem::path folderForFile(const std::filesystem::path& file, const SiteFolder& site);

/// Whether both can be read and hold the same bytes. Any thread.
bool holdsSameBytes(const std::filesystem::path& file, const std::filesystem::path& other);

/// Copies a picture into the site, for its page, where folderForFile() says. Gives the copy's path. A file of that name is never
/// replaced: the same picture is used, beside another one the copy gets a number. Any thread.
Result<std::filesystem::path> copyPictureIntoSite(const std::filesystem::path& picture,
                                                  const SiteFolder& site, const StillWanted& stillWanted);

} // namespace luma
