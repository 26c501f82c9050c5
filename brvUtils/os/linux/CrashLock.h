#pragma once

#include "brvUtils/os/linux/Deadline.h"
#include "brvUtils/os/linux/Futex.h"

namespace brvUtils::os {

/// A lock for handlers of crashes. It knows its owner, so that a crash of the owner is told from one of another thread, and a
/// forked child of a process that had it taken finds it free. Takes nothing from the heap.
class CrashLock
{
public:
    /// Waits while another thread of this process has it. False when this thread has it already, or that other one for longer
    /// than the patience.
    bool take(Milliseconds patience = infinite) noexcept
    {
        const Deadline deadline(monotonicNanoseconds(), patience);
        const std::uint64_t process = static_cast<std::uint64_t>(getpid()) << 32;
        const std::uint64_t own = process | static_cast<std::uint32_t>(gettid());
        std::uint64_t owner = 0;
        while (!owner_.compare_exchange_strong(owner, own)) {
            if (owner == own || deadline.passed()) {
                return false;
            }
            if (owner >> 32 == process >> 32) {
                futexWait(owner_, static_cast<std::uint32_t>(owner), deadline.moment());
                owner = 0;
            }
        }
        return true;
    }

    void give() noexcept
    {
        owner_.store(0);
        futexWakeAll(owner_);
    }

private:
    StateWord owner_{0}; ///< Process and thread, the thread where the kernel waits; 0: nobody.
};

} // namespace brvUtils::os
