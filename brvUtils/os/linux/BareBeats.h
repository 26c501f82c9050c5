#pragma once

#include "brvUtils/os/linux/Descriptor.h"

#include <cstdint>
#include <ctime>
#include <sched.h>
#include <sys/prctl.h>
#include <sys/timerfd.h>

namespace brvUtils::os {

// The bare calls behind a steady beat, for benchmarks to compare with. Moments are nanoseconds of the monotonic clock, the
// one of std::chrono::steady_clock.

inline timespec bareTimespec(std::int64_t nanoseconds)
{
    return {nanoseconds / 1'000'000'000, nanoseconds % 1'000'000'000};
}

inline void bareSleepUntil(std::int64_t moment)
{
    const timespec deadline = bareTimespec(moment);
    while (clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, &deadline, nullptr) != 0) { }
}

/// How much later than asked for the system may wake this thread; 50 us unless somebody changed it.
inline void setTimerSlack(unsigned long nanoseconds)
{
    prctl(PR_SET_TIMERSLACK, nanoseconds);
}

/// Whether this user may let a thread go before all ordinary ones. The calling thread is one of those from then on.
inline bool goFirst()
{
    sched_param parameters{};
    parameters.sched_priority = sched_get_priority_min(SCHED_RR);
    return sched_setscheduler(0, SCHED_RR, &parameters) == 0;
}

/// A timer of the system that is read like a file.
class BareTimerFile
{
public:
    /// Beats at `first` and once per period from there on.
    BareTimerFile(std::int64_t first, std::int64_t period)
    {
        const itimerspec beats{bareTimespec(period), bareTimespec(first)};
        file_.take(timerfd_create(CLOCK_MONOTONIC, TFD_CLOEXEC));
        timerfd_settime(file_.get(), TFD_TIMER_ABSTIME, &beats, nullptr);
    }

    /// Waits for the next beat. Gives how many came since the last look; 0 after a failure.
    std::uint64_t wait()
    {
        std::uint64_t beats = 0;
        return read(file_.get(), &beats, sizeof beats) == sizeof beats ? beats : 0;
    }

private:
    Descriptor file_;
};

/// From now on this thread, and those that it starts, run on the last of the processors that it may run on; or on all but
/// that one. False when there is only one, or the system refuses.
inline bool stayOnLastProcessor(bool onIt)
{
    cpu_set_t allowed;
    if (sched_getaffinity(0, sizeof allowed, &allowed) != 0 || CPU_COUNT(&allowed) < 2) {
        return false;
    }
    int last = CPU_SETSIZE - 1;
    while (!CPU_ISSET(last, &allowed)) {
        --last;
    }
    if (onIt) {
        CPU_ZERO(&allowed);
        CPU_SET(last, &allowed);
    } else {
        CPU_CLR(last, &allowed);
    }
    return sched_setaffinity(0, sizeof allowed, &allowed) == 0;
}

} // namespace brvUtils::os
