// SPDX-License-Identifier: GPL-3.0-or-later
#include "web/viewframe.h"

#include "web/mywebview.h"

#include <QNativeGestureEvent>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>

namespace luma {

namespace {

constexpr double smallestZoom = 0.25; // the engine's limits
constexpr double largestZoom = 5;
constexpr double wheelStep = 1.1;
constexpr double anglePerStep = 120; // QWheelEvent::angleDelta() of one notch

} // namespace

ViewFrame::ViewFrame(MyWebView& view, QWidget& frame, QObject* parent)
    : QObject(parent), m_view(view), m_frame(frame)
{
    frame.installEventFilter(this);
    connect(&view.editorPage(), &EditorPage::ready, this, &ViewFrame::watchView);
}

// The engine has another widget after its process has been replaced.
void ViewFrame::watchView()
{
    if (m_receiver == m_view.focusProxy())
        return;
    m_receiver = m_view.focusProxy();
    if (m_receiver)
        m_receiver->installEventFilter(this);
}

void ViewFrame::setMagnification(double factor)
{
    m_magnification = std::clamp(factor, smallestZoom, largestZoom);
    apply();
}

void ViewFrame::setPageWidth(int width)
{
    m_pageWidth = width;
    apply();
}

void ViewFrame::apply()
{
    double zoom = m_magnification;
    int viewWidth = QWIDGETSIZE_MAX;
    if (m_pageWidth > 0) {
        zoom = std::max(smallestZoom, std::min(zoom, static_cast<double>(m_frame.width()) / m_pageWidth));
        viewWidth = static_cast<int>(std::ceil(m_pageWidth * zoom));
    }
    m_view.setMaximumWidth(viewWidth);
    m_view.setZoomFactor(zoom);
}

bool ViewFrame::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == &m_frame) {
        if (event->type() == QEvent::Resize && m_pageWidth > 0)
            apply();
        return false;
    }
    const double factor = factorOf(*event);
    if (factor <= 0)
        return false;
    setMagnification(m_magnification * factor);
    return true;
}

// 0 for an event that does not zoom.
double ViewFrame::factorOf(QEvent& event) const
{
    if (event.type() == QEvent::Wheel) {
        const auto& wheel = static_cast<const QWheelEvent&>(event);
        const bool zooms = wheel.modifiers().testFlag(Qt::ControlModifier);
        return zooms ? std::pow(wheelStep, wheel.angleDelta().y() / anglePerStep) : 0;
    }
    if (event.type() == QEvent::NativeGesture) {
        const auto& gesture = static_cast<const QNativeGestureEvent&>(event);
        return gesture.gestureType() == Qt::ZoomNativeGesture ? 1 + gesture.value() : 0;
    }
    return 0;
}

} // namespace luma
