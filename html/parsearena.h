// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <csetjmp>
#include <cstddef>
#include <memory>
#include <vector>

namespace luma::html {

/// The memory of one parse, freed all at once, and the limit on it. The parser allocates for every node and
/// attribute, so this is where a page shows that it nests too deeply or multiplies its elements (unclosed
/// formatting elements reopen in every paragraph), however it does so. The parser can't be told to stop, so
/// the arena jumps out of it to `escape`; that is safe because the parser is plain C and all its memory is
/// here. A node is recognised by its size alone, so another block may be taken for one: a pointer in it is
/// followed only to another such block.
class ParseArena final
{
public:
    /// What exceeded its limit.
    enum class Excess { None, Depth, Memory, Attributes };

    /// So many attributes may be in one tag, or in tags that make no node: the parser compares each with all before it.
    static constexpr std::size_t attributesLimit = 8192;

    /// The sizes by which allocations are recognised.
    struct Sizes
    {
        std::size_t node;
        std::size_t attribute;
    };
    /// Gives the parent of one of the parser's nodes, or null.
    using ParentOf = const void* (*)(const void* node);

    ParseArena(Sizes sizes, ParentOf parentOf, std::size_t depthLimit, std::size_t memoryLimit)
        : m_sizes(sizes), m_parentOf(parentOf), m_depthLimit(depthLimit), m_memoryLimit(memoryLimit)
    {}

    /// Memory aligned for any type. `escape` must be set: this does not return once a limit is exceeded.
    void* allocate(std::size_t size);

    Excess excess() const { return m_excess; }
    /// The last block of a node's size, and the one before a block as long as they lie side by side; null if there is none.
    /// A node that was just handed out is empty.
    const void* lastNode() const { return m_lastNode; }
    const void* nodeBefore(const void* node) const;
    std::jmp_buf escape = {};

private:
    /// A block that is handed out piece by piece.
    struct Chunk
    {
        std::byte* free = nullptr;
        std::size_t left = 0;
    };

    void refill(Chunk& chunk, std::size_t size);
    static std::byte* carve(Chunk& chunk, std::size_t size);
    bool isNode(const void* pointer) const;
    void watchNode();
    void watchAttribute();
    [[noreturn]] void stop(Excess excess);

    Sizes m_sizes;
    ParentOf m_parentOf;
    std::size_t m_depthLimit;
    std::size_t m_memoryLimit;
    std::size_t m_memory = 0;
    std::size_t m_nodes = 0;
    std::size_t m_depths = 0;
    std::size_t m_attributes = 0;
    const void* m_lastNode = nullptr;
    std::vector<std::unique_ptr<std::byte[]>> m_blocks;
    Chunk m_chunk;
    // Nodes have separate chunks, whose starts are kept sorted by address.
    Chunk m_nodeChunk;
    std::vector<const std::byte*> m_nodeChunks;
    Excess m_excess = Excess::None;
};

} // namespace luma::html
