// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QLabel>

namespace luma {

/// A label of one line that elides the middle of a text that does not fit; text() is always complete.
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
