// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStyledItemDelegate>

namespace luma {

/// Draws one item of a browser column: the tint of its label over the whole row, its icon, its name, elided in
/// the middle if it is too long, and an arrow for a folder that opens. Edits the name in place.
class FileSystemBrowserCell final : public QStyledItemDelegate
{
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    /// The place of the icon in a cell: 16 by 16, 4 from the left, vertically centred, on whole points.
    static QRect imageRectForBounds(const QRect& bounds);
    /// The place of the name and its editor: 22 points from the left, 2 below the top.
    static QRect titleRectForBounds(const QRect& bounds);
    /// How many characters the rename editor selects: those before the extension; for a folder all.
    static int editedLength(const QString& name, bool isFolder);

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                          const QModelIndex& index) const override;
    void setEditorData(QWidget* editor, const QModelIndex& index) const override;
    void updateEditorGeometry(QWidget* editor, const QStyleOptionViewItem& option,
                              const QModelIndex& index) const override;
    bool helpEvent(QHelpEvent* event, QAbstractItemView* view, const QStyleOptionViewItem& option,
                   const QModelIndex& index) override;

protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override;
};

} // namespace luma
