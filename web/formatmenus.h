// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class QMenu;
class QWidget;

namespace luma {

class ViewController;

/// The menus for text style and justification, used in the web view's context menu and in the menu bar. Their
/// titles are the command words of the page-side scripts and therefore not translated.
class FormatMenus final
{
public:
    /// Styles and block formats; choosing a checked one removes it.
    static QMenu* textStyle(QWidget* parent, ViewController& controller);
    static QMenu* justification(QWidget* parent, ViewController& controller);
};

} // namespace luma
