// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "web/boxoverlay.h"

#include <QObject>
#include <QPersistentModelIndex>

#include <optional>

namespace luma {

class OutlineModel;
class OutlineView;
class ViewController;

/// Marks the element of the row under the mouse in the rendering, and the row of the element under the mouse there while
/// Control is held. The page and its file know nothing of it. Main thread.
class ElementHover final : public QObject
{
    Q_OBJECT

public:
    /// All of them outlive it.
    ElementHover(OutlineView& view, OutlineModel& model, ViewController& rendering, QObject* parent);

    /// Marks the row's element in the rendering, or a part of its box; an invalid row takes the mark away.
    void mark(const QModelIndex& row, BoxOverlay::Part part = BoxOverlay::Part::All);

private:
    void takeRow(const QModelIndex& row);
    void takeElement(const std::optional<QList<int>>& path);

    OutlineView& m_view;
    OutlineModel& m_model;
    ViewController& m_rendering;
    BoxOverlay* m_overlay; // owned by the view
    QPersistentModelIndex m_row;
};

} // namespace luma
