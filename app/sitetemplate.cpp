// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/sitetemplate.h"

#include "base/files.h"
#include "base/resources.h"
#include "browser/endpoint.h"

#include <QCoreApplication>
#include <QDir>
#include <QStandardPaths>
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

Result<QVariantMap> sampleSite()
{
    namespace fs = std::filesystem;
    const QString documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    const fs::path folder = fs::path(documents.toStdString()) / "LUMA sample site";
    std::error_code error;
    fs::create_directories(folder / "published", error);
    if (error)
        return Error{folder.string() + ": " + error.message()};
    // The installed folder may be a link.
    const fs::path original = fs::canonical(resourceFolder() / "sample-site", error);
    if (!itemExists(folder / "pages")) {
        if (const auto copied = copyItem(original, folder / "pages"); !copied)
            return copied.error();
    }
    auto record = transientRecord(folder / "pages", folder / "published");
    if (!record)
        return record.error();
    (*record)[QStringLiteral("siteID")] = QCoreApplication::translate("luma::SiteTemplate", "Sample site");
    QVariantMap destination = record->value(QStringLiteral("destinationDict")).toMap();
    destination[endpoint::server] = QString();
    (*record)[QStringLiteral("destinationDict")] = destination;
    return record;
}

} // namespace luma
