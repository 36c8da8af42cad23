// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "links/pagedigest.h"
#include "links/sitepagereader.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace luma {

/// A digest fresh from the page, with the texts themselves. Made on any thread; packed() is for one at a time.
class FreshDigest final
{
public:
    FreshDigest() = default;
    /// What `reader` has read in the file called `name`.
    FreshDigest(const SitePageReader& reader, std::string_view name);

    [[nodiscard]] const std::string& base() const { return m_digest.base; }
    [[nodiscard]] const PagePlaces& places() const { return m_digest.places; }
    /// Their texts are numbered from 0.
    [[nodiscard]] const std::vector<DigestLink>& links() const { return m_links; }
    [[nodiscard]] std::string_view text(std::size_t number) const
    {
        return std::string_view(m_texts).substr(m_begins[number], m_begins[number + 1] - m_begins[number]);
    }

    [[nodiscard]] PageDigest packed(AddressTexts& texts) &&;

private:
    PageDigest m_digest;
    std::vector<DigestLink> m_links;
    std::string m_texts;
    std::vector<std::size_t> m_begins = {0}; // by number, and one more
};

} // namespace luma
