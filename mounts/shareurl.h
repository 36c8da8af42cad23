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
    std::string user;   ///< what stands before the '@'; mostly empty
    std::string host;   ///< in lower case, without brackets
    std::string port;   ///< digits, or empty
    std::string path;   ///< begins with one '/', no '/' doubled, none at the end but for "/" itself
};

/// Nothing where the text is no URL with a host.
std::optional<ShareUrl> parseShareUrl(std::string_view url);

/// The share URL with the account's name in it, so that one account's mount is never taken for another's.
/// For smb "DOMAIN\user" names a domain. A URL that names a user already, or an empty `user`, stays.
std::string shareUrlForUser(const std::string& url, const std::string& user);

/// True when both name the same share or the first a folder below the second: same scheme, host, port and
/// user (an absent user fits any), the second's path leading. An smb share's name is compared without letter
/// case.
bool isBelowShare(const ShareUrl& url, const ShareUrl& share);

/// The rest of `path` below `folder`, without a leading '/'; nothing when `folder` does not lead to it.
/// `ignoreCaseOfFirst` compares the first name (an smb share) without letter case.
std::optional<std::string> pathBelow(std::string_view path, std::string_view folder, bool ignoreCaseOfFirst);

} // namespace luma
