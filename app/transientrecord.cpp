// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/transientrecord.h"

#include "app/sitetemplate.h"
#include "browser/endpoint.h"

#include <QStringDecoder>

namespace luma {

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
