// SPDX-License-Identifier: GPL-3.0-or-later
#include "browser/fileoperations.h"

#include "base/filecalls.h"
#include "base/files.h"

#include <sys/stat.h>

#include <cerrno>

namespace luma::fileoperations {

Result<std::filesystem::path> newFolder(const std::filesystem::path& parent)
{
    const std::string name = "untitled folder";
    std::filesystem::path folder = parent / name;
    for (int number = 2; ::mkdir(folder.c_str(), 0777) != 0; ++number) {
        if (errno != EEXIST)
            return systemError(folder, errno);
        folder = parent / (name + ' ' + std::to_string(number));
    }
    return folder;
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
