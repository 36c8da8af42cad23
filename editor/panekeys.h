// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>

#include <vector>

class QWidget;

namespace luma {

/// The way between the panes of a page's window by keyboard: go() leads from one that is shown to the next one, to where the
/// focus was in it last, and Escape leads back to the page. Main thread.
class PaneKeys final : public QObject
{
    Q_OBJECT

public:
    struct Pane
    {
        QWidget* whole;
        QWidget* first; ///< has the focus first
    };

    /// The panes in their order, that of the page with the rendering as its first. Escape leads there from the widgets
    /// `others`, too. All of them outlive it.
    PaneKeys(std::vector<Pane> panes, QWidget& page, const std::vector<QWidget*>& others);

    /// Forward with 1, back with -1; to the page if the focus is in no pane.
    void go(int step) const;

private:
    std::vector<Pane> m_panes;
    QWidget& m_page;
};

} // namespace luma
