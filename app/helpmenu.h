// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class QMainWindow;
class QMenu;

/// What the Help menu of every window has. Main thread only.
namespace luma {

/// Adds a Help menu to the end of the window's menu bar.
void addHelpMenu(QMainWindow& window);

/// Puts the manual and its table of keys before the menu's own entries, About LUMA and About Qt after them. About
/// LUMA opens as a sheet on `window`.
void fillHelpMenu(QMenu& menu, QMainWindow& window);

} // namespace luma
