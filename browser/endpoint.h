#pragma once

#include <QLatin1StringView>

/// The keys of an endpoint dictionary: where one side of a site lies and how it is reached. All values are
/// strings but for `autoconnect`, an integer number (1 = connect when the site's window opens). The ssh port
/// is a string on purpose: it is pasted into command lines as it stands.
namespace luma::endpoint {

inline constexpr QLatin1StringView protocol{"protocol"};
inline constexpr QLatin1StringView server{"server"};
inline constexpr QLatin1StringView volume{"volume"};
inline constexpr QLatin1StringView path{"path"};
inline constexpr QLatin1StringView user{"user"};
inline constexpr QLatin1StringView password{"password"};
inline constexpr QLatin1StringView autoconnect{"autoconnect"};
inline constexpr QLatin1StringView sshPortNo{"sshPortNo"};

/// The protocol of a local folder; any other is a server's.
inline constexpr QLatin1StringView fileProtocol{"file://"};

} // namespace luma::endpoint
