// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/result.h"

#include <QByteArray>
#include <QVariant>

namespace luma {

/// The property lists of the site archive (binary) and of drag records (XML). Types map one to one:
/// dictionary and QVariantMap, array and QVariantList (a QStringList is written as an array of strings),
/// string and QString, integer and qlonglong, boolean and bool, real and double, date and QDateTime (UTC),
/// data and QByteArray. Any thread.
enum class PropertyListFormat { Binary, Xml };

/// Fails if a value at any depth has a type that a property list cannot hold.
Result<QByteArray> writePropertyList(const QVariant& value, PropertyListFormat format);

/// Reads either format. Fails for bytes that are damaged, more than 64 MB or nested too deeply.
Result<QVariant> readPropertyList(const QByteArray& bytes);

} // namespace luma
