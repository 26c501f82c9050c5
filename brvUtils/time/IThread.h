#pragma once

#include "brvUtils/export.h"

namespace brvUtils {

class ISemaphore;

/// A thread that does its work over and over until it is finished or stopped. One thread at a time may call, its owner.
///
/// Priorities are the same seven steps on every system, from PRIORITY_IDLE to PRIORITY_TIME_CRITICAL.
class BRVUTILS_API IThread
{
public:
    static const int PRIORITY_IDLE; ///< 0
    static const int PRIORITY_LOWEST; ///< 1
    static const int PRIORITY_BELOW_NORMAL; ///< 2
    static const int PRIORITY_NORMAL; ///< 3
    static const int PRIORITY_ABOVE_NORMAL; ///< 4
    static const int PRIORITY_HIGHEST; ///< 5
    static const int PRIORITY_TIME_CRITICAL; ///< 6

    static const double defaultTimeOut; ///< 1.0, in seconds, for stop().

    virtual ~IThread();

    /// What the new thread does. Not to be called by users.
    virtual void runThread() = 0;

    /// start(), then setPriority(), whose result is dropped.
    virtual void start(int priority) = 0;

    /// Starts the thread, at the priority of the caller's. Does nothing when it was started and not stopped since.
    /// \throw SystemRessourcesError when the system refuses, or there was no memory for the protection object.
    virtual void start() = 0;

    /// start(), then a priority so many steps from the one it started with, kept within the scale.
    virtual void startWithPriorityOffset(int offset) = 0;

    /// Asks the thread to end behind the work it is just doing, and waits for that.
    /// \param timeout in seconds, cut to whole milliseconds; negative waits without limit, not a number does not wait. The
    ///        thread itself would wait in vain, and must not ask before start() has returned.
    /// \return true when it has ended; false when it was not running, or still is: it then ends on its own.
    /// \throw SemaphoreSynchroError when the request could not be left within 10 s.
    virtual bool stop(double timeout) = 0;

    /// The semaphore that guards the request to stop: free between two looks of the thread. It belongs to the thread.
    virtual ISemaphore* getProtectionObject() const = 0;

    /// Changes the priority, 0 to 6. False for a thread that was never started, other numbers, and when the system refuses.
    virtual bool setPriority(int priority) = 0;

    /// The priority that the system tells; PRIORITY_NORMAL when that is none of the scale or there is no thread.
    virtual int getPriority() const = 0;
};

} // namespace brvUtils
