// SPDX-License-Identifier: GPL-3.0-or-later
#include "html/parsearena.h"

#include <algorithm>
#include <functional>

namespace luma::html {

namespace {

constexpr std::size_t chunkSize = std::size_t{256} << 10U;
// The depth is measured at every 16th node.
constexpr std::size_t measuredNodes = 16;
// The sum of these depths measures the parser's time: this much takes about ten seconds.
constexpr std::size_t depthsLimit = 200'000'000;

constexpr std::size_t aligned(std::size_t size)
{
    constexpr std::size_t alignment = alignof(std::max_align_t);
    return (size + alignment - 1) / alignment * alignment;
}

} // namespace

void* ParseArena::allocate(std::size_t size)
{
    if (size == m_sizes.attribute)
        watchAttribute();
    if (size != m_sizes.node) {
        refill(m_chunk, size);
        return carve(m_chunk, size);
    }
    watchNode();
    if (m_nodeChunk.left < aligned(size)) {
        refill(m_nodeChunk, size);
        const std::byte* const begin = m_nodeChunk.free;
        m_nodeChunks.insert(std::upper_bound(m_nodeChunks.begin(), m_nodeChunks.end(), begin, std::less<>()),
                            begin);
    }
    std::byte* const node = carve(m_nodeChunk, size);
    std::fill_n(node, size, std::byte{0});
    m_lastNode = node;
    return node;
}

void ParseArena::refill(Chunk& chunk, std::size_t size)
{
    if (aligned(size) <= chunk.left)
        return;
    const std::size_t wanted = std::max(aligned(size), chunkSize);
    m_memory += wanted;
    if (m_memory > m_memoryLimit)
        stop(Excess::Memory);
    m_blocks.emplace_back(new std::byte[wanted]);
    chunk = {m_blocks.back().get(), wanted};
}

std::byte* ParseArena::carve(Chunk& chunk, std::size_t size)
{
    std::byte* const memory = chunk.free;
    chunk.free += aligned(size);
    chunk.left -= aligned(size);
    return memory;
}

bool ParseArena::isNode(const void* pointer) const
{
    const auto* at = static_cast<const std::byte*>(pointer);
    auto chunk = std::upper_bound(m_nodeChunks.begin(), m_nodeChunks.end(), at, std::less<>());
    if (!at || chunk == m_nodeChunks.begin())
        return false;
    const auto offset = static_cast<std::size_t>(at - *--chunk);
    const std::size_t step = aligned(m_sizes.node);
    return offset < chunkSize / step * step && offset % step == 0;
}

const void* ParseArena::nodeBefore(const void* node) const
{
    const void* const before = static_cast<const std::byte*>(node) - aligned(m_sizes.node);
    return isNode(before) ? before : nullptr;
}

void ParseArena::watchNode()
{
    m_attributes = 0;
    if (++m_nodes % measuredNodes != 0)
        return;
    // By now the last node has a parent.
    std::size_t depth = 0;
    for (const void* above = m_lastNode; isNode(above); above = m_parentOf(above)) {
        if (++depth > m_depthLimit)
            stop(Excess::Depth);
    }
    m_depths += depth;
    if (m_depths > depthsLimit)
        stop(Excess::Depth);
}

void ParseArena::watchAttribute()
{
    if (++m_attributes > attributesLimit)
        stop(Excess::Attributes);
}

void ParseArena::stop(Excess excess)
{
    m_excess = excess;
    std::longjmp(escape, 1);
}

} // namespace luma::html
