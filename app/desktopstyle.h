// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QProxyStyle>

namespace luma {

/// The desktop's style with icons, check boxes and dialogs that are as large as the text asks for, with hints, boxes and marks of
/// tool bars that can be seen where the desktop is dark, and with the accent colour in the view that has the focus alone. Main thread only.
class DesktopStyle final : public QProxyStyle
{
    Q_OBJECT

public:
    /// Makes it the application's style. To be called before the first window.
    static void use();

    using QProxyStyle::polish;
    void polish(QPalette& palette) override;
    void polish(QWidget* widget) override;
    int pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const override;
    QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& contents,
                           const QWidget* widget) const override;
    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override;
    QIcon standardIcon(StandardPixmap icon, const QStyleOption* option, const QWidget* widget) const override;
};

} // namespace luma
