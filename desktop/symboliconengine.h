// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QIconEngine>

namespace luma {

/// Draws an SVG whose "currentColor" is the palette's text colour at the moment of drawing; grey when
/// disabled, the highlighted text's colour when selected.
class SymbolIconEngine final : public QIconEngine
{
public:
    explicit SymbolIconEngine(QByteArray svg) : m_svg(std::move(svg)) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State state) override;
    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override;
    [[nodiscard]] QIconEngine* clone() const override { return new SymbolIconEngine(m_svg); }
    bool isNull() override { return m_svg.isEmpty(); }

private:
    QByteArray m_svg;
};

} // namespace luma
