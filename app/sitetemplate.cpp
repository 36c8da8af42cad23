// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/sitetemplate.h"

#include "browser/endpoint.h"

#include <QCoreApplication>
#include <QDir>
#include <QStringDecoder>

namespace luma {

namespace {

QVariantMap endpointOf(const QString& protocol, const QString& server)
{
    return {{endpoint::protocol, protocol},        {endpoint::server, server},
            {endpoint::volume, QString()},         {endpoint::path, QDir::homePath()},
            {endpoint::user, QString()},           {endpoint::password, QString()},
            {endpoint::autoconnect, qlonglong{1}}, {endpoint::sshPortNo, QStringLiteral("22")}};
}

} // namespace

QVariantMap siteTemplate()
{
    return {{QStringLiteral("siteID"), QCoreApplication::translate("luma::SiteTemplate", "New site")},
            {QStringLiteral("sourceDict"), endpointOf(endpoint::fileProtocol, QStringLiteral("localhost"))},
            {QStringLiteral("destinationDict"), endpointOf(QStringLiteral("sftp://"), QString())}};
}

Result<QVariantMap> transientRecord(const std::filesystem::path& source,
                                    const std::filesystem::path& destination)
{
    QVariantMap record = siteTemplate();
    record[QStringLiteral("siteID")] = QString::fromStdString(source.filename().string());
    const QVariantMap local = record.value(QStringLiteral("sourceDict")).toMap();
    for (const auto& [key, folder] :
         {std::pair{"sourceDict", &source}, std::pair{"destinationDict", &destination}}) {
        QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
        const QString path = decoder(QByteArray::fromStdString(folder->string()));
        if (decoder.hasError())
            return Error{folder->string() + ": the name is not UTF-8"};
        QVariantMap side = local;
        side[endpoint::path] = path;
        record[QLatin1StringView(key)] = side;
    }
    return record;
}

} // namespace luma
