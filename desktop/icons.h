// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QIcon>

/// Icons of the desktop's theme, and ours (resources/icons) where the theme has none. Ours follow the
/// palette, so they read on light and dark ground. Main thread only.
namespace luma::icons {

/// The icon of a folder.
QIcon folder();
/// The icon of the content type that the extension of `fileName` maps to; asked of the desktop once an
/// extension.
QIcon forFileName(const QString& fileName);
/// The icon of an action or mark of ours: the name of a file in resources/icons without its ".svg", such as
/// "upload" or "show-password".
QIcon symbol(const QString& name);

} // namespace luma::icons
