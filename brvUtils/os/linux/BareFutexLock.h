#pragma once

#include "brvUtils/os/linux/Futex.h"

namespace brvUtils::os {

/// The plainest lock between processes that can sleep: free, taken, taken with somebody asleep. It knows no owner, counts
/// nothing, and a process that is killed inside leaves it taken for ever. For benchmarks to compare with.
class BareFutexLock
{
public:
    void lock()
    {
        std::uint64_t seen = 0;
        if (word_.compare_exchange_strong(seen, 1, std::memory_order_acquire)) {
            return;
        }
        while (word_.exchange(2, std::memory_order_acquire) != 0) {
            futexWait(word_, 2, nullptr);
        }
    }

    void unlock()
    {
        if (word_.exchange(0, std::memory_order_release) == 2) {
            syscall(SYS_futex, futexOf(word_), FUTEX_WAKE, 1, nullptr, nullptr, 0);
        }
    }

private:
    StateWord word_{0};
};

} // namespace brvUtils::os
