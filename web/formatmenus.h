// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QCoreApplication>

class QMenu;
class QWidget;

namespace luma {

class ViewController;

/// The menus for text style and justification, used in the web view's context menu and in the menu bar. The property
/// "commandWord" of an action is the word for it in the page-side scripts.
class FormatMenus final
{
    Q_DECLARE_TR_FUNCTIONS(luma::FormatMenus)

public:
    /// Styles and block formats; choosing a checked one removes it.
    static QMenu* textStyle(QWidget* parent, ViewController& controller);
    static QMenu* justification(QWidget* parent, ViewController& controller);
};

} // namespace luma
