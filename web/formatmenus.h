// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class QMenu;
class QWidget;

namespace luma {

class ViewController;

/// The menus of text styles and justification, in the web view's context menu and the menu bar alike. Their
/// titles are the command words of the page-side scripts, so they are not translated.
class FormatMenus final
{
public:
    /// Styles and block formats; choosing a checked one takes it away.
    static QMenu* textStyle(QWidget* parent, ViewController& controller);
    static QMenu* justification(QWidget* parent, ViewController& controller);
};

} // namespace luma
