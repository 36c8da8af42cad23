// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QLabel>

namespace luma {

/// A label of one line that leaves out the middle of a text that has no room; text() stays whole.
class ElidingLabel final : public QLabel
{
    Q_OBJECT

public:
    explicit ElidingLabel(QWidget* parent = nullptr);

    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    bool event(QEvent* event) override;
};

} // namespace luma
