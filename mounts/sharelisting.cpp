// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/gpointer.h"
// GLib's headers come first, because they use Qt's word `signals` for a member.
#include "mounts/sharelisting.h"

namespace luma {

namespace {

constexpr const char* attributes =
    G_FILE_ATTRIBUTE_STANDARD_NAME "," G_FILE_ATTRIBUTE_STANDARD_TYPE "," G_FILE_ATTRIBUTE_STANDARD_SIZE
                                   "," G_FILE_ATTRIBUTE_STANDARD_SYMLINK_TARGET
                                   "," G_FILE_ATTRIBUTE_TIME_MODIFIED "," G_FILE_ATTRIBUTE_UNIX_MODE;

// As stat(2) has it; 0 for anything but files, folders and links.
mode_t typeOf(GFileInfo* info)
{
    switch (g_file_info_get_file_type(info)) {
    case G_FILE_TYPE_REGULAR:
        return S_IFREG;
    case G_FILE_TYPE_DIRECTORY:
        return S_IFDIR;
    case G_FILE_TYPE_SYMBOLIC_LINK:
        return S_IFLNK;
    default:
        return 0;
    }
}

ShareItem itemOf(GFileInfo* info)
{
    ShareItem item = {g_file_info_get_name(info), {}, {}};
    item.status.st_mode =
        typeOf(info) | (g_file_info_get_attribute_uint32(info, G_FILE_ATTRIBUTE_UNIX_MODE) & 07777U);
    item.status.st_size = static_cast<off_t>(g_file_info_get_size(info));
    item.status.st_mtim.tv_sec =
        static_cast<time_t>(g_file_info_get_attribute_uint64(info, G_FILE_ATTRIBUTE_TIME_MODIFIED));
    if (const char* const target = g_file_info_get_symlink_target(info))
        item.target = target;
    return item;
}

std::errc codeOf(const GError& error)
{
    if (error.domain != G_IO_ERROR)
        return std::errc::io_error;
    switch (error.code) {
    case G_IO_ERROR_NOT_FOUND:
        return std::errc::no_such_file_or_directory;
    case G_IO_ERROR_NOT_MOUNTED: // gone meanwhile, which says nothing about the folder
        return std::errc::not_connected;
    case G_IO_ERROR_NOT_DIRECTORY:
        return std::errc::not_a_directory;
    case G_IO_ERROR_PERMISSION_DENIED:
        return std::errc::permission_denied;
    case G_IO_ERROR_TIMED_OUT:
        return std::errc::timed_out;
    default:
        return std::errc::io_error;
    }
}

Error errorOf(const std::filesystem::path& folder, GError* raw)
{
    const GPointer<GError> error(raw);
    return Error{folder.string() + ": " + error->message, codeOf(*error)};
}

Result<std::vector<ShareItem>> listOnce(const std::filesystem::path& folder)
{
    const GPointer<GFile> file(g_file_new_for_path(folder.c_str()));
    GError* error = nullptr;
    const GPointer<GFileEnumerator> reader(g_file_enumerate_children(
        file.get(), attributes, G_FILE_QUERY_INFO_NOFOLLOW_SYMLINKS, nullptr, &error));
    if (!reader)
        return errorOf(folder, error);
    std::vector<ShareItem> items;
    while (GFileInfo* const next = g_file_enumerator_next_file(reader.get(), nullptr, &error)) {
        const GPointer<GFileInfo> info(next);
        items.push_back(itemOf(info.get()));
    }
    if (error)
        return errorOf(folder, error);
    return items;
}

} // namespace

Result<std::vector<ShareItem>> listShareFolder(const std::filesystem::path& folder)
{
    auto items = listOnce(folder);
    // The first request after a share was mounted again may go to the daemon of the former mount.
    if (!items && items.error().code == std::errc::io_error)
        items = listOnce(folder);
    return items;
}

} // namespace luma
