// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/links/site.h"

#include "base/files.h"

#include <fstream>
#include <system_error>

namespace luma::test {

namespace fs = std::filesystem;

Site::Site(const std::map<std::string, std::string>& files)
{
    for (const auto& [subpath, bytes] : files)
        put(subpath, bytes);
}

fs::path Site::root() const
{
    return m_folder.path().toStdString();
}

void Site::put(std::string_view subpath, std::string_view bytes) const
{
    fs::create_directories(at(subpath).parent_path());
    std::ofstream(at(subpath), std::ios::binary) << bytes;
}

std::string Site::bytesOf(std::string_view subpath) const
{
    const auto bytes = readFile(at(subpath));
    return bytes ? *bytes : "unreadable: " + bytes.error().text;
}

std::map<std::string, std::string> Site::contentsOf(const fs::path& root)
{
    std::map<std::string, std::string> contents;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(root)) {
        if (const auto bytes = readFile(entry.path()))
            contents[entry.path().lexically_relative(root).native()] = *bytes;
    }
    return contents;
}

bool RealSite::isInstalled() const
{
    std::error_code error;
    return fs::is_directory(folder, error);
}

fs::path RealSite::usual() const
{
    return qEnvironmentVariableIsSet("LUMA_REAL_SITES") ? folder : folder / part;
}

const std::vector<RealSite>& realSites()
{
    static const std::vector<RealSite> sites = {
        {"python3-doc", "/usr/share/doc/python3.11/html", "c-api"},
        {"postgresql-doc-15", "/usr/share/doc/postgresql-doc-15/html", ""},
        {"openjdk-17-doc", "/usr/share/doc/openjdk-17-jre-headless/api", "java.sql"},
        {"qtbase5-doc-html", "/usr/share/qt5/doc", "qtnetwork"}};
    return sites;
}

} // namespace luma::test
