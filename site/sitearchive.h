// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/result.h"

#include <QByteArray>
#include <QList>
#include <QVariantMap>

namespace luma {

/// The stored form of the site list: a binary property list of the records, held as data under the key
/// `sitesArray` of an outer binary property list. Strings stay strings and integers integers. Any thread.

/// If a record contains a value that can't be stored, the outer list has no `sitesArray`.
QByteArray archiveSites(const QList<QVariantMap>& records);

/// Fails for any bytes that are not such an archive.
Result<QList<QVariantMap>> unarchiveSites(const QByteArray& archive);

} // namespace luma
