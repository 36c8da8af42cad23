// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "browser/panehost.h"

#include <QDialog>

#include <functional>
#include <memory>

namespace Ui {
class ProgressPanel;
}

namespace luma {

class JobLine;

/// The window's panel for long jobs: a status line, a progress bar, a log, Stop, Go On after a stop, and OK. While a job that
/// opened the panel runs, the user can stop it but not close the panel. Quitting closes the panel; it opens again if another
/// window refuses to close. Other jobs show themselves in the window's line, and the panel where that asks for it or the
/// job fails. Main thread only.
class ProgressPanel final : public ProgressReporter
{
    Q_OBJECT

public:
    /// The panel is a sheet of `window`, which owns it. `line` outlives it.
    ProgressPanel(JobLine& line, QWidget* window);
    ~ProgressPanel() override;

    void begin(const QString& status, Place place) override;
    void setStatus(const QString& status) override;
    void append(const QString& text) override;
    void finish(const JobEnd& end) override;
    [[nodiscard]] bool isRunning() const override { return m_isRunning; }
    [[nodiscard]] QString lineText(int number) const override;

    [[nodiscard]] QDialog& panel() const { return *m_panel; }

    /// Opens the panel, unless the window already shows a sheet.
    void show();
    /// Asks for a file and writes the log to it.
    void saveAsText();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    JobLine& m_line;
    QWidget* m_window;
    QDialog* m_panel;
    std::unique_ptr<Ui::ProgressPanel> m_ui;
    Place m_place = Place::Panel; // of the last job
    std::function<void()> m_goOn;
    bool m_isRunning = false;
    bool m_isQuitting = false;

    void connectControls();
    void keepPlaceOfBar();
    void updateControls();
    void stop();
    void goOn();
    void letQuit();
    void writeLog(const QString& path);
    [[nodiscard]] bool windowShowsASheet() const;
};

} // namespace luma
