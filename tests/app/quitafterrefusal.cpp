// SPDX-License-Identifier: GPL-3.0-or-later
// Gets a signal to quit, which a window refuses, and then another one; tst_quit runs it.
//     quit_after_refusal PREFERENCES
// The exit code is 0 when the second signal quit the program as the first would have.

#include "app/program.h"
#include "base/quitsignals.h"

#include <QApplication>
#include <QCloseEvent>
#include <QTimer>
#include <QWidget>

#include <csignal>

namespace {

void signalSoon()
{
    // Two turns later, when the refused quit is over.
    QTimer::singleShot(0, qApp, [] { QTimer::singleShot(0, qApp, [] { (void)std::raise(SIGTERM); }); });
}

// As one with unsaved edits whose user cancels the question.
class RefusingWindow final : public QWidget
{
public:
    [[nodiscard]] bool hasRefused() const { return m_hasRefused; }

protected:
    void closeEvent(QCloseEvent* event) override
    {
        event->setAccepted(m_hasRefused);
        if (!m_hasRefused)
            signalSoon();
        m_hasRefused = true;
    }

private:
    bool m_hasRefused = false;
};

} // namespace

int main(int argc, char** argv)
{
    const QApplication application(argc, argv);
    const luma::QuitSignals signalsQuit;
    luma::Program program(QString::fromLocal8Bit(argv[argc - 1]),
                          [](const std::vector<std::string>&) { return std::string(); });
    if (!program.launch({}))
        return 3;
    RefusingWindow window;
    window.show();
    signalSoon();
    const int code = QApplication::exec();
    return window.hasRefused() ? code : 4;
}
