#pragma once

#include "brvUtils/time/ITimer.h"

#include <atomic>
#include <memory>
#include <vector>

namespace brvUtils {

class Poller;

namespace os {
struct PeriodicTimer;
}

/// Calls a function once per period, on another thread. The suffix is history: it is the same on Linux.
///
/// The beat comes from the system's periodic timer, in whole milliseconds, or from a thread that polls the clock:
///
/// | mode | period from 1 ms | below 1 ms |
/// |---|---|---|
/// | 0 to 3 | system's timer; a yielding poller where that cannot be set | yielding poller |
/// | 4, 5 | system's timer and a yielding poller, so two calls per period | yielding poller |
/// | 6 | spinning poller | spinning poller |
/// | 7 and above | yielding poller | yielding poller |
///
/// A poller holds a processor fully busy; the yielding one lets every other thread have it that wants it. It runs one step
/// of priority below the thread that called run().
///
/// On Windows the system's timers of a process share one thread: a slow callback delays the others, and pausing one waits
/// for the call of another that is running. So a callback must not wait for the thread that pauses.
///
/// One thread at a time may call, the owner or the function that is being called. The first call may come before run() has
/// returned. A timer is not copied.
class BRVUTILS_API TimerWin32 : public ITimer
{
public:
    /// Nothing is called before run(), and never when the callback is null or the period is not within 0 (excluded) and
    /// 4,294,967 s.
    /// \param period in seconds.
    /// \param callback must not throw: that ends the process. One that takes longer than the period is called late; an
    ///        earlier lateness makes the next call due earlier.
    /// \param context what the callback is given; not owned. \param mode see above.
    TimerWin32(double period, void (*callback)(void*), void* context, unsigned long mode);
    TimerWin32(const TimerWin32&) = delete;
    TimerWin32& operator=(const TimerWin32&) = delete;

    /// Ends the beats and waits until no call is running, however long that takes; called by the callback itself it does
    /// not wait, and that call is the last.
    ~TimerWin32() override;

    /// Starts the beats, the first call one period later; those of before end. False without a callback.
    /// When the system's timer cannot be set it writes "Error: Unable to set timer function. Use High performance timer
    /// instead (CPU consummer)." to the error stream and polls.
    /// \throw SystemRessourcesError when no thread can be started for a poller; nothing beats then.
    bool run() override;

    /// Ends one source of beats: the system's timer if it beats, in which case a poller goes on (modes 4 and 5: call again),
    /// else the poller, which is waited for 1 s at most, and not at all from within its own call. False when there was none or the poller did not end in time; it
    /// makes no further call then. No call of the system's timer is running or will come when it returns.
    bool pause() override;

    /// Beats that the system's timer has left out since run(), because a callback took too long; 0 while it is paused.
    /// Always 0 on Windows, where the system does not tell, and for pollers, which leave none out.
    unsigned long long getMissedBeats() const;

private:
    bool isInert() const;
    bool pausePoller();
    std::unique_ptr<Poller> makePoller() const;
    bool startSystemTimer();
    std::shared_ptr<std::atomic<bool>> startPoller();

    double period_; ///< Seconds.
    void (*callback_)(void*);
    void* context_;
    os::PeriodicTimer* timer_ = nullptr; ///< Null while it does not beat.
    std::unique_ptr<Poller> poller_; ///< Null where the mode needs none.
    std::vector<std::unique_ptr<Poller>> stopped_; ///< Asked to stop, but still in their last call when last seen.
    unsigned long mode_;
};

} // namespace brvUtils
