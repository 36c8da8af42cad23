// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace luma {

/// The address of a share: the protocol text as it is, the percent-encoded server, "/", the percent-encoded
/// volume (but for the protocol text "FTP") and the percent-encoded path (but for "SMB"). No user name or
/// password goes into it. What may not stand in the path of a URL (RFC 3986, section 3.3) is encoded; a text
/// that is not valid Unicode becomes empty.
QString mountURL(const QString& protocol, const QString& server, const QString& volume, const QString& path);

} // namespace luma
