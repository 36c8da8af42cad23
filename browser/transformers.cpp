// SPDX-License-Identifier: GPL-3.0-or-later
#include "browser/transformers.h"

#include <QCoreApplication>

namespace luma {

namespace {

QString zeroFor(QLatin1StringView text, const QVariant& value)
{
    return value.typeId() == QMetaType::QString && value.toString() == text ? QStringLiteral("0")
                                                                            : QStringLiteral("1");
}

} // namespace

Transformers::Function Transformers::named(QStringView className)
{
    if (className == QLatin1String("ConnectTransformer"))
        return ConnectTransformer;
    if (className == QLatin1String("FilePathTransformer"))
        return FilePathTransformer;
    if (className == QLatin1String("SMBPathTransformer"))
        return SMBPathTransformer;
    return nullptr;
}

QString Transformers::ConnectTransformer(const QVariant& value)
{
    return value.isValid() ? QCoreApplication::translate("luma::Transformers", "Disconnect")
                           : QCoreApplication::translate("luma::Transformers", "Connect");
}

QString Transformers::FilePathTransformer(const QVariant& value)
{
    return zeroFor(QLatin1StringView("file://"), value);
}

QString Transformers::SMBPathTransformer(const QVariant& value)
{
    return zeroFor(QLatin1StringView("smb://"), value);
}

} // namespace luma
