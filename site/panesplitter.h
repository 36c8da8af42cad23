// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QSplitter>
#include <QSplitterHandle>

namespace luma {

/// The limits of the divider between the two panes, in pixels.
namespace panesplit {

inline constexpr int minimumUpper = 181;
inline constexpr int minimumLower = 204;

/// For panes one above the other: the lowest divider position for a proposed minimum.
constexpr int constrainMinCoordinate(int proposed)
{
    return proposed + minimumUpper;
}

/// The highest divider position for a proposed maximum.
constexpr int constrainMaxCoordinate(int proposed)
{
    return proposed - minimumLower;
}

struct Heights
{
    int upper = 0;
    int lower = 0;
    bool operator==(const Heights&) const = default;
};

/// The panes' heights in a splitter of `height`: both keep their shares, within the limits. Where there is too little
/// room for both, the upper one gets its minimum and the lower one the rest.
Heights resized(const Heights& before, int height, int divider);

} // namespace panesplit

/// The splitter between source and destination pane, which stand one above the other or side by side. One above the
/// other, it keeps the limits above; both ways, the panes keep their shares while the window is resized. Holds exactly
/// two widgets.
class PaneSplitter final : public QSplitter
{
    Q_OBJECT

public:
    explicit PaneSplitter(QWidget* parent = nullptr);

    /// Turns the panes and gives both half of the room.
    void arrange(Qt::Orientation orientation);

    /// `position`, a height for the upper pane, moved into the limits.
    [[nodiscard]] int constrained(int position) const;

protected:
    QSplitterHandle* createHandle() override;
    void resizeEvent(QResizeEvent* event) override;
};

} // namespace luma
