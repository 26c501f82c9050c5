#pragma once

#include "brvUtils/ipc/ISemaphore.h"
#include "brvUtils/time/IThread.h"
#include "brvUtils/time/ThreadAction.h"

namespace brvUtils {

namespace os {
struct Thread;
}

/// A thread of the operating system. The suffix is history: it is the same on Linux.
///
/// A stop is taken between two pieces of work and never interrupts one. It is final: an object that was stopped starts a
/// thread again when asked to, which ends at once. Work that ended by itself leaves the object running in its own eyes;
/// a stop() then sets that right.
///
/// Stop the thread before destroying the object: the destructor deletes the work first and waits a second only. What the
/// system keeps of a thread is never given back, so that copies of an object stay valid; a copy owns nothing of its own
/// and is of use to nobody.
class BRVUTILS_API ThreadWin32 : public IThread
{
public:
    /// \param semaphoreFactory makes the protection object: unnamed, free. SemaphoreWin32::New does.
    /// \param action the work; owned from now on.
    /// \param startNow whether to start() at once.
    ThreadWin32(SemaphoreFactory semaphoreFactory, ThreadAction* action, bool startNow);
    /// Of use to nobody, see above.
    ThreadWin32(const ThreadWin32&) = default;
    /// The same.
    ThreadWin32& operator=(const ThreadWin32&) = default;
    ~ThreadWin32() override;

    /// The loop: looks for a request to stop, works, and so on.
    /// \throw SemaphoreSynchroError on the new thread, which ends the process, when it could not look for 10 s.
    void runThread() override;

    void start(int priority) override;
    void start() override;
    void startWithPriorityOffset(int offset) override;
    bool stop(double timeout) override;
    ISemaphore* getProtectionObject() const override;
    bool setPriority(int priority) override;
    int getPriority() const override;

private:
    bool mustStop();

    bool stopRequested_ = false; ///< Guarded by protection_.
    bool running_ = false;
    ISemaphore* protection_ = nullptr;
    ThreadAction* action_;
    os::Thread* handle_ = nullptr;
};

} // namespace brvUtils
