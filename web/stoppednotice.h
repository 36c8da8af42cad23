// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>

namespace luma {

/// Covers a rendering whose process ended again and again, and offers to try once more. The page itself and
/// its edits are safe in the document meanwhile. Main thread.
class StoppedNotice final : public QWidget
{
    Q_OBJECT

public:
    explicit StoppedNotice(QWidget* covered);

signals:
    void reloadRequested();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
};

} // namespace luma
