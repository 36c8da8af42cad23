// SPDX-License-Identifier: GPL-3.0-or-later
#include "page/picturecopy.h"

#include "base/files.h"
#include "page/sitefolder.h"

#include <string>
#include <system_error>

namespace fs = std::filesystem;

namespace luma {

namespace {

fs::path folderForPictures(const SiteFolder& site)
{
    std::error_code ignored;
    for (const fs::path& parent : {site.page().parent_path(), site.folder()}) {
        for (const char* const name : {"images", "img", "pictures", "bilder", "media"}) {
            if (fs::is_directory(parent / name, ignored))
                return parent / name;
        }
    }
    return site.page().parent_path();
}

bool isSamePicture(const fs::path& picture, const fs::path& other)
{
    std::error_code error;
    if (fs::file_size(picture, error) != fs::file_size(other, error) || error)
        return false;
    const auto bytes = readFile(picture);
    const auto others = readFile(other);
    return bytes && others && *bytes == *others;
}

} // namespace

Result<fs::path> copyPictureIntoSite(const fs::path& picture, const SiteFolder& site,
                                     const StillWanted& stillWanted)
{
    const fs::path folder = folderForPictures(site);
    fs::path target = folder / picture.filename();
    for (int number = 2; itemExists(target); ++number) {
        if (isSamePicture(picture, target))
            return target;
        target = folder / picture.stem();
        target += "-" + std::to_string(number);
        target += picture.extension();
    }
    // A symbolic link would be copied as one.
    std::error_code error;
    const fs::path file = fs::canonical(picture, error);
    if (error)
        return Error{picture.string() + ": " + error.message()};
    if (auto copied = copyFile(file, target, Existing::Keep, Durability::Synced, stillWanted); !copied)
        return copied.error();
    return target;
}

} // namespace luma
