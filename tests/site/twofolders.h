// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/files.h"

#include <QTest>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <fstream>
#include <string>
#include <vector>

namespace luma::test {

/// Two folders to compare, "sending" and "receiving", in a temporary folder of their own. Files are named by
/// their path from there; their age is in seconds before one fixed moment.
class TwoFolders final
{
public:
    TwoFolders()
    {
        std::string name = (std::filesystem::temp_directory_path() / "luma-two-XXXXXX").string();
        m_root = ::mkdtemp(name.data());
        std::filesystem::create_directories(sending());
        std::filesystem::create_directories(receiving());
    }

    TwoFolders(const TwoFolders&) = delete;
    TwoFolders& operator=(const TwoFolders&) = delete;
    // QTemporaryDir does not remove names that are not UTF-8.
    ~TwoFolders()
    {
        std::error_code error;
        std::filesystem::remove_all(m_root, error);
    }

    [[nodiscard]] std::filesystem::path root() const { return m_root; }
    [[nodiscard]] std::filesystem::path sending() const { return root() / "sending"; }
    [[nodiscard]] std::filesystem::path receiving() const { return root() / "receiving"; }
    [[nodiscard]] std::filesystem::path at(const std::string& path) const { return root() / path; }

    void put(const std::string& path, std::string_view bytes = "text", double age = 100) const
    {
        std::filesystem::create_directories(at(path).parent_path());
        std::ofstream(at(path)) << bytes;
        setAge(path, age);
    }

    void setAge(const std::string& path, double age) const
    {
        const auto moment = std::chrono::file_clock::from_sys(
            std::chrono::sys_seconds(std::chrono::sys_days(std::chrono::year(2026) / 1 / 1)));
        const auto before =
            std::chrono::duration_cast<std::chrono::file_clock::duration>(std::chrono::duration<double>(age));
        std::filesystem::last_write_time(at(path), moment - before);
    }

    [[nodiscard]] std::string bytes(const std::string& path) const
    {
        const auto read = readFile(at(path));
        return read ? *read : "unreadable: " + read.error().text;
    }

    /// Every file and link below `folder`, one a line, sorted; folders with nothing in them end in "/".
    [[nodiscard]] std::string listing(const std::string& folder) const
    {
        std::vector<std::string> paths;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(at(folder))) {
            const bool isFolder = entry.is_directory() && !entry.is_symlink();
            const std::string path = entry.path().lexically_relative(at(folder)).string();
            if (!isFolder)
                paths.push_back(path + "\n");
            else if (std::filesystem::is_empty(entry.path()))
                paths.push_back(path + "/\n");
        }
        std::sort(paths.begin(), paths.end());
        std::string text;
        for (const std::string& path : paths)
            text += path;
        return text;
    }

    /// What a shell command prints; nothing when it fails.
    static std::string run(const std::string& command)
    {
        std::string output;
        FILE* const pipe = ::popen(command.c_str(), "r");
        char buffer[4096];
        while (const std::size_t got = std::fread(buffer, 1, sizeof buffer, pipe))
            output.append(buffer, got);
        return ::pclose(pipe) == 0 ? output : std::string();
    }

private:
    std::filesystem::path m_root;
};

} // namespace luma::test

/// For QCOMPARE, which by itself does not show what differs in a std::string.
namespace QTest {

template <>
inline char* toString(const std::string& text)
{
    return ::strdup(text.c_str());
}

} // namespace QTest
