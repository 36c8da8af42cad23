// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QIcon>

/// Icons of the desktop's theme, or our own (resources/icons) where the theme has none. Ours and
/// symbols of one tone follow the palette, so they show on light and dark backgrounds. Main thread only.
namespace luma::icons {

/// The icon of a folder.
QIcon folder();
/// The icon of the content type that belongs to the extension of `fileName`; looked up once per extension.
QIcon forFileName(const QString& fileName);
/// LUMA's own, for its windows.
QIcon application();
/// The icon of an action or a mark. `name` is a file in resources/icons without ".svg": "upload",
/// "show-password".
QIcon symbol(const QString& name);

} // namespace luma::icons
