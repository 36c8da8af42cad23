// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "browser/logmodel.h"

#include <QTableView>
#include <QTimer>

namespace luma {

/// Shows a log in a fixed-pitch font. All lines have the same height, so that hundreds of thousands scroll
/// smoothly; they can be selected and copied. Appended lines appear in batches, and the view follows the end
/// unless the user has scrolled up. Main thread only.
class LogView final : public QTableView
{
    Q_OBJECT

public:
    explicit LogView(QWidget* parent = nullptr);

    [[nodiscard]] const LogModel& log() const { return m_log; }

    void clear();
    void append(const QString& text);
    /// Shows all lines now and scrolls to the end.
    void showEnd();
    void copyAll() const;
    void copySelected() const;

signals:
    /// The user clicked a line or pressed Return on it.
    void lineActivated(int number);

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    LogModel m_log;
    QTimer m_publishTimer;
    int m_measuredLine = -1;
    int m_measuredSize = -1;
    int m_textWidth = 0;

    void publish();
    void updateColumnWidth();
    [[nodiscard]] bool isAtEnd() const;
};

} // namespace luma
