// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>

#include <memory>

class QTableView;

namespace Ui {
class TickList;
}

namespace luma {

class TickListModel;

/// A table with a check box in each row, a box above it that shows and changes the state of all rows, the
/// number of ticked rows, and a placeholder in the table's place while there are none. The space bar gives
/// all selected rows the state that the current one does not have. Main thread only.
class TickList final : public QWidget
{
    Q_OBJECT

public:
    /// The object names of the parts, in Latin-1; each panel has its own.
    struct Names
    {
        const char* table;
        const char* all;
        const char* count;
        const char* placeholder;
    };

    explicit TickList(QWidget* parent = nullptr);
    ~TickList() override;

    /// Called once. `model` outlives the list; the table takes over the list's accessible name.
    void setUp(TickListModel& model, const Names& names);
    [[nodiscard]] QTableView& table() const;
    void setPlaceholder(const QString& text);
    /// Shown behind the number of ticked rows, even when there are no rows.
    void setNote(const QString& note);
    /// Whether the user can tick rows; on at first.
    void setTickingEnabled(bool on);

public slots:
    /// Ticks or unticks every shown row, as the box above says.
    void AllOffOrOn();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    std::unique_ptr<Ui::TickList> m_ui;
    TickListModel* m_model = nullptr;
    QString m_note;

    void updateForTicks();
    void toggleSelectedRows();
};

} // namespace luma
