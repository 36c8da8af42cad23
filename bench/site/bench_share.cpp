// SPDX-License-Identifier: GPL-3.0-or-later
// Lists a mounted share as a comparison does, to be timed beside `gio list -a`.
//     bench_share FOLDER
#include "base/workitem.h"
#include "mounts/sharefolders.h"
#include "mounts/sharelisting.h"
#include "site/foldercomparison.h"

#include <cstdio>

int main(int argc, char** argv)
{
    if (argc != 2)
        return 2;
    luma::setShareLister(luma::listShareFolder);
    const auto found = luma::FolderComparison({.sending = argv[1], .receiving = {}}).find(luma::WorkItem());
    if (!found)
        return 1;
    std::printf("%zu files in %zu folders\n", found->files.size(), found->folders.size());
    return 0;
}
