// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>

class QAction;
class QMainWindow;
class QSplitter;

namespace luma {

/// The sizes of a page's window: its frame and the three parts of its split view, with limits for the sides. The outline on
/// the left can be hidden, and so can all parts of the other side: the attributes, the style rules and the style
/// sheets.
class PageLayout final
{
public:
    /// The checkable actions that show or hide the outline, the attributes, the style rules and the style sheets.
    struct Sides
    {
        QAction* outline;
        QAction* attributes;
        QAction* rules;
        QAction* styles;
    };
    struct Switches
    {
        QAction* allNodes;
        QAction* spelling;
    };
    /// Sets the parts' limits and initial sizes. Whether the switches are checked is kept with the sizes. Widgets and
    /// actions must outlive this object.
    PageLayout(QMainWindow& window, QSplitter& splitView, QSplitter& sideView, const Sides& sides,
               const Switches& switches);

    /// Widens the sides where a large font needs more than their limits; once the texts are set.
    void makeRoomForTexts();
    [[nodiscard]] QByteArray state() const;
    /// Restores what state() returned; anything else is ignored.
    void restore(const QByteArray& state);

    void showStyleSheets();
    /// Widens the window, within its screen, until the middle part is as wide as the page; only once.
    void fitTo(int pageWidth);

private:
    void showSide();
    [[nodiscard]] int widestOf(int side) const;

    QMainWindow& m_window;
    QSplitter& m_splitView;
    QSplitter& m_sideView;
    Sides m_sides;
    Switches m_switches;
    bool m_wasFitted = false;
};

} // namespace luma
