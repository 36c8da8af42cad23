// SPDX-License-Identifier: GPL-3.0-or-later
#include "browser/fileoperations.h"

#include "base/filecalls.h"
#include "base/files.h"

#include <sys/stat.h>

#include <cerrno>

namespace luma::fileoperations {

std::filesystem::path newFolderPath(const std::filesystem::path& parent)
{
    return parent / "New Folder";
}

Result<void> newFolder(const std::filesystem::path& parent)
{
    const std::filesystem::path folder = newFolderPath(parent);
    if (::mkdir(folder.c_str(), 0777) != 0)
        return systemError(folder, errno);
    return {};
}

std::filesystem::path duplicatePath(const std::filesystem::path& item)
{
    std::string extension = item.extension().string();
    // A final dot does not start an extension.
    const std::string base = extension == "." ? item.filename().string() : item.stem().string();
    if (extension == ".")
        extension.clear();
    return item.parent_path() / (base + " copy" + extension);
}

Result<void> duplicate(const std::filesystem::path& item, const StillWanted& stillWanted)
{
    return copyItem(item, duplicatePath(item), stillWanted);
}

} // namespace luma::fileoperations
