// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "html/characterreferences.h"

#include <algorithm>
#include <cstddef>
#include <string_view>
#include <vector>

namespace luma {

/// The places in an attribute's value as written that belong to places in its decoded text. `decoded` is `raw` itself where
/// there is nothing to decode.
class RawPlaces final
{
public:
    RawPlaces(std::string_view raw, std::string_view decoded) : m_same(raw.data() == decoded.data())
    {
        if (!m_same)
            m_boundaries = valueBoundaries(raw);
    }

    [[nodiscard]] std::size_t operator()(std::size_t decoded) const
    {
        if (m_same)
            return decoded;
        const auto found = std::lower_bound(
            m_boundaries.begin(), m_boundaries.end(), decoded,
            [](const ValueBoundary& boundary, std::size_t place) { return boundary.decoded < place; });
        return found == m_boundaries.end() ? m_boundaries.back().raw : found->raw;
    }

private:
    bool m_same;
    std::vector<ValueBoundary> m_boundaries;
};

} // namespace luma
