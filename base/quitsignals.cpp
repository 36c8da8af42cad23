// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/quitsignals.h"

#include <QCoreApplication>
#include <QSocketNotifier>
#include <QTimer>

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <csignal>

namespace luma {

namespace {

constexpr std::array quitting = {SIGTERM, SIGINT, SIGHUP};

// The write end of the pipe, for the signal handler, which may only call write(2).
int signalled = -1;

void handleSignals(void (*handler)(int), int flags)
{
    struct sigaction action = {};
    action.sa_handler = handler;
    action.sa_flags = flags;
    for (const int number : quitting)
        ::sigaction(number, &action, nullptr);
}

void noteSignal(int /*number*/)
{
    const char byte = 1;
    [[maybe_unused]] const ssize_t written = ::write(signalled, &byte, 1);
}

} // namespace

QuitSignals::QuitSignals(QObject* parent) : QObject(parent)
{
    std::array<int, 2> ends = {-1, -1};
    if (::pipe2(ends.data(), O_CLOEXEC | O_NONBLOCK) != 0)
        return;
    m_readEnd.reset(ends[0]);
    m_writeEnd.reset(ends[1]);
    signalled = m_writeEnd.get();
    auto* const notifier = new QSocketNotifier(m_readEnd.get(), QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, &QuitSignals::quit);
    arm();
}

// SA_RESETHAND: while the program quits, a second signal does what it always does.
void QuitSignals::arm()
{
    handleSignals(noteSignal, static_cast<int>(SA_RESETHAND) | SA_RESTART);
}

void QuitSignals::quit()
{
    std::array<char, 16> noted = {};
    while (::read(m_readEnd.get(), noted.data(), noted.size()) > 0) {
    }
    QCoreApplication::quit();
    // Comes only if a window has refused and the event loop goes on.
    QTimer::singleShot(0, this, &QuitSignals::arm);
}

QuitSignals::~QuitSignals()
{
    handleSignals(SIG_DFL, 0);
    signalled = -1;
}

} // namespace luma
