// SPDX-License-Identifier: GPL-3.0-or-later
// Quits while a job waits for ever, as one does that reads from a server that no longer answers; tst_quit runs
// it.
//     quit_with_hung_job PREFERENCES
// The exit code is 0 when quitting ended the program, 3 when nothing was left to wait for.

#include "app/program.h"
#include "base/workitem.h"

#include <QApplication>
#include <QTimer>

#include <semaphore>

int main(int argc, char** argv)
{
    const QApplication application(argc, argv);
    luma::Program program(QString::fromLocal8Bit(argv[argc - 1]),
                          [](const std::vector<std::string>&) { return std::string(); });
    static std::binary_semaphore begun(0);
    luma::start(std::make_shared<luma::WorkItem>(), [](const luma::WorkItem&) {
        static std::binary_semaphore never(0);
        begun.release();
        never.acquire();
    });
    begun.acquire();
    if (!program.launch({}))
        return 3;
    QTimer::singleShot(0, &application, &QCoreApplication::quit);
    (void)QApplication::exec();
    return 3;
}
