// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QRegularExpression>

#include <string_view>
#include <vector>

namespace luma {

/// The folders at the top of a site that a report leaves out. One thread.
class ExcludedFolders final
{
public:
    /// Names separated by commas, each a regular expression with letter case ignored, taken literally if it is invalid.
    explicit ExcludedFolders(std::string_view names);

    /// Whether the item at `subpath` is below one of them.
    [[nodiscard]] bool contain(std::string_view subpath) const;

private:
    std::vector<QRegularExpression> m_expressions;
};

} // namespace luma
