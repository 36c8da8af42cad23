#pragma once

#include "platform/files.h"

#include <QTemporaryDir>

#include <chrono>
#include <cstdlib>
#include <fstream>
#include <string>

namespace luma::test {

/// Two folders to compare, "sending" and "receiving", in a temporary folder of their own. Files are named by
/// their path from there; their age is in seconds before one fixed moment.
class TwoFolders final
{
public:
    TwoFolders()
    {
        std::filesystem::create_directories(sending());
        std::filesystem::create_directories(receiving());
    }

    [[nodiscard]] std::filesystem::path root() const { return m_folder.path().toStdString(); }
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
        const auto before = std::chrono::duration_cast<std::chrono::file_clock::duration>(
            std::chrono::duration<double>(age));
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
        std::string command = "cd '" + at(folder).string()
                              + "' && find . \\( -type d -empty -printf '%P/\\n' \\) -o \\( ! -type d -printf "
                                "'%P\\n' \\) | LC_ALL=C sort";
        return run(command);
    }

    /// What a shell command prints.
    static std::string run(const std::string& command)
    {
        std::string output;
        FILE* const pipe = ::popen(command.c_str(), "r");
        char buffer[4096];
        while (const std::size_t got = std::fread(buffer, 1, sizeof buffer, pipe))
            output.append(buffer, got);
        (void)::pclose(pipe);
        return output;
    }

private:
    QTemporaryDir m_folder;
};

} // namespace luma::test
