// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QFrame>
#include <QTimer>

#include <memory>

namespace Ui {
class JobLine;
}

namespace luma {

struct JobEnd;

/// The line at the foot of a site's window that tells of a job: while it runs longer than a moment, what it does and how to
/// stop it; then what it has done, with Undo, or Go On after a stop. Good news goes away by itself, but not while the user is
/// at the line. Screen readers are told each text. Main thread only.
class JobLine final : public QFrame
{
    Q_OBJECT

public:
    explicit JobLine(QWidget* parent = nullptr);
    ~JobLine() override;

    void showRunning(const QString& status);
    void setText(const QString& text);
    /// The job is being stopped.
    void showStopping();
    void showEnd(const JobEnd& end);
    /// Something else is what Undo takes back now.
    void forgetUndo();
    /// Hides the line; nothing is shown until the next job.
    void closeLine();

signals:
    /// The user wants to see the job's panel.
    void showRequested();
    void undoRequested();
    void stopRequested();
    void goOnRequested();

private:
    std::unique_ptr<Ui::JobLine> m_ui;
    QTimer m_showTimer; // a short job is not worth a line that says it runs
    QTimer m_goneTimer;

    void goAway();
};

} // namespace luma
