// SPDX-License-Identifier: GPL-3.0-or-later
// One side of bench/site/run: makes the trees, compares them, and transfers the changes.
#include "site/filetransfer.h"
#include "site/foldercomparison.h"

#include <sys/resource.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <vector>

namespace fs = std::filesystem;
using namespace luma;

namespace {

// 2,000 folders of `files` / 2,000 small files each; every hundredth file is new, or an hour newer on the
// sending side.
void makeTrees(const fs::path& root, int files)
{
    const auto now = fs::file_time_type::clock::now();
    constexpr int folderCount = 2000;
    for (int i = 0; i < files; ++i) {
        const int folder = i % folderCount;
        const fs::path relative = fs::path("area" + std::to_string(folder % 20)) /
                                  ("folder" + std::to_string(folder)) /
                                  ("page-" + std::to_string(i) + ".html");
        for (const char* side : {"sending", "receiving"}) {
            const bool isSending = std::strcmp(side, "sending") == 0;
            const bool isChanged = i % 100 == 0;
            fs::create_directories((root / side / relative).parent_path());
            if (isChanged && i % 200 == 0 && !isSending)
                continue;
            std::ofstream(root / side / relative) << "<html><body>page " << i << "</body></html>\n";
            fs::last_write_time(root / side / relative,
                                now - std::chrono::hours(isChanged && isSending ? 23 : 24));
        }
    }
}

long peakKilobytes()
{
    rusage usage = {};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
}

} // namespace

int main(int argc, char** argv)
{
    const std::string what = argc > 1 ? argv[1] : "";
    if (what == "make" && argc == 4) {
        makeTrees(argv[2], std::atoi(argv[3]));
        return 0;
    }
    if ((what != "compare" && what != "transfer") || argc != 4) {
        (void)std::fprintf(stderr, "bench_sync make ROOT FILES | compare A B | transfer A B\n");
        return 2;
    }
    auto report = FolderComparison({argv[2], argv[3]}).run(WorkItem());
    if (!report)
        return 1;
    const std::size_t found = report->rows.size();
    std::size_t copied = 0;
    if (what == "transfer")
        copied = FileTransfer(std::move(report->rows)).run(WorkItem()).done.size();
    (void)std::printf("%zu found, %zu copied, %ld kB at most\n", found, copied, peakKilobytes());
    return 0;
}
