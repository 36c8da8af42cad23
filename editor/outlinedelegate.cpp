// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/outlinedelegate.h"

#include "desktop/focuslook.h"
#include "editor/outlinemodel.h"
#include "web/codecolours.h"

#include <QApplication>
#include <QPainter>
#include <QStyle>

#include <algorithm>
#include <optional>

namespace luma {

namespace {

// A part that is longer never fits, but would be laid out each time the row is painted.
constexpr qsizetype longestPart = 400;
constexpr int charactersOfCutValue = 16;

QColor colourOf(OutlinePart::Kind kind, const QPalette& palette)
{
    using enum OutlinePart::Kind;
    switch (kind) {
    case Mark:
        return codecolours::suited(codecolours::comment, palette);
    case Tag:
        return codecolours::suited(codecolours::name, palette);
    case Name:
        return codecolours::suited(codecolours::number, palette);
    case Value:
    case KeyValue:
        return codecolours::suited(codecolours::string, palette);
    case Code:
        return codecolours::suited(codecolours::word, palette);
    case Text:
        break;
    }
    return palette.color(QPalette::Text);
}

class RowPainter final
{
public:
    RowPainter(QPainter& painter, const QFont& font) : m_painter(painter), m_plain(font), m_bold(font)
    {
        m_bold.setBold(true);
    }

    void draw(std::vector<OutlinePart> parts, QRect area, const QPalette& palette,
              const std::optional<QColor>& colour, Qt::LayoutDirection direction)
    {
        for (OutlinePart& part : parts)
            part.text.truncate(longestPart);
        cutValues(parts, widthOf(parts) - area.width());
        // Markup reads from left to right, but begins at its branch.
        if (direction == Qt::RightToLeft)
            area.setLeft(std::max(area.left(), area.left() + area.width() - widthOf(parts)));
        for (const OutlinePart& part : parts) {
            const QFontMetrics metrics(fontOf(part));
            const QString text = metrics.elidedText(part.text, Qt::ElideRight, area.width());
            m_painter.setFont(fontOf(part));
            m_painter.setPen(colour ? *colour : colourOf(part.kind, palette));
            m_painter.drawText(
                area, Qt::AlignLeft | Qt::AlignAbsolute | Qt::AlignVCenter | Qt::TextSingleLine, text);
            area.setLeft(area.left() + metrics.horizontalAdvance(text));
            if (text != part.text)
                return;
        }
    }

private:
    [[nodiscard]] const QFont& fontOf(const OutlinePart& part) const
    {
        return part.kind == OutlinePart::Kind::KeyValue ? m_bold : m_plain;
    }
    [[nodiscard]] int widthOf(const std::vector<OutlinePart>& parts) const
    {
        int width = 0;
        for (const OutlinePart& part : parts)
            width += QFontMetrics(fontOf(part)).horizontalAdvance(part.text);
        return width;
    }
    /// Makes values shorter, but not too short to read, until the row is this much narrower.
    void cutValues(std::vector<OutlinePart>& parts, int excess) const
    {
        const QFontMetrics metrics(m_plain);
        const int least = charactersOfCutValue * metrics.averageCharWidth();
        for (OutlinePart& part : parts) {
            const int width = metrics.horizontalAdvance(part.text);
            if (part.kind != OutlinePart::Kind::Value || excess <= 0 || width <= least)
                continue;
            part.text = metrics.elidedText(part.text, Qt::ElideMiddle, std::max(least, width - excess));
            excess -= width - metrics.horizontalAdvance(part.text);
        }
    }

    QPainter& m_painter;
    QFont m_plain;
    QFont m_bold;
};

} // namespace

void OutlineDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                            const QModelIndex& index) const
{
    const html::Node* const node = OutlineModel::nodeAt(index);
    if (!node)
        return;
    QStyleOptionViewItem row = option;
    initStyleOption(&row, index);
    showFocus(row);
    const QStyle& style = row.widget ? *row.widget->style() : *QApplication::style();
    const int margin = style.pixelMetric(QStyle::PM_FocusFrameHMargin, &row, row.widget) + 1;
    const QRect area =
        style.subElementRect(QStyle::SE_ItemViewItemText, &row, row.widget).adjusted(margin, 0, -margin, 0);
    row.text.clear();
    style.drawControl(QStyle::CE_ItemViewItem, &row, painter, row.widget);
    std::optional<QColor> colour;
    if (row.state.testFlag(QStyle::State_Selected))
        colour = row.palette.color(QPalette::HighlightedText);
    else if (const QVariant own = index.data(Qt::ForegroundRole); own.isValid())
        colour = own.value<QColor>();
    const auto& outline = static_cast<const OutlineModel&>(*index.model());
    painter->save();
    painter->setClipRect(area, Qt::IntersectClip);
    painter->setLayoutDirection(Qt::LeftToRight);
    RowPainter(*painter, row.font).draw(outline.partsOf(*node), area, row.palette, colour, row.direction);
    painter->restore();
}

} // namespace luma
