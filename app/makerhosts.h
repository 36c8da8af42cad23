// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QLatin1StringView>

/// The hosts that belong to the maker, in one place. They lie under a name that is reserved for examples
/// until there are real ones.
namespace luma::maker {

inline constexpr QLatin1StringView webSite{"www.luma.example"};
inline constexpr QLatin1StringView productPage{"/software/LUMA/"};
inline constexpr QLatin1StringView updateServer{"update.luma.example"};
/// Names another update server, host or host:port.
inline constexpr const char* updateServerVariable = "LUMA_UPDATE_SERVER";

/// Stands in a new record until the user gives the real host.
inline constexpr QLatin1StringView placeholderServer{"www.your-site.example"};

} // namespace luma::maker
