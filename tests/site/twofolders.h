// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tests/support/site.h"

#include <algorithm>
#include <cstdio>

namespace luma::test {

/// Two folders to compare, "sending" and "receiving". Ages are in seconds before a fixed moment.
class TwoFolders : public Site
{
public:
    TwoFolders()
    {
        makeFolder("sending");
        makeFolder("receiving");
    }

    [[nodiscard]] std::filesystem::path sending() const { return at("sending"); }
    [[nodiscard]] std::filesystem::path receiving() const { return at("receiving"); }

    void put(std::string_view path, std::string_view bytes = "text", double age = 100) const
    {
        Site::put(path, bytes);
        setAge(path, age);
    }

    /// Puts a file below `folder` for each of `names`, which are separated by "|".
    void putAll(const std::string& folder, std::string_view names) const
    {
        while (!names.empty()) {
            const std::size_t end = std::min(names.find('|'), names.size());
            put(folder + '/' + std::string(names.substr(0, end)));
            names.remove_prefix(std::min(end + 1, names.size()));
        }
    }

    /// The output of a shell command; empty when it fails.
    static std::string run(const std::string& command)
    {
        std::string output;
        FILE* const pipe = ::popen(command.c_str(), "r");
        char buffer[4096];
        while (const std::size_t got = std::fread(buffer, 1, sizeof buffer, pipe))
            output.append(buffer, got);
        return ::pclose(pipe) == 0 ? output : std::string();
    }
};

} // namespace luma::test
