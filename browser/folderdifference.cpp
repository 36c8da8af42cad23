// SPDX-License-Identifier: GPL-3.0-or-later
#include "browser/folderdifference.h"

#include <algorithm>
#include <string_view>
#include <unordered_map>

namespace luma {

namespace {

using Nodes = std::vector<FileSystemNodePointer>;
using LeafByName = std::unordered_map<std::string_view, bool>;

LeafByName leavesByName(const Nodes& nodes)
{
    LeafByName leaves;
    leaves.reserve(nodes.size());
    for (const FileSystemNodePointer& node : nodes)
        leaves.emplace(node->name(), node->isLeaf());
    return leaves;
}

/// The ranges of `nodes` that `others` does not contain, in ascending order.
std::vector<RowRange> missingFrom(const LeafByName& others, const Nodes& nodes)
{
    std::vector<RowRange> ranges;
    for (int row = 0; row < static_cast<int>(nodes.size()); ++row) {
        const FileSystemNode& node = *nodes[static_cast<std::size_t>(row)];
        const auto found = others.find(node.name());
        if (found != others.end() && found->second == node.isLeaf())
            continue;
        if (!ranges.empty() && ranges.back().last == row - 1)
            ranges.back().last = row;
        else
            ranges.push_back({row, row});
    }
    return ranges;
}

} // namespace

FolderDifference folderDifference(const Nodes& before, const Nodes& after)
{
    FolderDifference difference = {missingFrom(leavesByName(after), before),
                                   missingFrom(leavesByName(before), after)};
    std::reverse(difference.removed.begin(), difference.removed.end());
    return difference;
}

} // namespace luma
