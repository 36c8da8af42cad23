// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/runningchildren.h"

#include <sys/eventfd.h>
#include <unistd.h>

#include <cstdint>

namespace luma {

// Never closed, because other threads may poll it until the process ends.
int terminationEvent()
{
    static const int event = ::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    return event;
}

void terminateRunningChildren()
{
    const std::uint64_t one = 1;
    [[maybe_unused]] const ssize_t written = ::write(terminationEvent(), &one, sizeof one);
}

void acceptNewChildren()
{
    std::uint64_t count = 0;
    [[maybe_unused]] const ssize_t taken = ::read(terminationEvent(), &count, sizeof count);
}

} // namespace luma
