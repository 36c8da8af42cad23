// SPDX-License-Identifier: GPL-3.0-or-later
#include "site/sitearchive.h"

#include "base/propertylist.h"
#include "base/usertext.h"

namespace luma {

namespace {

const QString sitesKey = QStringLiteral("sitesArray");

} // namespace

QByteArray archiveSites(const QList<QVariantMap>& records)
{
    const auto inner =
        writePropertyList(QVariantList(records.begin(), records.end()), PropertyListFormat::Binary);
    QVariantMap outer;
    if (inner)
        outer.insert(sitesKey, *inner);
    const auto archive = writePropertyList(outer, PropertyListFormat::Binary);
    return archive ? *archive : QByteArray();
}

Result<QList<QVariantMap>> unarchiveSites(const QByteArray& archive)
{
    const auto outer = readPropertyList(archive);
    if (!outer)
        return outer.error();
    const QVariant data = outer->toMap().value(sitesKey);
    if (data.typeId() != QMetaType::QByteArray)
        return Error{userText(QT_TRANSLATE_NOOP("luma::Engines", "the archive contains no site list"))};
    const auto inner = readPropertyList(data.toByteArray());
    if (!inner)
        return inner.error();
    if (inner->typeId() != QMetaType::QVariantList)
        return Error{userText(QT_TRANSLATE_NOOP("luma::Engines", "the site list is not an array"))};
    QList<QVariantMap> records;
    for (const QVariant& record : inner->toList()) {
        if (record.typeId() != QMetaType::QVariantMap)
            return Error{userText(
                QT_TRANSLATE_NOOP("luma::Engines", "the site list contains an entry that is not a record"))};
        records += record.toMap();
    }
    return records;
}

} // namespace luma
