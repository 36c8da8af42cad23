// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/sitetemplate.h"

#include "app/makerhosts.h"
#include "browser/endpoint.h"

namespace luma {

namespace {

QVariantMap endpointOf(const QString& protocol, const QString& server, const QString& user)
{
    return {{endpoint::protocol, protocol},
            {endpoint::server, server},
            {endpoint::volume, QStringLiteral("Macintosh HD")},
            {endpoint::path, QStringLiteral("/Library/WebServer/Documents")},
            {endpoint::user, user},
            {endpoint::password, QString()},
            {endpoint::autoconnect, qlonglong{1}},
            {endpoint::sshPortNo, QStringLiteral("22")}};
}

} // namespace

QVariantMap siteTemplate()
{
    const QString server = maker::placeholderServer;
    return {{QStringLiteral("siteID"), QString(QStringLiteral("Site: ") + server)},
            {QStringLiteral("sourceDict"),
             endpointOf(endpoint::fileProtocol, QStringLiteral("localhost"), QString())},
            {QStringLiteral("destinationDict"),
             endpointOf(QStringLiteral("smb://"), server, QStringLiteral("username"))}};
}

} // namespace luma
