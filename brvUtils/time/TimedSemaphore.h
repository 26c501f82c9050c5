#pragma once

#include "Utilities/Clock.h"
#include "brvUtils/export.h"

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

    /// \param period in seconds. Below 0.001 MODE_TIMER becomes MODE_YIELD.
    /// \param paused whether it waits for run().
    TimedSemaphore(double period, bool paused, TimerMode mode);
    ~TimedSemaphore();
    TimedSemaphore(const TimedSemaphore&) = delete;
    TimedSemaphore& operator=(const TimedSemaphore&) = delete;

    /// Starts the beats from now on.
    void run();

    /// Ends them in MODE_TIMER, where "Error while stopping timer" on the error stream says that there were none. Nothing in
    /// the other modes.
    void pause();

    /// Waits for the next beat. In MODE_YIELD and MODE_SPIN deadlines are 0, 1, 2... periods after run(): one that is over
    /// already lets through at once, so that a loop that was late catches up with every period.
    /// \param timeout in seconds, as for ISemaphore::ask; without meaning in MODE_YIELD and MODE_SPIN.
    /// \return false when the time was over before, or the mode is none of the three.
    bool ask(double timeout);

    /// From now on each beat is recorded there while it is enabled: in MODE_TIMER on the timer's thread.
    /// \param logger not owned; null for none. To be changed only while no beats come.
    void setTimeLogger(HpTimeLog* logger);

private:
    bool free();
    static void Callback(void* self);

    TimerMode mode_;
    double period_; ///< Seconds.
    double nextDeadline_ = 0.0; ///< Clock time before which ask() does not return; without meaning in MODE_TIMER.
    Utilities::Clock clock_;
    HpTimeLog* timeLogger_ = nullptr;
    ISemaphore* semaphore_ = nullptr; ///< In MODE_TIMER only.
    ITimer* timer_ = nullptr; ///< In MODE_TIMER only.
};

} // namespace brvUtils
