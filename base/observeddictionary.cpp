// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/observeddictionary.h"

namespace luma {

ObservedDictionary::ObservedDictionary(QVariantMap values, QObject* parent)
    : QObject(parent), m_values(std::move(values))
{}

QString ObservedDictionary::string(const QString& key, const QString& fallback) const
{
    const QVariant found = m_values.value(key);
    return found.typeId() == QMetaType::QString ? found.toString() : fallback;
}

qint64 ObservedDictionary::integer(const QString& key, qint64 fallback) const
{
    const QVariant found = m_values.value(key);
    switch (found.typeId()) {
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
        return found.toLongLong();
    default:
        return fallback;
    }
}

QStringList ObservedDictionary::stringList(const QString& key) const
{
    QStringList strings;
    const QVariant found = m_values.value(key);
    if (found.typeId() == QMetaType::QStringList)
        return found.toStringList();
    if (found.typeId() == QMetaType::QVariantList) {
        for (const QVariant& entry : found.toList()) {
            if (entry.typeId() == QMetaType::QString)
                strings += entry.toString();
        }
    }
    return strings;
}

void ObservedDictionary::setValue(const QString& key, const QVariant& value)
{
    const auto found = m_values.constFind(key);
    if (found != m_values.constEnd() && found->typeId() == value.typeId() && *found == value)
        return;
    m_values.insert(key, value);
    emit changed(key);
}

} // namespace luma
