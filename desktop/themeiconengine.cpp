// SPDX-License-Identifier: GPL-3.0-or-later
#include "desktop/themeiconengine.h"

#include "desktop/symboliconengine.h"

#include <QImage>
#include <QPainter>
#include <QPixmapCache>

#include <algorithm>

namespace luma {

namespace {

// Neither colours nor shades, which a drawing in one ink would lose.
bool hasOneTone(const QImage& image)
{
    constexpr int difference = 60;
    int darkest = 255;
    int lightest = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QColor colour = image.pixelColor(x, y);
            if (colour.alpha() < 128) // edges, shadows
                continue;
            darkest = std::min({darkest, colour.red(), colour.green(), colour.blue()});
            lightest = std::max({lightest, colour.red(), colour.green(), colour.blue()});
        }
    }
    return lightest - darkest < difference;
}

} // namespace

void ThemeIconEngine::paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State state)
{
    const qreal ratio = painter->device() ? painter->device()->devicePixelRatioF() : 1.0;
    QPixmap drawn = pixmap(rect.size() * ratio, mode, state);
    drawn.setDevicePixelRatio(ratio);
    QRect place(QPoint(), drawn.deviceIndependentSize().toSize());
    place.moveCenter(rect.center());
    painter->drawPixmap(place, drawn);
}

QPixmap ThemeIconEngine::pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state)
{
    const QPixmap plain = m_icon.pixmap(size, 1.0, QIcon::Normal, state);
    const QColor ink = symbolInk(mode);
    const QString key = QStringLiteral("luma-theme-%1-%2-%3")
                            .arg(plain.cacheKey(), 0, 16)
                            .arg(ink.rgba(), 0, 16)
                            .arg(static_cast<int>(mode));
    QPixmap drawn;
    if (QPixmapCache::find(key, &drawn))
        return drawn;
    if (hasOneTone(plain.toImage())) {
        drawn = QPixmap(plain.size());
        drawn.fill(Qt::transparent);
        QPainter painter(&drawn);
        painter.drawPixmap(0, 0, plain);
        painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
        painter.fillRect(drawn.rect(), ink);
    } else {
        drawn = m_icon.pixmap(size, 1.0, mode, state);
    }
    QPixmapCache::insert(key, drawn);
    return drawn;
}

} // namespace luma
