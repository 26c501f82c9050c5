#include "brvUtils/os/PeriodicTimer.h"

#include "brvUtils/os/CrashFilter.h"
#include "brvUtils/os/linux/Deadline.h"
#include "brvUtils/os/linux/EarlyWake.h"
#include "brvUtils/os/linux/Errno.h"
#include "brvUtils/os/linux/Futex.h"
#include "brvUtils/os/linux/PauseProcessor.h"

#include <algorithm>
#include <new>
#include <pthread.h>
#include <sched.h>
#include <sys/prctl.h>

namespace brvUtils::os {

struct PeriodicTimer
{
    PeriodicTimer(void (*function)(void*), void* with, std::int64_t nanoseconds)
        : call(function)
        , context(with)
        , period(nanoseconds)
        , start(monotonicNanoseconds())
    {
    }

    void (*const call)(void*);
    void* const context;
    const std::int64_t period; ///< Nanoseconds.
    const std::int64_t start; ///< Of the grid, on the monotonic clock.
    pthread_t thread{};
    std::atomic<bool> known{false}; ///< To whoever started it, who does not touch it any more.
    StateWord stopped{0};
    std::atomic<std::uint64_t> missed{0};
};

namespace {

/// The timer whose call is running on this thread, until that call has stopped it.
thread_local PeriodicTimer* calling = nullptr;

/// As the system's beats come on Windows: ahead of ordinary threads, where this user may. Those that a call starts are
/// ordinary again.
void sharpenThisThread()
{
    sched_param parameters{};
    parameters.sched_priority = sched_get_priority_min(SCHED_RR);
    sched_setscheduler(0, SCHED_RR | SCHED_RESET_ON_FORK, &parameters);
    prctl(PR_SET_TIMERSLACK, 1UL);
}

/// False when the timer was stopped before the moment came.
bool sleepUntil(PeriodicTimer& timer, std::int64_t moment, EarlyWake& early)
{
    const std::int64_t alarm = moment - early.lead();
    const timespec deadline{alarm / 1'000'000'000, alarm % 1'000'000'000};
    bool slept = false;
    while (timer.stopped.load() == 0 && monotonicNanoseconds() < alarm) {
        futexWait(timer.stopped, 0, &deadline);
        slept = true;
    }
    if (slept) {
        early.wokenAfter(monotonicNanoseconds() - alarm);
    }
    while (timer.stopped.load() == 0) {
        if (monotonicNanoseconds() >= moment) {
            return true;
        }
        pauseProcessor();
    }
    return false;
}

/// The first beat of the grid that is still to come after `beat`; those that are over are counted.
std::int64_t beatAfter(PeriodicTimer& timer, std::int64_t beat)
{
    const std::int64_t over = (monotonicNanoseconds() - timer.start) / timer.period;
    if (over > beat) {
        timer.missed.fetch_add(static_cast<std::uint64_t>(over - beat), std::memory_order_relaxed);
    }
    return std::max(over, beat) + 1;
}

void* beat(void* argument) noexcept
{
    auto* timer = static_cast<PeriodicTimer*>(argument);
    while (!timer->known) {
        sched_yield(); // as long as this thread is no more urgent than the one that it waits for
    }
    prepareThreadForCrash();
    sharpenThisThread();
    EarlyWake early(timer->period);
    calling = timer;
    for (std::int64_t beat = 1; sleepUntil(*timer, timer->start + beat * timer->period, early);) {
        timer->call(timer->context);
        if (calling == nullptr) { // stopped by its own call, which left it to this thread
            delete timer;
            break;
        }
        beat = beatAfter(*timer, beat);
    }
    return nullptr;
}

} // namespace

ErrorCode startPeriodicTimer(PeriodicTimer*& timer, std::uint32_t milliseconds, void (*call)(void*), void* context) noexcept
{
    timer = nullptr;
    if (milliseconds == 0 || call == nullptr) {
        return error::invalidParameter;
    }
    auto* made = new (std::nothrow) PeriodicTimer(call, context, milliseconds * std::int64_t{1'000'000});
    if (made == nullptr) {
        return error::notEnoughMemory;
    }
    if (const int fault = pthread_create(&made->thread, nullptr, beat, made); fault != 0) {
        delete made;
        return fromErrno(fault);
    }
    timer = made;
    made->known.store(true);
    return error::none;
}

void stopPeriodicTimer(PeriodicTimer* timer) noexcept
{
    if (timer == nullptr) {
        return;
    }
    timer->stopped.store(1);
    if (calling == timer) {
        calling = nullptr;
        pthread_detach(pthread_self());
        return;
    }
    futexWakeAll(timer->stopped);
    pthread_join(timer->thread, nullptr);
    delete timer;
}

std::uint64_t missedBeats(const PeriodicTimer* timer) noexcept
{
    return timer != nullptr ? timer->missed.load(std::memory_order_relaxed) : 0;
}

void beginTimerResolution(std::uint32_t) noexcept
{
}

void endTimerResolution(std::uint32_t) noexcept
{
}

} // namespace brvUtils::os
