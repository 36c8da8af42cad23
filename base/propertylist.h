// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/result.h"

#include <QByteArray>
#include <QVariant>

namespace luma {

/// Property lists as the site archive and the drag records store them. The types map one to one: dictionary
/// and QVariantMap, array and QVariantList (a QStringList is written as an array of strings), string and
/// QString, integer and qlonglong, boolean and bool, real and double, date and QDateTime (UTC), data and
/// QByteArray. Any thread.
enum class PropertyListFormat { Binary, Xml };

/// Fails for a value, at any depth, of a type that a property list cannot hold.
Result<QByteArray> writePropertyList(const QVariant& value, PropertyListFormat format);

/// Reads either format. Damaged, oversized (64 MB) or deeply nested bytes are an error, never a crash.
Result<QVariant> readPropertyList(const QByteArray& bytes);

} // namespace luma
