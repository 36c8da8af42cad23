// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QPointer>

class QWidget;

namespace luma {

class MyWebView;

/// The size of the page in its view: the magnification, also by Control and the wheel and by pinching, and the width of the
/// device that the page is shown for. A device wider than the frame is shown smaller. Main thread.
class ViewFrame final : public QObject
{
    Q_OBJECT

public:
    /// `frame` is the widget around the view. Both outlive it.
    ViewFrame(MyWebView& view, QWidget& frame, QObject* parent);

    /// 1 shows the page in its own size.
    [[nodiscard]] double magnification() const { return m_magnification; }
    /// Within sensible limits.
    void setMagnification(double factor);

    /// In CSS pixels; 0: as wide as the frame.
    void setPageWidth(int width);

    /// Gives the engine the zoom factor, which it forgets when a page is loaded.
    void apply();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void watchView();
    [[nodiscard]] double factorOf(QEvent& event) const;

    MyWebView& m_view;
    QWidget& m_frame;
    QPointer<QWidget> m_receiver; // of the wheel
    double m_magnification = 1;
    int m_pageWidth = 0;
};

} // namespace luma
