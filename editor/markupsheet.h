// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDialog>
#include <QPersistentModelIndex>

#include <memory>

namespace Ui {
class MarkupSheet;
}

namespace luma {

class PageEdits;

/// The sheet in which the markup of one node of the outline is edited. A markup that is refused stays in it, with the
/// reason. Main thread.
class MarkupSheet final : public QDialog
{
    Q_OBJECT

public:
    /// The edits outlive it.
    MarkupSheet(PageEdits& edits, QWidget* parent);
    ~MarkupSheet() override;

    /// The row is one of an OutlineModel; does nothing for an invalid one.
    void begin(const QModelIndex& row);

private:
    void commit();

    std::unique_ptr<Ui::MarkupSheet> m_ui;
    PageEdits& m_edits;
    QPersistentModelIndex m_row;
};

} // namespace luma
