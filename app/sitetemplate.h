// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QVariantMap>

namespace luma {

/// The record that a new site starts from: a local source folder, and a server still to be named.
QVariantMap siteTemplate();

} // namespace luma
