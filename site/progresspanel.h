// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "browser/panehost.h"

#include <QDialog>

#include <memory>

namespace Ui {
class ProgressPanel;
}

namespace luma {

/// The window's panel for long jobs: a status line, a progress bar, a log, Stop and OK. While a job runs, the
/// user can stop it but not close the panel. Quitting closes the panel; it opens again if another window
/// refuses to close. Main thread only.
class ProgressPanel final : public ProgressReporter
{
    Q_OBJECT

public:
    /// The panel is a sheet of `window`, which owns it.
    explicit ProgressPanel(QWidget* window);
    ~ProgressPanel() override;

    void begin(const QString& status) override;
    void append(const QString& text) override;
    void finish() override;
    [[nodiscard]] bool isRunning() const override { return m_isRunning; }
    [[nodiscard]] QString lineText(int number) const override;

    [[nodiscard]] QDialog& panel() const { return *m_panel; }

    /// Asks for a file and writes the log to it.
    void saveAsText();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QWidget* m_window;
    QDialog* m_panel;
    std::unique_ptr<Ui::ProgressPanel> m_ui;
    bool m_isRunning = false;
    bool m_isQuitting = false;

    void connectControls();
    void keepPlaceOfBar();
    void updateControls();
    void stop();
    void letQuit();
    void show();
    void writeLog(const QString& path);
    [[nodiscard]] bool windowShowsASheet() const;
};

} // namespace luma
