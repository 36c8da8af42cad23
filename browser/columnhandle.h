// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>

namespace luma {

/// The line at the right of a column: dragged it changes the column's width, double-clicked it asks for the
/// width that fits.
class ColumnHandle final : public QWidget
{
    Q_OBJECT

public:
    explicit ColumnHandle(QWidget* parent = nullptr);

signals:
    /// The mouse moved by `delta` pixels since the last time.
    void dragged(int delta);
    void released();
    void fitRequested();

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    int m_lastX = 0;
};

} // namespace luma
