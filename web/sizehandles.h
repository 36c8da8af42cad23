// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPoint>
#include <QPointF>
#include <QRectF>
#include <QSizeF>
#include <QString>
#include <QStringList>
#include <QWidget>

#include <optional>
#include <vector>

class QVariant;

namespace luma {

class MyWebView;

/// The handles at an element of the rendering with which its size is dragged. A corner keeps the ratio, or with Shift does
/// not, for frames the other way round; a side changes one length. Escape gives the drag up. The handles lie over the view,
/// so the page knows nothing of them, and are as large as they look to the mouse. Main thread.
class SizeHandles final : public QWidget
{
    Q_OBJECT

public:
    /// What decides about a length: an attribute of the element (or nothing), its style, or a style sheet, which may leave it
    /// to the ratio.
    enum class Decider { Attribute, Style, Sheet, Ratio };
    struct Length
    {
        int pixels = 0; ///< as style sheets count it (width, height)
        Decider decider = Decider::Attribute;
        bool isChanged = false;
    };

    /// The view outlives it; its parent becomes the parent.
    explicit SizeHandles(MyWebView& view);

    enum class Ratio { Kept, Free };
    /// Shows the handles at the element at this path (pathForScript) if it is shown, and follows it.
    void follow(const QString& path, Ratio ratio);
    void clear();

    /// The element's box in the view's pixels, as it would be after the drag; empty without handles.
    [[nodiscard]] QRectF box() const;
    /// The middle of the handle at this side (-1, 0 or 1 to the right and down).
    [[nodiscard]] QPointF handleAt(const QPoint& side) const;

signals:
    void resized(const SizeHandles::Length& width, const SizeHandles::Length& height);
    /// The size can't be dragged, for this reason.
    void refused(const QString& reason);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    struct Drag
    {
        QPoint side;
        QPointF from;
        QPointF to;
        bool isShift = false;
        bool isReleased = false;
        bool isKnown = false; // what follows, which the page has to tell
        QSizeF size = {};     // as style sheets count it
        QSizeF scale = {};    // pixels of the view for one of these
        double ratio = 1;
        Decider width = Decider::Attribute;
        Decider height = Decider::Attribute;
    };

    void place(const QVariant& answer);
    void takeSize(const QVariant& answer);
    void moveWithElement();
    void finish();
    void giveUp();
    void updateMask();
    [[nodiscard]] bool keepsRatio() const;
    [[nodiscard]] QSizeF draggedSize() const;
    [[nodiscard]] std::vector<QPoint> sides() const;
    [[nodiscard]] std::optional<QPoint> sideAt(const QPointF& point) const;

    MyWebView& m_view;
    int m_questions = 0; // tells an answer that comes too late
    bool m_isFollowing = false;
    QRectF m_box;
    Ratio m_ratio = Ratio::Kept;
    std::optional<Drag> m_drag;
};

} // namespace luma
