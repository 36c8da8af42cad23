// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/result.h"
#include "site/siterecord.h"

#include <filesystem>
#include <memory>
#include <vector>

/// The user's list of sites for programs that only read it. Any thread.
namespace luma {

/// luma/luma.conf in the user's configuration folder: the preferences and the list of sites.
QString defaultPreferencesFile();

/// Where the preferences hold the list, as archiveSites() makes it.
inline constexpr QLatin1StringView sitesArrayKey{"sitesArrayData"};

/// The records as the application has last saved them; none if it has saved no list. Fails if the list can't be read.
Result<std::vector<std::shared_ptr<SiteRecord>>> savedSites();

/// The folder of an endpoint on this computer; empty for one on a server.
std::filesystem::path localFolder(const ObservedDictionary& endpoint);
/// The login of an endpoint that rsync reaches over ssh, as user@host; empty for any other.
std::string sshLogin(const ObservedDictionary& endpoint);
/// An endpoint in one line, without its password: a path, or "sftp://user@host/path".
QString placeOf(const ObservedDictionary& endpoint);

} // namespace luma
