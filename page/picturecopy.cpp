// SPDX-License-Identifier: GPL-3.0-or-later
#include "page/picturecopy.h"

#include "base/files.h"
#include "links/webrules.h"
#include "page/sitefolder.h"

#include <string>
#include <system_error>
#include <vector>

namespace fs = std::filesystem;

namespace luma {

namespace {

using FolderNames = std::vector<const char*>;

FolderNames usualFolders(const fs::path& file)
{
    const std::string type = contentTypeOf(file);
    if (type.starts_with("image/"))
        return {"images", "img", "pictures", "bilder", "media"};
    if (type == "text/css")
        return {"css", "styles", "style", "stylesheets"};
    if (isScript(file.native()))
        return {"js", "scripts", "javascript"};
    if (type.starts_with("font/"))
        return {"fonts", "webfonts"};
    return {};
}

} // namespace

fs::path folderForFile(const fs::path& file, const SiteFolder& site)
{
    std::error_code ignored;
    const FolderNames names = usualFolders(file);
    for (const fs::path& parent : {site.page().parent_path(), site.folder()}) {
        for (const char* const name : names) {
            if (fs::is_directory(parent / name, ignored))
                return parent / name;
        }
    }
    return site.page().parent_path();
}

bool holdsSameBytes(const fs::path& file, const fs::path& other)
{
    std::error_code error;
    if (fs::file_size(file, error) != fs::file_size(other, error) || error)
        return false;
    const auto bytes = readFile(file);
    const auto others = readFile(other);
    return bytes && others && *bytes == *others;
}

Result<fs::path> copyPictureIntoSite(const fs::path& picture, const SiteFolder& site,
                                     const StillWanted& stillWanted)
{
    const fs::path folder = folderForFile(picture, site);
    fs::path target = folder / picture.filename();
    for (int number = 2; itemExists(target); ++number) {
        if (holdsSameBytes(picture, target))
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
