#pragma once

#include "Utilities/Clock.h"
#include "brvUtils/export.h"

#include <atomic>
#include <memory>

class HpTimeLog;

namespace brvUtils {

class ISemaphore;
class ITimer;

/// Lets a loop through once per period.
///
/// One thread asks. Its owner may start and pause it from another one in MODE_TIMER only.
class BRVUTILS_API TimedSemaphore
{
public:
    /// How ask() waits.
    enum TimerMode : int {
        MODE_TIMER = 0, ///< Sleeps until a TimerWin32 beats. Beats that nobody waits for are lost but for one.
        MODE_YIELD = 1, ///< Polls the clock and lets other threads have the processor between two looks.
        MODE_SPIN = 2 ///< Polls the clock without pause.
    };

    /// \param period in seconds. Below 0.001 MODE_TIMER becomes MODE_YIELD. 0 and less lets through at once, always. More than
    ///        4,294,967 s, and not a number, never beats in MODE_TIMER; in the other modes infinity never ends the second
    ///        ask(), and not a number lets through at once.
    /// \param paused whether it waits for run().
    /// \param mode one of the three; with another one ask() fails.
    /// \throw SystemRessourcesError as run().
    TimedSemaphore(double period, bool paused, TimerMode mode);
    ~TimedSemaphore();
    TimedSemaphore(const TimedSemaphore&) = delete;
    TimedSemaphore& operator=(const TimedSemaphore&) = delete;

    /// Starts the beats from now on.
    /// \throw SystemRessourcesError when the system's timer cannot be set, nor a thread started to poll instead.
    void run();

    /// Ends them in MODE_TIMER, where "Error while stopping timer" on the error stream says that there were none. Nothing in
    /// the other modes.
    void pause();

    /// Waits for the next beat. In MODE_YIELD and MODE_SPIN deadlines are 0, 1, 2... periods after run(): one that is over
    /// already lets through at once, so that a loop that was late catches up with every period.
    /// \param timeout in seconds, as for ISemaphore::ask; without meaning in MODE_YIELD and MODE_SPIN.
    /// \return false when the time was over before, or the mode is none of the three.
    bool ask(double timeout);

    /// From now on each beat of MODE_TIMER is recorded there, on the timer's thread, while the log is enabled. The other
    /// modes record nothing.
    /// \param logger not owned; null for none. One that was replaced may still be used until pause().
    void setTimeLogger(HpTimeLog* logger);

private:
    bool free();
    static void Callback(void* self);

    TimerMode mode_;
    double period_; ///< Seconds.
    double nextDeadline_ = 0.0; ///< Clock time before which ask() does not return; without meaning in MODE_TIMER.
    Utilities::Clock clock_;
    std::atomic<HpTimeLog*> timeLogger_{nullptr};
    std::unique_ptr<ISemaphore> semaphore_; ///< In MODE_TIMER only.
    std::unique_ptr<ITimer> timer_; ///< In MODE_TIMER only; below the semaphore, which its thread frees.
};

} // namespace brvUtils
