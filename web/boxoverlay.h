// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QMarginsF>
#include <QRectF>
#include <QString>
#include <QWidget>

class QVariant;

namespace luma {

class MyWebView;

/// Marks an element of the rendering: its content, padding, border and margin in shades, and a label with its name and size.
/// It is painted over the view, so the page knows nothing of it, and lets the mouse through. Main thread.
class BoxOverlay final : public QWidget
{
    Q_OBJECT

public:
    enum class Part { All, Margin, Border, Padding, Content };

    /// The view's parent becomes the parent: a child of the view would come between it and its neighbours in the order of Tab.
    explicit BoxOverlay(MyWebView& view);

    /// Asks the page for the boxes of the element at this path (pathForScript), then shows them, or one of them alone, or
    /// nothing if the element is not shown.
    void mark(const QString& path, Part part = Part::All);
    void clear();

    /// The element's border box in the view's pixels; empty while nothing is marked.
    [[nodiscard]] const QRectF& borderBox() const { return m_border; }
    [[nodiscard]] const QString& label() const { return m_label; }
    [[nodiscard]] Part part() const { return m_part; }

protected:
    void paintEvent(QPaintEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void take(const QVariant& answer);
    void paintLabel(QPainter& painter) const;

    MyWebView& m_view;
    Part m_part = Part::All;
    int m_questions = 0; // tells an answer that comes too late
    QRectF m_border;
    QMarginsF m_margins;
    QMarginsF m_borders;
    QMarginsF m_paddings;
    QString m_label;
};

} // namespace luma
