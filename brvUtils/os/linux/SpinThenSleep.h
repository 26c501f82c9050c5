#pragma once

#include "brvUtils/os/linux/Deadline.h"
#include "brvUtils/os/linux/Handle.h"

#include <sched.h>
#include <unistd.h>

#if defined(__x86_64__) || defined(__i386__)
#include <immintrin.h>
#endif

namespace brvUtils::os {

inline void pauseProcessor()
{
#if defined(__x86_64__) || defined(__i386__)
    _mm_pause();
#elif defined(__aarch64__)
    asm volatile("yield");
#endif
}

/// Decides per handle whether a wait looks again and again for a short while before it sleeps. Going to sleep and being
/// woken costs tens of microseconds; who is answered sooner than that gains by looking, who waits for a frame loses.
/// So each handle keeps a score of how its recent waits went.
class SpinThenSleep
{
public:
    explicit SpinThenSleep(Handle& handle)
        : score_(handle.spinScore)
        , start_(monotonicNanoseconds())
    {
    }

    std::int64_t start() const { return start_; }

    /// Calls `attempt` until it answers true or looking no longer pays. True when an attempt did.
    template <typename Attempt>
    bool spin(Attempt attempt)
    {
        if (score_.load(std::memory_order_relaxed) <= 0 || !hasSeveralProcessors()) {
            return false;
        }
        int pauses = 1;
        do {
            for (int round = 0; round < 16; ++round) {
                if (attempt()) {
                    change(+1);
                    return true;
                }
                for (int i = 0; i < pauses; ++i) {
                    pauseProcessor();
                }
                // Growing breaks leave the cache line to whoever is working with it.
                pauses = pauses < 8 ? pauses * 2 : 8;
            }
        } while (monotonicNanoseconds() - start_ < worthLooking);
        change(-2);
        return false;
    }

    /// The wait slept, and was answered now.
    void answered()
    {
        if (monotonicNanoseconds() - start_ < worthLooking) {
            change(+1);
        }
    }

private:
    static constexpr std::int64_t worthLooking = 40'000; // nanoseconds: what sleeping and being woken costs
    static constexpr int maximumScore = 8;

    static bool hasSeveralProcessors()
    {
        static const bool several = sysconf(_SC_NPROCESSORS_ONLN) > 1;
        return several;
    }

    void change(int by)
    {
        const int score = score_.load(std::memory_order_relaxed) + by;
        score_.store(static_cast<std::int8_t>(score < 0 ? 0 : score > maximumScore ? maximumScore : score), std::memory_order_relaxed);
    }

    std::atomic<std::int8_t>& score_;
    std::int64_t start_;
};

} // namespace brvUtils::os
