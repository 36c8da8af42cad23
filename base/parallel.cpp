// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/parallel.h"

#include <system_error>
#include <thread>
#include <vector>

namespace luma {

void runInParallel(unsigned threads, const std::function<void()>& worker)
{
    std::vector<std::thread> others;
    for (unsigned i = 1; i < threads; ++i) {
        try {
            others.emplace_back(worker);
        } catch (const std::system_error&) {
            break;
        }
    }
    worker();
    for (std::thread& other : others)
        other.join();
}

} // namespace luma
