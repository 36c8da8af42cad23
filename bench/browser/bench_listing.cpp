// SPDX-License-Identifier: GPL-3.0-or-later
#include "bench/measuring.h"
#include "browser/filesystemnode.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

namespace fs = std::filesystem;

namespace {

constexpr int entries = 50'000;
constexpr int rounds = 9;

fs::path makeFolder()
{
    fs::path folder = fs::temp_directory_path() / ("luma-bench-listing-" + std::to_string(::rand()));
    fs::create_directory(folder);
    for (int i = 0; i < entries; ++i) {
        const std::string name = "Page number " + std::to_string(i * 7919 % entries) + ".html";
        if (i % 50 == 0)
            fs::create_directory(folder / name);
        else
            std::ofstream(folder / name);
    }
    return folder;
}

} // namespace

/// Lists 50,000 entries through FileSystemNode and by `ls -lU` of the same folder, in alternation and with
/// warm caches.
int main()
{
    std::srand(static_cast<unsigned>(std::chrono::system_clock::now().time_since_epoch().count()));
    const fs::path folder = makeFolder();
    const std::string command = "ls -lU '" + folder.string() + "' > /dev/null";
    double ours = 1e9;
    double theirs = 1e9;
    std::size_t count = 0;
    for (int round = 0; round < rounds; ++round) {
        theirs = std::min(theirs, luma::bench::measured([&] { (void)std::system(command.c_str()); }));
        ours = std::min(ours, luma::bench::measured([&] {
                            luma::FileSystemNode node(folder);
                            count = node.children().size();
                        }));
    }
    fs::remove_all(folder);
    std::printf("%zu entries: FileSystemNode %.1f ms, ls -lU %.1f ms, ratio %.2f (at most 3)\n", count, ours,
                theirs, ours / theirs);
    return count == entries && ours <= 3 * theirs ? 0 : 1;
}
