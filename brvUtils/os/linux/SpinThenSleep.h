#pragma once

#include "brvUtils/os/linux/Deadline.h"
#include "brvUtils/os/linux/Handle.h"
#include "brvUtils/os/linux/PauseProcessor.h"

#include <algorithm>
#include <sched.h>

namespace brvUtils::os {

/// Decides per handle whether a wait looks again and again for a short while before it sleeps. Going to sleep and being
/// woken costs tens of microseconds; who is answered sooner than that gains by looking, who waits for a frame loses.
/// Each look in vain doubles the number of waits that go to sleep at once before the next one looks, so that those who
/// wait long hardly ever look; a look that is answered starts anew.
class SpinThenSleep
{
public:
    explicit SpinThenSleep(Handle& handle)
        : failures_(handle.spinFailures)
        , pause_(handle.spinPause)
        , start_(monotonicNanoseconds())
    {
    }

    std::int64_t start() const { return start_; }

    /// Calls `attempt` until it answers true or looking no longer pays. True when an attempt did.
    template <typename Attempt>
    bool spin(Attempt attempt)
    {
        if (const std::uint16_t pause = pause_.load(std::memory_order_relaxed); pause > 0) {
            pause_.store(static_cast<std::uint16_t>(pause - 1), std::memory_order_relaxed);
            return false;
        }
        const bool answered = look(attempt);
        const int failures = answered ? 0 : std::min(failures_.load(std::memory_order_relaxed) + 1, mostFailures);
        failures_.store(static_cast<std::uint8_t>(failures), std::memory_order_relaxed);
        pause_.store(static_cast<std::uint16_t>((1 << failures) - 1), std::memory_order_relaxed);
        return answered;
    }

private:
    // As long as sleeping and being woken may take, so that a look is answered also by one who was asleep.
    static constexpr std::int64_t longestLook = 40'000; // nanoseconds
    static constexpr int mostFailures = 8;

    template <typename Attempt>
    bool look(Attempt attempt)
    {
        constexpr int attempts = 6;
        int pauses = 1;
        do {
            // Growing breaks leave the cache line to whoever is working with it.
            for (int i = 0; i < attempts; ++i, pauses = std::min(pauses * 2, 8)) {
                if (attempt()) {
                    return true;
                }
                for (int pause = 0; pause < pauses; ++pause) {
                    pauseProcessor();
                }
            }
            sched_yield(); // to whoever is to answer, should it wait for this very processor
        } while (monotonicNanoseconds() - start_ < longestLook);
        return false;
    }

    std::atomic<std::uint8_t>& failures_;
    std::atomic<std::uint16_t>& pause_;
    std::int64_t start_;
};

} // namespace brvUtils::os
