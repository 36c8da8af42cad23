// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QLatin1StringView>
#include <QtGlobal>

#include <array>

/// The keys of an endpoint dictionary: where one side of a site is and how it is reached. All values are
/// strings except `autoconnect`, an integer (1 = connect when the site's window opens). The ssh port is a
/// string because it goes into command lines unchanged.
namespace luma::endpoint {

inline constexpr QLatin1StringView protocol{"protocol"};
inline constexpr QLatin1StringView server{"server"};
inline constexpr QLatin1StringView volume{"volume"};
inline constexpr QLatin1StringView path{"path"};
inline constexpr QLatin1StringView user{"user"};
inline constexpr QLatin1StringView password{"password"};
/// The name under which the desktop's secret service has the password; a stored record then holds none.
inline constexpr QLatin1StringView passwordID{"passwordID"};
inline constexpr QLatin1StringView autoconnect{"autoconnect"};
inline constexpr QLatin1StringView sshPortNo{"sshPortNo"};

/// The protocol of a local folder; any other means a server.
inline constexpr QLatin1StringView fileProtocol{"file://"};
/// The protocol whose connections use the ssh port.
inline constexpr QLatin1StringView sftpProtocol{"sftp://"};

/// A protocol that a user can choose: the beginning of its URLs, and its description, untranslated, in the
/// translation context "luma::endpoint".
struct Protocol
{
    QLatin1StringView scheme;
    const char* meaning;
};

/// The protocols to choose from, in the order of the menus: local folders and those of the desktop's network
/// file systems.
inline constexpr std::array protocols = {
    Protocol{fileProtocol, QT_TRANSLATE_NOOP("luma::endpoint", "Local folder")},
    Protocol{QLatin1StringView("smb://"), QT_TRANSLATE_NOOP("luma::endpoint", "Windows share")},
    Protocol{sftpProtocol, QT_TRANSLATE_NOOP("luma::endpoint", "SSH")},
    Protocol{QLatin1StringView("dav://"), QT_TRANSLATE_NOOP("luma::endpoint", "WebDAV")},
    Protocol{QLatin1StringView("davs://"), QT_TRANSLATE_NOOP("luma::endpoint", "WebDAV, encrypted")},
    Protocol{QLatin1StringView("ftp://"), QT_TRANSLATE_NOOP("luma::endpoint", "FTP")},
    Protocol{QLatin1StringView("afp://"), QT_TRANSLATE_NOOP("luma::endpoint", "Apple share")},
    Protocol{QLatin1StringView("nfs://"), QT_TRANSLATE_NOOP("luma::endpoint", "NFS")},
};

} // namespace luma::endpoint
