// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QObject>
#include <QSet>

#include <array>

class QAction;
class QMainWindow;
class QSplitter;

namespace luma {

/// The sizes of a page's window: its frame and the three parts of its split view, with limits for the sides. The outline on
/// the left can be hidden, and so can all parts of the other side: the attributes, the style rules and the style
/// sheets. Where the window is too narrow, the sides give way to the page: they shrink, then the one that was not opened last
/// is hidden until there is room again. Main thread.
class PageLayout final : public QObject
{
    Q_OBJECT

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

    void showStyleSheets() const;
    /// Widens the window, within its screen, until the middle part is as wide as the page; only once.
    void fitTo(int pageWidth);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void takeChoice(QAction* action, bool isShown);
    void bringBack();
    void arrange();
    void giveWay();
    void showParts();
    void setWidths();
    [[nodiscard]] QSet<QAction*> shownOf(int side) const;
    [[nodiscard]] int widestOf(int side) const;
    [[nodiscard]] int ofText(int width) const; // more of it where the text is large

    QMainWindow& m_window;
    QSplitter& m_splitView;
    QSplitter& m_sideView;
    Sides m_sides;
    Switches m_switches;
    QSet<QAction*> m_givenWay;        // the user wants them; unchecked for lack of room
    QSet<QAction*> m_displaced;       // of them, by what the user opened last
    std::array<int, 3> m_widths = {}; // that the sides have where there is room
    int m_openedLast = 0;             // the side
    bool m_isArranging = false;
    bool m_wasFitted = false;
};

} // namespace luma
