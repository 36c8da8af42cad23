// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QLabel>
#include <QList>
#include <QPersistentModelIndex>

namespace luma {

/// The path to an element of the outline, as text: "html › body › p#intro". A click on a step chooses that element, a right
/// click opens a menu of it and its siblings. By keyboard, Left and Right go along the path, Enter chooses and Down opens the
/// menu. Where there is no room for all of it, the beginning is left out. Main thread.
class ElementPath final : public QLabel
{
    Q_OBJECT

public:
    explicit ElementPath(QWidget* parent = nullptr);

    /// Shows the path to a row of an OutlineModel; an invalid index shows none.
    void setPath(const QModelIndex& row);

signals:
    void chosen(const QModelIndex& row);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    [[nodiscard]] QRect rectOf(qsizetype step) const;
    [[nodiscard]] qsizetype stepAt(const QPoint& point) const;
    void choose(qsizetype step);
    void openMenu(qsizetype step);
    void setHovered(qsizetype step);

    QList<QPersistentModelIndex> m_rows; // of the steps
    QStringList m_names;
    qsizetype m_current = -1; // for the keyboard
    qsizetype m_hovered = -1;
};

} // namespace luma
