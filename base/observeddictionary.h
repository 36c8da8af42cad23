// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QVariantMap>

namespace luma {

/// A string-keyed dictionary shared by reference: the site list, the site's window and a pane's settings
/// sheet hold the same one and hear of each other's edits. Values keep the type they came with; a reader that
/// needs another type gets the fallback, never a conversion. Main thread only.
class ObservedDictionary final : public QObject
{
    Q_OBJECT

public:
    explicit ObservedDictionary(QVariantMap values = {}, QObject* parent = nullptr);

    [[nodiscard]] const QVariantMap& values() const { return m_values; }
    [[nodiscard]] QVariant value(const QString& key) const { return m_values.value(key); }

    /// The value when it is a string, else `fallback`.
    [[nodiscard]] QString string(const QString& key, const QString& fallback = {}) const;
    /// The value when it is an integer number, else `fallback`.
    [[nodiscard]] qint64 integer(const QString& key, qint64 fallback = 0) const;
    /// The value when it is a list, its strings in order; else nothing.
    [[nodiscard]] QStringList stringList(const QString& key) const;

    /// Stores `value` and tells, unless the same value of the same type stands there.
    void setValue(const QString& key, const QVariant& value);

signals:
    void changed(const QString& key);

private:
    QVariantMap m_values;
};

} // namespace luma
