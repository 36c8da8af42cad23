// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QIcon>
#include <QIconEngine>

namespace luma {

/// Draws an icon of the desktop's theme. One that has a single tone is drawn in the palette's text colour, as SymbolIconEngine does:
/// a dark desktop's theme may have dark icons alone, and none for the disabled and the selected mode.
class ThemeIconEngine final : public QIconEngine
{
public:
    explicit ThemeIconEngine(QIcon icon) : m_icon(std::move(icon)) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State state) override;
    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override;
    [[nodiscard]] QIconEngine* clone() const override { return new ThemeIconEngine(m_icon); }
    bool isNull() override { return m_icon.isNull(); }

private:
    QIcon m_icon;
};

} // namespace luma
