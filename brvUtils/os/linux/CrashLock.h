#pragma once

#include "brvUtils/os/linux/Futex.h"

namespace brvUtils::os {

/// A lock for handlers of crashes. It knows its owner, so that a crash of the owner is told from one of another thread, and a
/// forked child of a process that had it taken finds it free. Takes nothing from the heap.
class CrashLock
{
public:
    /// Waits for as long as another thread of this process has it. False when this thread has it already.
    bool take() noexcept
    {
        const std::uint64_t process = static_cast<std::uint64_t>(getpid()) << 32;
        const std::uint64_t own = process | static_cast<std::uint32_t>(gettid());
        std::uint64_t owner = 0;
        while (!owner_.compare_exchange_strong(owner, own)) {
            if (owner == own) {
                return false;
            }
            if (owner >> 32 == process >> 32) {
                futexWait(owner_, static_cast<std::uint32_t>(owner), nullptr);
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
