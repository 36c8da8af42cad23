// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>

class QMainWindow;
class QSplitter;

namespace luma {

/// The sizes of a page's window: its frame and the three parts of its split view, whose sides have limits.
class PageLayout final
{
public:
    /// Gives the parts their limits and first sizes. Both widgets outlive it.
    PageLayout(QMainWindow& window, QSplitter& splitView);

    [[nodiscard]] QByteArray state() const;
    /// Takes what `state` gave; anything else changes nothing.
    void restore(const QByteArray& state);

    /// Widens the window, on its screen, so that the middle part has the width of the page; once.
    void fitTo(int pageWidth);

private:
    QMainWindow& m_window;
    QSplitter& m_splitView;
    bool m_wasFitted = false;
};

} // namespace luma
