// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QVariantMap>

#include <QLatin1StringView>

/// The keys of the request that a connection job gets, all strings: the job never looks at the screen. A
/// missing key is an absent value.
namespace luma::connectionrequest {

inline constexpr QLatin1StringView protocolString{"protocolString"};
inline constexpr QLatin1StringView pathValue{"pathValue"};
inline constexpr QLatin1StringView serverString{"serverString"};
inline constexpr QLatin1StringView volumeString{"volumeString"};
inline constexpr QLatin1StringView user{"user"};
inline constexpr QLatin1StringView password{"pw"};

} // namespace luma::connectionrequest
