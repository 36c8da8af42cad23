// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <csetjmp>
#include <cstddef>
#include <memory>
#include <vector>

namespace luma::html {

/// Memory for one parse, given back at once, and the meter on it: the parser asks for memory with every node
/// and attribute, so here a page is seen to nest too deeply or to multiply (unclosed formatting elements are
/// opened again in every paragraph) while it happens, whatever tricks of mis-nesting led there. The parser
/// has no way to stop, so the arena jumps out of it to `escape`; the parser is plain C and all it holds is in
/// here. A node is known by its size alone, so now and then another block is taken for one: what it holds is
/// followed only where it points to such a block again.
class ParseArena final
{
public:
    /// What was too much.
    enum class Excess { None, Depth, Memory, Attributes };

    /// Sizes that tell what the parser is about to make.
    struct Sizes
    {
        std::size_t node;
        std::size_t attribute;
    };
    /// Gives the node above one that the parser made, or null.
    using ParentOf = const void* (*)(const void* node);

    ParseArena(Sizes sizes, ParentOf parentOf, std::size_t depthLimit, std::size_t memoryLimit)
        : m_sizes(sizes), m_parentOf(parentOf), m_depthLimit(depthLimit), m_memoryLimit(memoryLimit)
    {}

    /// Memory aligned for any type. Does not return once something is too much; `escape` must be set.
    void* allocate(std::size_t size);

    Excess excess() const { return m_excess; }
    std::jmp_buf escape = {};

private:
    /// Memory that is given out piece by piece.
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
    // Nodes have chunks of their own; where those begin is kept in order of address.
    Chunk m_nodeChunk;
    std::vector<const std::byte*> m_nodeChunks;
    Excess m_excess = Excess::None;
};

} // namespace luma::html
