// SPDX-License-Identifier: GPL-3.0-or-later
#include "desktop/symboliconengine.h"

#include <QGuiApplication>
#include <QPainter>
#include <QPalette>
#include <QPixmapCache>
#include <QSvgRenderer>

namespace luma {

QColor symbolInk(QIcon::Mode mode)
{
    const QPalette palette = QGuiApplication::palette();
    QColor ink = palette.color(QPalette::Disabled, QPalette::WindowText);
    switch (mode) {
    case QIcon::Disabled:
        ink.setAlphaF(0.6F);
        return ink;
    case QIcon::Selected:
        return palette.color(QPalette::HighlightedText);
    default:
        return palette.color(QPalette::WindowText);
    }
}

void SymbolIconEngine::paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State state)
{
    const qreal ratio = painter->device() ? painter->device()->devicePixelRatioF() : 1.0;
    QPixmap drawn = pixmap(rect.size() * ratio, mode, state);
    drawn.setDevicePixelRatio(ratio);
    painter->drawPixmap(rect.topLeft(), drawn);
}

QPixmap SymbolIconEngine::pixmap(const QSize& size, QIcon::Mode mode, QIcon::State /*state*/)
{
    const QColor ink = symbolInk(mode);
    const QString key = QStringLiteral("luma-symbol-%1-%2x%3-%4")
                            .arg(QString::number(qHash(m_svg), 16))
                            .arg(size.width())
                            .arg(size.height())
                            .arg(ink.rgba(), 0, 16);
    QPixmap drawn;
    if (QPixmapCache::find(key, &drawn))
        return drawn;
    QByteArray colored = m_svg;
    colored.replace("currentColor", ink.name().toLatin1());
    drawn = QPixmap(size);
    drawn.fill(Qt::transparent);
    QSvgRenderer renderer(colored);
    renderer.setAspectRatioMode(Qt::KeepAspectRatio);
    QPainter painter(&drawn);
    painter.setOpacity(ink.alphaF());
    renderer.render(&painter);
    painter.end();
    QPixmapCache::insert(key, drawn);
    return drawn;
}

} // namespace luma
