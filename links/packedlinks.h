// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "links/addresstexts.h"
#include "links/linkplaces.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace luma {

/// An address of a page, as a digest keeps it.
struct DigestLink
{
    AddressTexts::Number text = 0;
    LinkPlace place = LinkPlace::Href;
    std::uint32_t line = 1;
    std::uint32_t column = 1;
};

/// The links of a page, packed to a few bytes each, in document order.
class PackedLinks final
{
public:
    PackedLinks() = default;
    explicit PackedLinks(const std::vector<DigestLink>& links);
    /// Takes bytes() of another one. Invalid ones, or numbers of texts from `textCount` on, give no links, and isWhole is false.
    static PackedLinks fromBytes(std::string bytes, std::size_t textCount, bool& isWhole);

    [[nodiscard]] std::vector<DigestLink> links() const;
    /// Whether one of them has a text whose number is set in `numbers`.
    [[nodiscard]] bool hasAnyOf(const std::vector<bool>& numbers) const;
    [[nodiscard]] const std::string& bytes() const { return m_bytes; }

private:
    std::string m_bytes;
};

} // namespace luma
