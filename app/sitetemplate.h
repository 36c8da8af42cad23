// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/result.h"

#include <QVariantMap>

#include <filesystem>

namespace luma {

/// The record that a new site starts from: the user's home folder, here and on a server yet to be named.
QVariantMap siteTemplate();

/// A record of two local folders, for a site that is opened once and not kept in the list. Fails if a path is
/// not UTF-8, for a record can only hold text.
Result<QVariantMap> transientRecord(const std::filesystem::path& source,
                                    const std::filesystem::path& destination);

/// The record of the sample site in the user's documents, copied there if it is missing.
Result<QVariantMap> sampleSite();

} // namespace luma
