#include "html/parsearena.h"

#include <algorithm>

namespace luma::html {

namespace {

constexpr std::size_t blockSize = std::size_t{256} << 10U;
// The depth is measured at one node in so many.
constexpr std::size_t measuredNodes = 16;
// The sum of depths measured so stands for the parser's time: about ten seconds of it.
constexpr std::size_t depthsLimit = std::size_t{200'000'000};
// In one tag, or in tags that make no node. The parser compares each with all before it.
constexpr std::size_t attributesLimit = 8192;

} // namespace

void* ParseArena::allocate(std::size_t size)
{
    if (size == m_sizes.attribute)
        watchAttribute();
    void* const memory = carve(size);
    if (size == m_sizes.node)
        watchNode(memory);
    return memory;
}

void* ParseArena::carve(std::size_t size)
{
    constexpr std::size_t alignment = alignof(std::max_align_t);
    size = (size + alignment - 1) / alignment * alignment;
    if (size > m_left) {
        const std::size_t wanted = std::max(size, blockSize);
        m_memory += wanted;
        if (m_memory > m_memoryLimit)
            stop(Excess::Memory);
        m_blocks.emplace_back(new std::byte[wanted]);
        m_free = m_blocks.back().get();
        m_left = wanted;
    }
    std::byte* const memory = m_free;
    m_free += size;
    m_left -= size;
    return memory;
}

void ParseArena::watchNode(const void* node)
{
    // The node itself is still raw memory; the one before it has found its place.
    m_attributes = 0;
    if (++m_nodes % measuredNodes == 0) {
        std::size_t depth = 0;
        for (const void* above = m_lastNode; above; above = m_parentOf(above)) {
            if (++depth > m_depthLimit)
                stop(Excess::Depth);
        }
        m_depths += depth;
        if (m_depths > depthsLimit)
            stop(Excess::Depth);
    }
    m_lastNode = node;
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
