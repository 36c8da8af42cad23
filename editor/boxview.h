// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "web/boxoverlay.h"

#include <QHash>
#include <QString>
#include <QWidget>

#include <array>
#include <map>

namespace luma {

class BoxNumber;

/// A drawing of an element's box: margin, border, padding and content with their numbers. Each number is a stop of Tab that a
/// double click, Enter, a digit or Up and Down edit; Enter or leaving it takes the value, Escape gives it up. Left is left in
/// every language, as in the page. Main thread.
class BoxView final : public QWidget
{
    Q_OBJECT

public:
    struct Number
    {
        QString shown;   ///< without "px"
        QString written; ///< what an edit begins with
        QString hint = {};
        bool isEditable = true;
    };

    explicit BoxView(QWidget* parent = nullptr);

    /// By property: "margin-left", "border-left-width", "padding-left", "width", "height". Those left out are empty.
    void setNumbers(const QHash<QString, Number>& numbers);
    [[nodiscard]] bool isEditing() const;

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

signals:
    /// The number has this text for now; is to have it; is to stay as it was.
    void tried(const QString& property, const QString& text);
    void chosen(const QString& property, const QString& text);
    void givenUp();
    /// The mouse is over a part of the box, or no longer.
    void hovered(luma::BoxOverlay::Part part);
    void left();

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void layOut();
    [[nodiscard]] QRect boxOf(int ring) const;
    [[nodiscard]] int signWidth() const;
    void hover(const QPoint& place);

    std::map<QString, BoxNumber*> m_numbers;
    int m_hovered = -1; // the ring; the content is the last
};

} // namespace luma
