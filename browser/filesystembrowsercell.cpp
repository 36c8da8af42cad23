// SPDX-License-Identifier: GPL-3.0-or-later
#include "browser/filesystembrowsercell.h"

#include "browser/filesystemmodel.h"
#include "desktop/focuslook.h"
#include "desktop/icons.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QHelpEvent>
#include <QLineEdit>
#include <QPainter>
#include <QToolTip>

#include <algorithm>
#include <cmath>

namespace luma {

namespace {

constexpr int smallestIcon = 16;
constexpr int arrowWidth = 16;
constexpr int markWidth = 14;
constexpr int smallestHeight = 20;
constexpr float tintOpacity = 0.2F;
constexpr qreal hiddenOpacity = 0.6;

QColor tintOf(const QModelIndex& index)
{
    switch (static_cast<LabelColor>(index.data(FileSystemModel::LabelColorRole).toInt())) {
    case LabelColor::Red:
        return {255, 59, 48};
    case LabelColor::Orange:
        return {255, 149, 0};
    case LabelColor::Yellow:
        return {255, 204, 0};
    case LabelColor::Green:
        return {52, 199, 89};
    case LabelColor::Blue:
        return {0, 122, 255};
    case LabelColor::Purple:
        return {175, 82, 222};
    case LabelColor::Gray:
        return {142, 142, 147};
    case LabelColor::None:
        break;
    }
    return {};
}

bool isLeaf(const QModelIndex& index)
{
    return index.data(FileSystemModel::LeafRole).toBool();
}

QStyle& styleOf(const QStyleOptionViewItem& option)
{
    return option.widget ? *option.widget->style() : *QApplication::style();
}

SideMark markOf(const QModelIndex& index)
{
    return static_cast<SideMark>(index.data(FileSystemModel::MarkRole).toInt());
}

QString signOf(SideMark mark)
{
    switch (mark) {
    case SideMark::OnlyHere:
        return QStringLiteral("+");
    case SideMark::NewerHere:
        return QStringLiteral("\u25B2"); // a filled triangle
    case SideMark::NewerThere:
        return QStringLiteral("\u25BD"); // an empty one, upside down
    case SideMark::Different:
        return QStringLiteral("\u2260"); // not equal
    case SideMark::None:
        break;
    }
    return {};
}

// As for reading from left to right.
QRect textRect(const QStyleOptionViewItem& option, const QModelIndex& index)
{
    const QRect title = FileSystemBrowserCell::titleRectForBounds(option.rect);
    const int mark = markOf(index) == SideMark::None ? 0 : markWidth;
    return title.adjusted(0, -2, (isLeaf(index) ? -4 : -arrowWidth) - mark, 0);
}

// Its place in the row, whichever way one reads.
QRect placed(const QStyleOptionViewItem& option, const QRect& rect)
{
    return QStyle::visualRect(option.direction, option.rect, rect);
}

void paintArrow(QPainter* painter, const QStyleOptionViewItem& option)
{
    QStyleOptionViewItem arrow = option;
    arrow.rect =
        QRect(option.rect.right() - arrowWidth + 1, option.rect.top(), arrowWidth - 4, option.rect.height());
    arrow.rect =
        placed(option, QStyle::alignedRect(Qt::LeftToRight, Qt::AlignCenter, QSize(10, 10), arrow.rect));
    styleOf(option).drawPrimitive(option.direction == Qt::RightToLeft ? QStyle::PE_IndicatorArrowLeft
                                                                      : QStyle::PE_IndicatorArrowRight,
                                  &arrow, painter, option.widget);
}

} // namespace

// The icon grows with the text.
QRect FileSystemBrowserCell::imageRectForBounds(const QRect& bounds)
{
    const int side = std::max(smallestIcon, bounds.height() - 8);
    const int down = static_cast<int>(std::floor((bounds.height() - side) / 2.0 + 0.5));
    return {bounds.x() + 4, bounds.y() + down, side, side};
}

QRect FileSystemBrowserCell::titleRectForBounds(const QRect& bounds)
{
    const int left = imageRectForBounds(bounds).right() + 3 - bounds.x();
    return {bounds.x() + left, bounds.y() + 2, bounds.width() - left, bounds.height() - 2};
}

int FileSystemBrowserCell::editedLength(const QString& name, bool isFolder)
{
    const auto dot = name.lastIndexOf(QLatin1Char('.'));
    return static_cast<int>(isFolder || dot <= 0 ? name.size() : dot);
}

void FileSystemBrowserCell::initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const
{
    QStyledItemDelegate::initStyleOption(option, index);
    option->textElideMode = Qt::ElideMiddle;
    showFocus(*option);
    option->icon = isLeaf(index) ? icons::forFileName(option->text) : icons::folder();
}

void FileSystemBrowserCell::paint(QPainter* painter, const QStyleOptionViewItem& given,
                                  const QModelIndex& index) const
{
    QStyleOptionViewItem option = given;
    initStyleOption(&option, index);
    const bool selected = option.state.testFlag(QStyle::State_Selected);
    styleOf(option).drawPrimitive(QStyle::PE_PanelItemViewItem, &option, painter, option.widget);
    painter->save();
    if (QColor tint = tintOf(index); tint.isValid()) {
        tint.setAlphaF(tintOpacity);
        painter->fillRect(option.rect, tint);
    }
    if (option.text.startsWith(u'.'))
        painter->setOpacity(hiddenOpacity);
    option.icon.paint(painter, placed(option, imageRectForBounds(option.rect)), Qt::AlignCenter,
                      selected && option.state.testFlag(QStyle::State_Active) ? QIcon::Selected
                                                                              : QIcon::Normal);
    const auto group = option.state.testFlag(QStyle::State_Active) ? QPalette::Active : QPalette::Inactive;
    painter->setPen(option.palette.color(group, selected ? QPalette::HighlightedText : QPalette::Text));
    painter->setFont(option.font);
    const QRect rect = textRect(option, index);
    painter->drawText(placed(option, rect), Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                      option.fontMetrics.elidedText(option.text, Qt::ElideMiddle, rect.width()));
    if (const QString sign = signOf(markOf(index)); !sign.isEmpty()) {
        if (!selected)
            painter->setPen(option.palette.color(group, QPalette::PlaceholderText));
        painter->drawText(placed(option, QRect(rect.right() + 1, rect.top(), markWidth, rect.height())),
                          Qt::AlignCenter, sign);
    }
    painter->restore();
    if (!isLeaf(index))
        paintArrow(painter, option);
}

QSize FileSystemBrowserCell::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const
{
    const QString name = index.data().toString();
    return {titleRectForBounds(QRect()).x() + option.fontMetrics.horizontalAdvance(name) + arrowWidth + 4,
            std::max(smallestHeight, option.fontMetrics.height() + 4)};
}

QWidget* FileSystemBrowserCell::createEditor(QWidget* parent, const QStyleOptionViewItem& /*option*/,
                                             const QModelIndex& /*index*/) const
{
    auto* editor = new QLineEdit(parent);
    editor->setObjectName(QStringLiteral("renameEditor"));
    editor->setAccessibleName(tr("New name"));
    editor->setFrame(false);
    editor->setAutoFillBackground(true);
    return editor;
}

void FileSystemBrowserCell::setEditorData(QWidget* editor, const QModelIndex& index) const
{
    auto* line = qobject_cast<QLineEdit*>(editor);
    // A refresh must not overwrite what the user has typed so far.
    if (!line || line->isModified())
        return;
    const QString name = index.data(Qt::EditRole).toString();
    line->setText(name);
    // Queued, for the view selects everything once the editor is open.
    const int length = editedLength(name, !isLeaf(index));
    QMetaObject::invokeMethod(
        line, [line, length] { line->setSelection(0, length); }, Qt::QueuedConnection);
}

void FileSystemBrowserCell::updateEditorGeometry(QWidget* editor, const QStyleOptionViewItem& option,
                                                 const QModelIndex& /*index*/) const
{
    editor->setGeometry(placed(option, titleRectForBounds(option.rect).adjusted(-2, -2, 0, 0)));
}

bool FileSystemBrowserCell::helpEvent(QHelpEvent* event, QAbstractItemView* view,
                                      const QStyleOptionViewItem& option, const QModelIndex& index)
{
    if (event->type() != QEvent::ToolTip || !index.isValid())
        return QStyledItemDelegate::helpEvent(event, view, option, index);
    const QString name = index.data().toString();
    const bool cut = option.fontMetrics.horizontalAdvance(name) > textRect(option, index).width();
    const QString mark = textOf(markOf(index));
    // A file name is plain text, not markup.
    const QString text = cut && !mark.isEmpty() ? tr("%1: %2").arg(name, mark) : cut ? name : mark;
    QToolTip::showText(event->globalPos(), text.toHtmlEscaped(), view);
    return true;
}

} // namespace luma
