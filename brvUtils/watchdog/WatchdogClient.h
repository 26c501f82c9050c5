#pragma once

#include "Utilities/Clock.h"
#include "brvUtils/export.h"
#include "brvUtils/ipc/ISemaphore.h"

#include <array>
#include <atomic>
#include <cstddef>
#include <memory>
#include <string>

namespace brvUtils {

class IThread;

/// Watches a module that signals with a WatchdogServer: takes its signals on a thread of its own, measures the intervals
/// between them, and tells whether it is alive.
///
/// A module is dead when a signal stays out for longer than the time-out, and when the mean of the last ten intervals is
/// too far from the period: it is too slow, or too fast. An interval that timed out counts with its length. So a module
/// that stopped is dead at once, and alive again after up to ten good intervals.
///
/// One client per name: several, in whatever programs, take the signals from each other and find the module slow.
///
/// isAlive() may be called from any thread, the rest by the owner alone.
class BRVUTILS_API WatchdogClient
{
public:
    /// Opens the semaphore of the module, or makes it: the module may start later. Nothing is watched yet. A semaphore that
    /// cannot be had throws nothing: the module is then never alive.
    /// \param semaphoreFactory SemaphoreWin32::New, or another one that gives null only when memory is short.
    /// \param name of the semaphore; qualified by the instance of the suite.
    /// \param timeout the longest wait for a signal, in seconds, as for ISemaphore::ask. Each wait in vain writes the line
    ///        of the semaphore to the error stream. With a negative one a module that stops is never found out.
    /// \param period the interval expected, in seconds.
    /// \param tolerance how far the mean may be from the period, as a fraction of it; from 1 on nothing is too fast.
    WatchdogClient(SemaphoreFactory semaphoreFactory, const std::string& name, double timeout, double period, double tolerance);

    /// Ends watching. Waits for the signal that is just awaited, until that times out, however long that is; where it never does, it gives the
    /// signal itself, which may reach another watcher of that name instead, or the next one.
    ~WatchdogClient();

    WatchdogClient(const WatchdogClient&) = delete;
    WatchdogClient& operator=(const WatchdogClient&) = delete;

    /// Starts watching. Does nothing when that was done, or when a semaphore could not be had for want of memory.
    /// \throw SystemRessourcesError when the thread cannot be started; it may be tried again.
    void startMonitoring();

    /// Whether the module was alive at its last interval. The first answer is false: no module is alive before somebody
    /// asked. Takes far less than a microsecond as a rule.
    ///
    /// When the verdict cannot be had for 10 s it writes "Watchdog : Cannot access the state of one process, dead assumed"
    /// to the error stream. From then on, as after a failure of runInThread, the answer is false at once.
    bool isAlive() const;

    /// Watches for one interval, on the thread. Not to be called by users.
    /// \return true.
    /// \throw SemaphoreSynchroError when the verdict cannot be changed for 10 s. This, like whatever the semaphore may throw,
    ///        writes "Serious error in watchdog system" to the error stream, and ends the process when it leaves the thread.
    bool runInThread();

private:
    void watch();
    bool isRegular() const;

    const double timeout_; ///< Seconds.
    const double period_; ///< Seconds.
    const double tolerance_; ///< Fraction of the period.
    bool alive_ = false; ///< Guarded by the protection object of the thread.
    mutable bool asked_ = false; ///< The same.
    mutable std::atomic<bool> broken_{false}; ///< Also read where the protection object cannot be had.
    bool monitoring_ = false; ///< Whether the thread was started.

    Utilities::Clock clock_; ///< Of the thread.
    std::array<double, 10> intervals_; ///< The last ones, in seconds. Of the thread.
    std::size_t next_ = 0; ///< Which of them is overwritten next. Of the thread.

    const std::string name_; ///< What the factory was given: as long as the semaphore lives.
    std::unique_ptr<ISemaphore> semaphore_;
    std::unique_ptr<IThread> thread_; ///< Last: its work uses the others.
};

} // namespace brvUtils
