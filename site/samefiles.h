// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "site/filefacts.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace luma {

/// Files that are the same on both sides, in no order. Most files of a site are, so they are packed: a string
/// for each would take longer than comparing the files.
class SameFiles final
{
public:
    [[nodiscard]] std::size_t size() const { return m_size; }

    /// The file `name` of `folder`, a relative path that is empty for the site's own folder; bytes.
    void add(std::string_view folder, std::string_view name, const FileFacts& facts)
    {
        const bool isBelow = !folder.empty();
        const Header header = {folder.size() + (isBelow ? 1 : 0) + name.size(), facts.size, facts.time};
        std::string& block = blockFor(sizeof header + header.pathLength);
        std::array<char, sizeof header> bytes;
        std::memcpy(bytes.data(), &header, sizeof header);
        block.append(bytes.data(), bytes.size()).append(folder).append(isBelow ? 1 : 0, '/').append(name);
        ++m_size;
    }

    void append(SameFiles&& other)
    {
        std::move(other.m_blocks.begin(), other.m_blocks.end(), std::back_inserter(m_blocks));
        m_size += std::exchange(other.m_size, 0);
        other.m_blocks.clear();
    }

    /// Calls `f(path, size, time)` for each. The path is valid as long as these files.
    template <class F>
    void forEach(F f) const
    {
        for (std::string_view rest : m_blocks) {
            while (!rest.empty()) {
                Header header;
                std::memcpy(&header, rest.data(), sizeof header);
                f(rest.substr(sizeof header, header.pathLength), header.size, header.time);
                rest.remove_prefix(sizeof header + header.pathLength);
            }
        }
    }

private:
    struct Header
    {
        std::size_t pathLength = 0;
        std::int64_t size = 0;
        std::int64_t time = 0;
    };

    std::vector<std::string> m_blocks; // each file's header, then its path
    std::size_t m_size = 0;

    // One with room for `length` bytes more.
    std::string& blockFor(std::size_t length)
    {
        constexpr std::size_t usual = 1U << 16U;
        if (m_blocks.empty() || m_blocks.back().capacity() - m_blocks.back().size() < length)
            m_blocks.emplace_back().reserve(std::max(usual, length));
        return m_blocks.back();
    }
};

/// The files of two folders side by side, in no order.
struct FoundFiles
{
    SameFiles same = {};
    std::vector<FilePair> files = {};               ///< all others, or all
    std::vector<std::string> folders = {};          ///< of the sending side, its root as ""
    std::vector<FilePair> emptyFolders = {};        ///< of the sending side, when there is no other
    std::vector<std::string> foldersOnlyThere = {}; ///< of the receiving side, if asked for
    std::vector<std::string> problems = {};         ///< lines for the user
    std::size_t ignored = 0;                        ///< items of the sending side that were left alone
    bool isComplete = false;                        ///< nothing that one of the two sides has is missing here
    bool receivingIsEmpty = false;                  ///< the receiving folder has nothing that is not ignored
    std::optional<std::int64_t> freeBytes = {};     ///< on the receiving disk, where that is known
};

} // namespace luma
