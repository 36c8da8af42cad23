// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/elementhover.h"

#include "editor/outlinemodel.h"
#include "editor/outlineview.h"
#include "page/subtreechange.h"
#include "web/viewcontroller.h"

namespace luma {

ElementHover::ElementHover(OutlineView& view, OutlineModel& model, ViewController& rendering, QObject* parent)
    : QObject(parent),
      m_view(view),
      m_model(model),
      m_rendering(rendering),
      m_overlay(new BoxOverlay(*rendering.webView()))
{
    connect(&view, &OutlineView::hovered, this, &ElementHover::takeRow);
    EditorPage& page = rendering.webView()->editorPage();
    connect(&page.bridge(), &PageBridge::hover, this, &ElementHover::takeElement, Qt::QueuedConnection);
    connect(&page, &EditorPage::ready, m_overlay, &BoxOverlay::clear);
    // The element may stand elsewhere now.
    connect(&rendering, &ViewController::selectionRestored, this, [this] { mark(m_row); });
    connect(&page, &QWebEnginePage::scrollPositionChanged, m_overlay, &BoxOverlay::clear);
}

void ElementHover::takeRow(const QModelIndex& row)
{
    m_model.setMarked({});
    mark(row);
}

void ElementHover::takeElement(const std::optional<QList<int>>& path)
{
    const QModelIndex row =
        path && m_rendering.isFollowing() ? m_model.indexAtPath({path->begin(), path->end()}) : QModelIndex();
    m_model.setMarked(row);
    if (row.isValid())
        m_view.scrollTo(row);
    mark(row);
}

void ElementHover::mark(const QModelIndex& row, BoxOverlay::Part part)
{
    m_row = row;
    const html::Element* const element = OutlineModel::elementAt(row);
    const auto path = element && m_rendering.isFollowing() ? pathForScript(*element) : std::nullopt;
    if (path)
        m_overlay->mark(*path, part);
    else
        m_overlay->clear();
}

} // namespace luma
