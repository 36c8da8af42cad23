// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/result.h"

#include <QVariantMap>

#include <filesystem>

namespace luma {

/// The record that a new site starts from: a local source folder and a placeholder server.
QVariantMap siteTemplate();

/// A record of two local folders, for a site that is opened once and not kept in the list. Fails if a path is
/// not UTF-8, for a record can only hold text.
Result<QVariantMap> transientRecord(const std::filesystem::path& source,
                                    const std::filesystem::path& destination);

} // namespace luma
