// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QProxyStyle>

namespace luma {

/// The desktop's style with icons and check boxes that are as high as the text where that is large. Main thread only.
class TextSizedStyle final : public QProxyStyle
{
    Q_OBJECT

public:
    /// Makes it the application's style if text is higher than the desktop's small icons; else the style stays as it is. To be
    /// called before the first window.
    static void useForLargeText();

    int pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const override;
};

} // namespace luma
