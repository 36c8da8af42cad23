// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>

class QKeyEvent;
class QLineEdit;

namespace luma {

/// In a field with a value of a style sheet, Up and Down change the number at the cursor by 1, with Shift by 10, with Alt by
/// 0.1. Its unit stays. Belongs to the field. Main thread.
class NumberSteps final : public QObject
{
    Q_OBJECT

public:
    explicit NumberSteps(QLineEdit* field);

signals:
    void stepped(const QString& text);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    bool step(const QKeyEvent& press);

    QLineEdit* m_field;
};

} // namespace luma
