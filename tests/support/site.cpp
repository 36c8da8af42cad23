// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/support/site.h"

#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <set>
#include <system_error>

namespace luma::test {

namespace fs = std::filesystem;

Site::Site(const Files& files)
{
    std::string name = (fs::temp_directory_path() / "luma-site-XXXXXX").native();
    if (!::mkdtemp(name.data()))
        qFatal("no temporary folder: %s", std::strerror(errno));
    m_root = name;
    for (const auto& [subpath, bytes] : files)
        put(subpath, bytes);
}

// QTemporaryDir can't remove names that are not UTF-8.
Site::~Site()
{
    std::error_code error;
    fs::remove_all(m_root, error);
}

void Site::put(std::string_view subpath, std::string_view bytes) const
{
    fs::create_directories(at(subpath).parent_path());
    std::ofstream(at(subpath), std::ios::binary) << bytes;
}

void Site::setAge(std::string_view subpath, double seconds) const
{
    const auto moment = std::chrono::file_clock::from_sys(
        std::chrono::sys_seconds(std::chrono::sys_days(std::chrono::year(2026) / 1 / 1)));
    const std::chrono::duration<double> age(seconds);
    fs::last_write_time(at(subpath),
                        moment - std::chrono::duration_cast<std::chrono::file_clock::duration>(age));
}

std::string Site::bytesOf(std::string_view subpath) const
{
    std::error_code error;
    std::ifstream file;
    if (fs::is_regular_file(at(subpath), error))
        file.open(at(subpath), std::ios::binary);
    return file.is_open() ? std::string(std::istreambuf_iterator(file), {})
                          : "unreadable: " + std::string(subpath);
}

Files Site::contents(std::string_view folder) const
{
    Files files;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(at(folder))) {
        if (entry.is_regular_file())
            files[entry.path().lexically_relative(at(folder)).native()] =
                bytesOf(entry.path().lexically_relative(m_root).native());
    }
    return files;
}

std::string Site::listing(std::string_view folder) const
{
    std::set<std::string> lines;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(at(folder))) {
        const bool isFolder = entry.is_directory() && !entry.is_symlink();
        if (!isFolder || fs::is_empty(entry.path()))
            lines.insert(entry.path().lexically_relative(at(folder)).native() + (isFolder ? "/\n" : "\n"));
    }
    std::string text;
    for (const std::string& line : lines)
        text += line;
    return text;
}

} // namespace luma::test
