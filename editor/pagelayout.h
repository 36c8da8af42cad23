// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>

class QMainWindow;
class QSplitter;

namespace luma {

/// The sizes of a page's window: its frame and the three parts of its split view, with limits for the sides.
class PageLayout final
{
public:
    /// Sets the parts' limits and initial sizes. Both widgets must outlive this object.
    PageLayout(QMainWindow& window, QSplitter& splitView);

    /// Widens the outline and the style sheets where a large font needs more than their limits; once the texts are set.
    void makeRoomForTexts();
    [[nodiscard]] QByteArray state() const;
    /// Restores what state() returned; anything else is ignored.
    void restore(const QByteArray& state);

    /// Widens the window, within its screen, until the middle part is as wide as the page; only once.
    void fitTo(int pageWidth);

private:
    QMainWindow& m_window;
    QSplitter& m_splitView;
    bool m_wasFitted = false;
};

} // namespace luma
