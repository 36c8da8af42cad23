// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QSplitter>
#include <QSplitterHandle>

namespace luma {

/// The limits of the divider between the two panes, in pixels.
namespace panesplit {

inline constexpr int minimumUpper = 181;
inline constexpr int minimumLower = 204;

/// The lowest divider position for a proposed minimum.
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

/// The panes' heights in a splitter of `height`: the lower pane keeps `lower` and the upper one takes the
/// rest. Where that would be less than the upper pane's minimum, it gets the minimum and the lower one the
/// rest.
Heights resized(int lower, int height, int divider);

} // namespace panesplit

/// The splitter between source and destination pane: it keeps the limits above while the divider is dragged,
/// and the lower pane's height while the window is resized. Holds exactly two widgets, one above the other.
class PaneSplitter final : public QSplitter
{
    Q_OBJECT

public:
    explicit PaneSplitter(QWidget* parent = nullptr);

    /// `position`, a height for the upper pane, moved into the limits.
    [[nodiscard]] int constrained(int position) const;

protected:
    QSplitterHandle* createHandle() override;
    void resizeEvent(QResizeEvent* event) override;
};

} // namespace luma
