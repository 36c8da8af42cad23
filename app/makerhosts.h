// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QLatin1StringView>

/// The maker's hosts: names reserved for examples (RFC 2606) until there are real ones.
namespace luma::maker {

inline constexpr QLatin1StringView webSite{"www.luma.example"};
inline constexpr QLatin1StringView productPage{"/software/LUMA/"};
inline constexpr QLatin1StringView updateServer{"update.luma.example"};
/// The environment variable for another update server, as host or host:port.
inline constexpr const char* updateServerVariable = "LUMA_UPDATE_SERVER";

} // namespace luma::maker
