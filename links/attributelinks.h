// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "links/linkindex.h"
#include "links/seenhashes.h"

#include <cstdint>
#include <string_view>
#include <unordered_map>

namespace luma {

/// The engine for the values of link attributes: marks the files that a value counts for in the index, which
/// must outlive it. LinkIndex has an example. Any thread.
class AttributeLinks final
{
public:
    using Id = LinkIndex::Id;

    explicit AttributeLinks(LinkIndex& index);

    /// Marks every file that a link with this decoded value counts for in a page in `folder`. `seen` belongs
    /// to the calling thread and skips values that have been marked before.
    void mark(std::string_view value, Id folder, SeenHashes& seen);

private:
    void markUp(const LinkIndex::Start& start, std::string_view rest);
    void markDown(const LinkIndex::Start& start, Id folder, std::string_view rest);

    LinkIndex& m_index;
    std::unordered_multimap<std::uint64_t, Id> m_foldersByName; // by parent and folded name
};

} // namespace luma
