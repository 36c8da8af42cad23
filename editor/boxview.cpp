// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/boxview.h"

#include "editor/numbersteps.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace luma {

namespace {

constexpr std::array<const char*, 3> ringNames = {"margin", "border", "padding"};
constexpr std::array<const char*, 4> sideNames = {"top", "right", "bottom", "left"};
constexpr int content = 3; // the part inside the three rings
constexpr int gap = 2;

QString propertyOf(int ring, int side)
{
    return QLatin1String(ringNames[static_cast<std::size_t>(ring)]) + u'-' +
           QLatin1String(sideNames[static_cast<std::size_t>(side)]) +
           (ring == 1 ? QStringLiteral("-width") : QString());
}

/// The shades of the marks in the page, on the window's background.
QColor shadeOf(int ring, const QPalette& palette)
{
    const bool isDark = palette.color(QPalette::Base).lightness() < 128;
    static constexpr std::array<QColor, 4> light = {QColor(249, 208, 160), QColor(255, 229, 150),
                                                    QColor(197, 224, 184), QColor(168, 203, 235)};
    static constexpr std::array<QColor, 4> dark = {QColor(112, 74, 36), QColor(102, 88, 30),
                                                   QColor(58, 88, 48), QColor(40, 78, 112)};
    return (isDark ? dark : light)[static_cast<std::size_t>(ring)];
}

} // namespace

/// A number of the box: a field that is edited on demand, so that screen readers know its name and value.
class BoxNumber final : public QLineEdit
{
public:
    BoxNumber(const QString& property, BoxView* view) : QLineEdit(view), m_property(property), m_view(*view)
    {
        setObjectName(property);
        setAccessibleName(property);
        setReadOnly(true);
        setFrame(false);
        setAlignment(Qt::AlignCenter);
        setTextMargins(-gap, 0, -gap, 0);
        setContextMenuPolicy(Qt::NoContextMenu);
        auto* const steps = new NumberSteps(this);
        connect(steps, &NumberSteps::stepped, this, &BoxNumber::tell);
        connect(this, &QLineEdit::textEdited, this, &BoxNumber::tell);
        show(BoxView::Number());
    }

    void show(const BoxView::Number& number)
    {
        m_number = number;
        setToolTip((m_property + QStringLiteral(": ") + number.written + u'\n' + number.hint).trimmed());
        setAccessibleDescription(number.hint);
        setFocusPolicy(number.isEditable ? Qt::StrongFocus : Qt::ClickFocus);
        if (isReadOnly())
            showText();
    }
    [[nodiscard]] const BoxView::Number& number() const { return m_number; }

    /// Its place in the drawing; while it is edited, it takes more.
    void place(const QRect& cell)
    {
        m_cell = cell;
        QRect area = cell;
        if (!isReadOnly()) {
            const int wanted = fontMetrics().horizontalAdvance(text() + QStringLiteral("0000"));
            area.setWidth(std::clamp(wanted, cell.width(), std::max(cell.width(), m_view.width())));
            area.moveLeft(std::clamp(cell.center().x() - area.width() / 2, 0,
                                     std::max(0, m_view.width() - area.width())));
        }
        setGeometry(area);
        showText();
    }

protected:
    void keyPressEvent(QKeyEvent* event) override
    {
        const int key = event->key();
        const bool isEnter = key == Qt::Key_Return || key == Qt::Key_Enter;
        const bool isStep = key == Qt::Key_Up || key == Qt::Key_Down;
        if (!isReadOnly() && (isEnter || key == Qt::Key_Escape)) {
            end(isEnter);
            return;
        }
        const QString typed = event->text();
        const bool beginsNumber = !typed.isEmpty() && (typed.front().isDigit() || typed.front() == u'-' ||
                                                       typed.front() == u'.' || typed.front() == u'+');
        if (isReadOnly() && (isEnter || isStep || beginsNumber || key == Qt::Key_F2)) {
            begin();
            if (isStep)
                QCoreApplication::sendEvent(this, event);
            else if (beginsNumber)
                insert(typed);
            return;
        }
        QLineEdit::keyPressEvent(event);
    }

    bool event(QEvent* event) override
    {
        if (event->type() == QEvent::ShortcutOverride &&
            (isReadOnly() ? takes(*static_cast<QKeyEvent*>(event))
                          : static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape))
            event->accept();
        return QLineEdit::event(event);
    }

    void mouseDoubleClickEvent(QMouseEvent* event) override
    {
        if (isReadOnly())
            begin();
        else
            QLineEdit::mouseDoubleClickEvent(event);
    }

    void focusInEvent(QFocusEvent* event) override
    {
        QLineEdit::focusInEvent(event);
        update();
    }

    void focusOutEvent(QFocusEvent* event) override
    {
        QLineEdit::focusOutEvent(event);
        deselect();
        if (!isReadOnly() && event->reason() != Qt::PopupFocusReason)
            end(true);
    }

    void paintEvent(QPaintEvent* event) override
    {
        QLineEdit::paintEvent(event);
        if (!hasFocus() || !isReadOnly())
            return;
        QPainter painter(this);
        painter.setPen(palette().color(QPalette::Highlight));
        painter.drawRect(rect().adjusted(0, 0, -1, -1));
    }

private:
    static bool takes(const QKeyEvent& press)
    {
        return (press.key() == Qt::Key_Up || press.key() == Qt::Key_Down) &&
               press.modifiers() != Qt::NoModifier;
    }

    void begin()
    {
        if (!m_number.isEditable)
            return;
        setReadOnly(false);
        setText(m_number.written);
        selectAll();
        raise();
        place(m_cell);
    }

    void end(bool isTaken)
    {
        const QString typed = text().trimmed();
        setReadOnly(true);
        place(m_cell);
        if (isTaken && typed != m_number.written)
            emit m_view.chosen(m_property, typed);
        else
            emit m_view.givenUp();
    }

    void tell()
    {
        place(m_cell);
        emit m_view.tried(m_property, text().trimmed());
    }

    // Fewer decimals where there is no room.
    void showText()
    {
        QPalette colours = m_view.palette();
        colours.setColor(QPalette::Base,
                         isReadOnly() ? QColor(Qt::transparent) : colours.color(QPalette::Base));
        if (!m_number.isEditable)
            colours.setColor(QPalette::Text, colours.color(QPalette::PlaceholderText));
        setPalette(colours);
        if (!isReadOnly())
            return;
        bool isNumber = false;
        const double value = m_number.shown.toDouble(&isNumber);
        QString fitting = m_number.shown;
        for (double parts = 100; isNumber && parts >= 1; parts /= 10) {
            fitting = QString::number(std::round(value * parts) / parts);
            if (fontMetrics().horizontalAdvance(fitting) <= width())
                break;
        }
        setText(fitting);
    }

    QString m_property;
    BoxView& m_view;
    BoxView::Number m_number;
    QRect m_cell;
};

BoxView::BoxView(QWidget* parent) : QWidget(parent)
{
    setMouseTracking(true);
    for (int ring = 0; ring < content; ++ring) {
        for (int side = 0; side < 4; ++side)
            m_numbers[propertyOf(ring, side)] = new BoxNumber(propertyOf(ring, side), this);
    }
    for (const char* const name : {"width", "height"})
        m_numbers[QLatin1String(name)] = new BoxNumber(QLatin1String(name), this);
    for (const auto& [property, number] : m_numbers)
        number->installEventFilter(this);
}

void BoxView::setNumbers(const QHash<QString, Number>& numbers)
{
    for (const auto& [property, number] : m_numbers) {
        const auto found = numbers.constFind(property);
        number->show(found == numbers.constEnd() ? Number{{}, {}, {}, false} : *found);
    }
    layOut();
    update();
}

bool BoxView::isEditing() const
{
    return std::any_of(m_numbers.begin(), m_numbers.end(),
                       [](const auto& each) { return !each.second->isReadOnly(); });
}

QSize BoxView::sizeHint() const
{
    return {fontMetrics().horizontalAdvance(u'0') * 40, (fontMetrics().height() + gap) * 8};
}

QSize BoxView::minimumSizeHint() const
{
    return {fontMetrics().horizontalAdvance(u'0') * 12, sizeHint().height()};
}

/// The outer edge of a ring, or the content.
QRect BoxView::boxOf(int ring) const
{
    const int row = fontMetrics().height() + gap;
    const int digit = fontMetrics().horizontalAdvance(u'0');
    const int most = 6 * digit;
    // Three digits have room in each ring where the content keeps as much.
    const int least = std::clamp((width() - 3 * digit) / 6, 1, 3 * digit + 2 * gap);
    const int column = std::clamp(width() / 9, least, std::max(least, most));
    const int width = std::min(this->width(), 10 * column + most);
    const QRect all((this->width() - width) / 2, 0, width, sizeHint().height());
    return all.adjusted(ring * column, ring * row, -ring * column, -ring * row);
}

// Of the sign between width and height; 0 where they stand one below the other.
int BoxView::signWidth() const
{
    const int sign = fontMetrics().horizontalAdvance(QStringLiteral(" \u00d7 "));
    const int wanted = sign + fontMetrics().horizontalAdvance(QStringLiteral("00000000"));
    return boxOf(content).width() >= wanted ? sign : 0;
}

void BoxView::layOut()
{
    const int row = fontMetrics().height() + gap;
    for (int ring = 0; ring < content; ++ring) {
        const QRect outer = boxOf(ring);
        const QRect inner = boxOf(ring + 1);
        const int column = inner.left() - outer.left();
        const int middle = outer.center().y() - row / 2;
        const std::array<QRect, 4> cells = {
            QRect(inner.left(), outer.top(), inner.width(), row),
            QRect(inner.right() + 1, middle, column, row),
            QRect(inner.left(), inner.bottom() + 1, inner.width(), row),
            QRect(outer.left(), middle, column, row),
        };
        for (int side = 0; side < 4; ++side) {
            QRect cell = cells[static_cast<std::size_t>(side)];
            // Its name stands at the left of the upper side.
            if (side % 2 == 0)
                cell = QRect(outer.center().x() - 3 * column / 4, cell.top(), 3 * column / 2, row);
            m_numbers[propertyOf(ring, side)]->place(cell.adjusted(1, 1, -1, -1));
        }
    }
    const QRect inside = boxOf(content);
    const int sign = signWidth();
    const int width = sign > 0 ? (inside.width() - sign) / 2 : inside.width();
    const int top = sign > 0 ? inside.center().y() - row / 2 : inside.top();
    m_numbers[QStringLiteral("width")]->place(QRect(inside.left(), top, width, row));
    m_numbers[QStringLiteral("height")]->place(sign > 0 ? QRect(inside.left() + width + sign, top, width, row)
                                                        : QRect(inside.left(), top + row, width, row));
}

void BoxView::resizeEvent(QResizeEvent*)
{
    layOut();
}

void BoxView::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    for (int ring = 0; ring <= content; ++ring) {
        const QRect box = boxOf(ring);
        painter.setPen(palette().color(ring == m_hovered ? QPalette::Highlight : QPalette::Mid));
        painter.setBrush(shadeOf(ring, palette()));
        painter.drawRect(box.adjusted(0, 0, -1, -1));
        if (ring == content && signWidth() > 0 && m_numbers[QStringLiteral("width")]->number().isEditable) {
            painter.setPen(palette().color(QPalette::Text));
            painter.drawText(box, Qt::AlignCenter, QStringLiteral("\u00d7"));
        }
        if (ring == content)
            break;
        const QString name = QLatin1String(ringNames[static_cast<std::size_t>(ring)]);
        const QRect number = m_numbers[propertyOf(ring, 0)]->geometry();
        const QRect room(box.left() + 2 * gap, box.top(), number.left() - box.left() - 2 * gap,
                         fontMetrics().height() + gap);
        painter.setPen(palette().color(QPalette::Text));
        if (fontMetrics().horizontalAdvance(name) <= room.width())
            painter.drawText(room, Qt::AlignVCenter | Qt::AlignLeft | Qt::AlignAbsolute, name);
    }
}

void BoxView::hover(const QPoint& place)
{
    int ring = content;
    while (ring >= 0 && !boxOf(ring).contains(place))
        --ring;
    if (ring == m_hovered)
        return;
    m_hovered = ring;
    update();
    if (ring < 0)
        emit left();
    else
        emit hovered(std::array{BoxOverlay::Part::Margin, BoxOverlay::Part::Border, BoxOverlay::Part::Padding,
                                BoxOverlay::Part::Content}[static_cast<std::size_t>(ring)]);
}

void BoxView::mouseMoveEvent(QMouseEvent* event)
{
    hover(event->position().toPoint());
}

void BoxView::leaveEvent(QEvent*)
{
    hover({-1, -1});
}

bool BoxView::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::Enter || event->type() == QEvent::MouseMove)
        hover(mapFromGlobal(QCursor::pos()));
    return QWidget::eventFilter(watched, event);
}

} // namespace luma
