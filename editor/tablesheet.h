// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDialog>

#include <memory>

namespace Ui {
class TableSheet;
}

namespace luma {

/// The sheet that asks for the size of a new table. It remembers the last answer. Main thread.
class TableSheet final : public QDialog
{
    Q_OBJECT

public:
    explicit TableSheet(QWidget* parent);
    ~TableSheet() override;

    void begin();

signals:
    /// The header is one of the rows.
    void confirmed(int rows, int columns, bool hasHeader);

private:
    std::unique_ptr<Ui::TableSheet> m_ui;
};

} // namespace luma
