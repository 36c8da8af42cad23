// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QIconEngine>

namespace luma {

/// The colour of symbols in a state: the palette's text colour of that state, which is paler than other text where it is disabled.
QColor symbolInk(QIcon::Mode mode);

/// Draws an SVG in which "currentColor" is the palette's text colour at the time of drawing; in the disabled
/// and the selected mode it is the text colour of that state.
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
