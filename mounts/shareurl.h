// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace luma {

/// The parts of a share URL ("smb://host:445/Web%20Site/docs"), percent-encoding decoded.
struct ShareUrl
{
    std::string scheme; ///< in lower case, "smb"
    std::string user;   ///< the part before '@', mostly empty
    std::string host;   ///< in lower case, without brackets
    std::string port;   ///< digits, or empty
    std::string path;   ///< begins with one '/', no '/' doubled, none at the end but for "/" itself
};

/// Nothing when the text is not a URL with a host.
std::optional<ShareUrl> parseShareUrl(std::string_view url);

/// The share URL with the account's name in it, so that one account's mount is never taken for another's.
/// For smb, "DOMAIN\user" names a domain. Unchanged when the URL already names a user or `user` is empty.
std::string shareUrlForUser(const std::string& url, const std::string& user);

/// The path of `url` below `share`, without a leading '/'; empty when both name the same folder; nothing when
/// `url` is elsewhere. Scheme, host, port and user must be equal (no user matches any), and `url` must be at or
/// below the share's path. The letter case of an smb share's name is ignored.
std::optional<std::string> pathBelowShare(const ShareUrl& url, const ShareUrl& share);

} // namespace luma
