// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/result.h"

#include <QVariantMap>

#include <filesystem>

namespace luma {

/// A site record of two local folders, for a site that is opened once and not kept in the list. Fails for a
/// folder whose name is not UTF-8: a record holds texts.
Result<QVariantMap> transientRecord(const std::filesystem::path& source,
                                    const std::filesystem::path& destination);

} // namespace luma
