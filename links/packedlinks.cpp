// SPDX-License-Identifier: GPL-3.0-or-later
#include "links/packedlinks.h"

#include "links/fieldreader.h"

#include <limits>

namespace luma {

namespace {

// One more than the last LinkPlace.
constexpr std::uint64_t placeCount = static_cast<std::uint64_t>(LinkPlace::SheetImport) + 1;

bool readLink(FieldReader& reader, DigestLink& link, std::size_t textCount)
{
    constexpr std::uint64_t most = std::numeric_limits<std::uint32_t>::max();
    const std::uint64_t place = reader.number();
    const std::uint64_t text = reader.number();
    const std::uint64_t back = reader.number();
    const std::uint64_t line = link.line - back + reader.number();
    const std::uint64_t column = reader.number();
    if (!reader.isGood() || place >= placeCount || text >= textCount || back >= link.line || line > most ||
        column > most)
        return false;
    link = {static_cast<AddressTexts::Number>(text), static_cast<LinkPlace>(place),
            static_cast<std::uint32_t>(line), static_cast<std::uint32_t>(column)};
    return true;
}

} // namespace

PackedLinks::PackedLinks(const std::vector<DigestLink>& links)
{
    std::uint32_t line = 1;
    for (const DigestLink& link : links) {
        appendVarint(m_bytes, static_cast<std::uint64_t>(link.place));
        appendVarint(m_bytes, link.text);
        appendVarint(m_bytes, link.line < line ? line - link.line : 0);
        appendVarint(m_bytes, link.line > line ? link.line - line : 0);
        appendVarint(m_bytes, link.column);
        line = link.line;
    }
    m_bytes.shrink_to_fit();
}

PackedLinks PackedLinks::fromBytes(std::string bytes, std::size_t textCount, bool& isWhole)
{
    FieldReader reader(bytes);
    DigestLink link;
    isWhole = true;
    while (isWhole && !reader.isAtEnd())
        isWhole = readLink(reader, link, textCount);
    PackedLinks links;
    if (isWhole)
        links.m_bytes = std::move(bytes);
    return links;
}

std::vector<DigestLink> PackedLinks::links() const
{
    std::vector<DigestLink> links;
    links.reserve(m_bytes.size() / 5);
    FieldReader reader(m_bytes);
    DigestLink link;
    while (!reader.isAtEnd() && readLink(reader, link, std::numeric_limits<std::size_t>::max()))
        links.push_back(link);
    return links;
}

bool PackedLinks::hasAnyOf(const std::vector<bool>& numbers) const
{
    FieldReader reader(m_bytes);
    DigestLink link;
    while (!reader.isAtEnd() && readLink(reader, link, numbers.size())) {
        if (numbers[link.text])
            return true;
    }
    return false;
}

} // namespace luma
