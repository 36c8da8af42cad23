// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace luma {

/// Remembers hashes of what one thread has handled, so that most repetitions are skipped. It starts over when
/// it has grown to some million entries.
class SeenHashes final
{
public:
    /// True when the hash is new, or was forgotten.
    bool insert(std::uint64_t hash);

private:
    void grow();

    std::vector<std::uint64_t> m_table; // open addressing; 0 is free
    std::size_t m_count = 0;
};

} // namespace luma
