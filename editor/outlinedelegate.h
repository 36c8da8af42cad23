// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStyledItemDelegate>

namespace luma {

/// Draws the outline's rows: tags, attributes, values and texts in colours that suit the palette, ids and classes bold. In a
/// row that is too long, the middle of long values is left out first. Its model is an OutlineModel.
class OutlineDelegate final : public QStyledItemDelegate
{
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
};

} // namespace luma
