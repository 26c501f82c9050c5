#pragma once

#include "Utilities/Clock.h"
#include "brvUtils/time/ThreadWin32.h"

#include <atomic>
#include <memory>

namespace brvUtils {

/// A thread that looks at the clock all the time and calls a function once per period, for beats that the system's timer
/// cannot give. A beat that comes late makes the next one due earlier. Starts and stops once.
class Poller
{
public:
    enum class Pause { yields, spins };

    /// \param period in seconds. \param pause what it does between two looks.
    Poller(double period, void (*callback)(void*), void* context, Pause pause);

    /// Waits until the thread has ended, however long a call takes. From within that call, where it cannot wait, it leaves
    /// the thread to end behind it.
    ~Poller();
    Poller(const Poller&) = delete;
    Poller& operator=(const Poller&) = delete;

    /// Opens when it is set; may outlive the poller.
    using Gate = std::shared_ptr<std::atomic<bool>>;

    /// The first beat comes one period later, but not before the gate is open: that call may destroy whatever started it.
    /// The thread runs a step of priority below the caller's.
    /// \throw SystemRessourcesError when the system refuses.
    Gate start();

    bool started() const { return started_; }

    /// Whether it was started and was not seen to have ended.
    bool running() const { return started_ && !ended_; }

    /// As IThread::stop, but from within the call it does not wait.
    bool stop(double timeout);

private:
    class Beat;

    Beat* beat_ = nullptr; ///< Belongs to the thread.
    std::unique_ptr<ThreadWin32> thread_;
    bool started_ = false;
    bool ended_ = false;
};

} // namespace brvUtils
