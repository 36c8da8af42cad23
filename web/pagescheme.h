// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>

class QUrl;

namespace luma {

/// The private scheme under which pages are served to the editor's web view: "luma://PAGE/path". The host
/// names the open page, so that every page is an origin of its own and none reads another's files.
class PageScheme final
{
public:
    static QByteArray name();

    /// Makes the scheme known and, for the root user alone (containers, CI), switches the web engine's
    /// sandbox off. main() calls it once, before the application object is made.
    static void registerScheme();

    /// True when `url` has the scheme and the given page as its host.
    static bool isOfPage(const QUrl& url, const QString& page);
};

} // namespace luma
