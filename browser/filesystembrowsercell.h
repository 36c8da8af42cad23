// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStyledItemDelegate>

namespace luma {

/// Draws one item of a browser column: the tint of its label over the whole row, its icon, its name with the
/// middle left out when it is too long, and an arrow for what opens as a folder. Edits the name in place.
class FileSystemBrowserCell final : public QStyledItemDelegate
{
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    /// Where the icon goes within a cell: 16 by 16, 4 from the left, centred, rounded to whole points.
    static QRect imageRectForBounds(const QRect& bounds);
    /// Where the name goes, the editor too: from 22 points on, and from 2 below the top.
    static QRect titleRectForBounds(const QRect& bounds);
    /// How many characters of a name the rename editor selects: all before the extension, of a folder all.
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
