// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "web/sizehandles.h"

#include <QObject>
#include <QPersistentModelIndex>

namespace luma {

class OutlineSelection;
class PageEdits;
class ViewController;

/// Gives the selected image, video or frame handles in the rendering, and writes a size that was dragged: into its style where
/// that has one, else as the attributes width and height. One undo step. Main thread.
class ElementResizing final : public QObject
{
    Q_OBJECT

public:
    /// All of them outlive it.
    ElementResizing(OutlineSelection& selection, PageEdits& edits, ViewController& rendering,
                    QObject* parent);

signals:
    /// The size can't be dragged, for this reason.
    void refused(const QString& reason);

private:
    void followSelected();
    void write(const SizeHandles::Length& width, const SizeHandles::Length& height);

    OutlineSelection& m_selection;
    PageEdits& m_edits;
    ViewController& m_rendering;
    SizeHandles* m_handles; // owned by the view's parent
    QPersistentModelIndex m_row;
};

} // namespace luma
