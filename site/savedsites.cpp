// SPDX-License-Identifier: GPL-3.0-or-later
#include "site/savedsites.h"

#include "base/pathtext.h"
#include "browser/endpoint.h"
#include "site/sitearchive.h"

#include <QSettings>
#include <QStandardPaths>

namespace luma {

namespace {

bool isLocal(const ObservedDictionary& values)
{
    return values.string(endpoint::protocol, endpoint::fileProtocol) == endpoint::fileProtocol;
}

} // namespace

QString defaultPreferencesFile()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           QStringLiteral("/luma/luma.conf");
}

Result<std::vector<std::shared_ptr<SiteRecord>>> savedSites()
{
    std::vector<std::shared_ptr<SiteRecord>> sites;
    const QVariant stored = QSettings(defaultPreferencesFile(), QSettings::IniFormat).value(sitesArrayKey);
    if (!stored.isValid())
        return sites;
    const auto records = unarchiveSites(stored.toByteArray());
    if (!records)
        return records.error();
    for (const QVariantMap& record : *records)
        sites.push_back(std::make_shared<SiteRecord>(record));
    return sites;
}

std::filesystem::path localFolder(const ObservedDictionary& values)
{
    return isLocal(values) ? pathOf(values.string(endpoint::path)) : std::filesystem::path();
}

std::string sshLogin(const ObservedDictionary& values)
{
    const QString user = values.string(endpoint::user);
    const QString server = values.string(endpoint::server);
    if (isLocal(values) || user.isEmpty() || server.isEmpty())
        return {};
    return (user + u'@' + server).toStdString();
}

QString placeOf(const ObservedDictionary& values)
{
    QString path = values.string(endpoint::path);
    if (isLocal(values))
        return path;
    QStringList parts = {values.string(endpoint::server), values.string(endpoint::volume), path};
    parts.removeAll(QString());
    const QString user = values.string(endpoint::user);
    return values.string(endpoint::protocol) + (user.isEmpty() ? user : user + u'@') + parts.join(u'/');
}

} // namespace luma
