// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "browser/sidemark.h"
#include "site/comparedside.h"
#include "site/ignorednames.h"
#include "site/publishedfiles.h"

namespace luma {

/// The marks of one folder in both panes.
struct FolderMarks
{
    SideMarks source;
    SideMarks destination;
};

/// Compares what both sides have in the folder at `folder` as publishing does: an item that only an upload would list is
/// newer in the source. Folders count by being there alone; ignored items have no marks. Any thread.
FolderMarks marksOf(const std::string& folder, const ComparedSide::Items& source,
                    const ComparedSide::Items& destination, const PublishedFiles& published,
                    const IgnoredNames& ignored);

} // namespace luma
