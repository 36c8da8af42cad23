// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QLayout>

#include <memory>
#include <vector>

namespace luma {

/// Lays its items out in a row, and in further rows where the width does not suffice. What expands gets the rest of its row.
/// Mirrored where one reads from right to left. Main thread.
class FlowLayout final : public QLayout
{
    Q_OBJECT

public:
    explicit FlowLayout(QWidget* parent = nullptr);
    ~FlowLayout() override;

    /// Takes ownership.
    void addItem(QLayoutItem* item) override;
    [[nodiscard]] int count() const override;
    [[nodiscard]] QLayoutItem* itemAt(int index) const override;
    /// Gives ownership.
    QLayoutItem* takeAt(int index) override;

    [[nodiscard]] Qt::Orientations expandingDirections() const override { return Qt::Horizontal; }
    [[nodiscard]] bool hasHeightForWidth() const override { return true; }
    [[nodiscard]] int heightForWidth(int width) const override;
    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSize() const override;
    void setGeometry(const QRect& area) override;

private:
    using Row = std::vector<QLayoutItem*>;
    [[nodiscard]] std::vector<Row> rowsFor(int width) const;
    void place(const Row& row, const QRect& area, int height) const;

    std::vector<std::unique_ptr<QLayoutItem>> m_items;
};

} // namespace luma
