// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QVariantMap>

namespace luma {

/// A dictionary with string keys, shared by reference: the site list, the site's window and a pane's settings
/// sheet hold the same one and see each other's edits. Values keep their types; a reader that asks for another
/// type gets the fallback, not a conversion. Main thread only.
class ObservedDictionary final : public QObject
{
    Q_OBJECT

public:
    explicit ObservedDictionary(QVariantMap values = {}, QObject* parent = nullptr);

    [[nodiscard]] const QVariantMap& values() const { return m_values; }
    [[nodiscard]] QVariant value(const QString& key) const { return m_values.value(key); }

    /// The value if it is a string, else `fallback`.
    [[nodiscard]] QString string(const QString& key, const QString& fallback = {}) const;
    /// The value if it is an integer, else `fallback`.
    [[nodiscard]] qint64 integer(const QString& key, qint64 fallback = 0) const;
    /// The strings in the value if it is a list, in order; else none.
    [[nodiscard]] QStringList stringList(const QString& key) const;

    /// Stores `value` and emits changed(), unless the stored value has the same type and is equal.
    void setValue(const QString& key, const QVariant& value);

signals:
    void changed(const QString& key);

private:
    QVariantMap m_values;
};

} // namespace luma
