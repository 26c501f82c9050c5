#include "brvUtils/time/ThreadWin32.h"

#include "brvUtils/core/Errors.h"
#include "brvUtils/ipc/CriticalSection.h"
#include "brvUtils/ipc/internal/Timeout.h"
#include "brvUtils/os/Thread.h"

#include <algorithm>

namespace brvUtils {
namespace {

constexpr double patience = 10.0; // seconds; the protection object is held for an instant only
constexpr const char* const noAccess = "ThreadWin32 : Problem to access thread specific data (endThread)";

} // namespace

ThreadWin32::ThreadWin32(SemaphoreFactory semaphoreFactory, ThreadAction* action, bool startNow)
    : action_(action)
{
    try {
        protection_ = semaphoreFactory(nullptr, true, true);
        if (startNow) {
            start();
        }
    } catch (...) {
        delete action_;
        delete protection_;
        throw;
    }
}

ThreadWin32::~ThreadWin32()
{
    // Kept for callers: in this order, see the comment on the class.
    delete action_;
    try {
        stop(defaultTimeOut);
    } catch (...) {
        // Somebody holds the protection object, so that nothing can be said to the thread.
    }
    delete protection_;
}

bool ThreadWin32::mustStop()
{
    const CriticalSection guard(protection_, noAccess, patience);
    return stopRequested_;
}

void ThreadWin32::runThread()
{
    while (!mustStop() && action_->execute()) {
    }
}

void ThreadWin32::start()
{
    if (running_) {
        return;
    }
    if (protection_ == nullptr) {
        throw SystemRessourcesError("ThreadWin32 cannot be launched"); // it could never be stopped
    }
    const auto run = [](void* self) { static_cast<IThread*>(self)->runThread(); };
    const os::ThreadStart started = os::startThread(run, static_cast<IThread*>(this));
    if (started.thread == nullptr) {
        throw SystemRessourcesError("ThreadWin32 cannot be launched");
    }
    handle_ = started.thread;
    running_ = true;
}

void ThreadWin32::start(int priority)
{
    start();
    setPriority(priority);
}

void ThreadWin32::startWithPriorityOffset(int offset)
{
    start();
    // Clamped first, so that no sum overflows.
    const int span = PRIORITY_TIME_CRITICAL - PRIORITY_IDLE;
    setPriority(std::clamp(getPriority() + std::clamp(offset, -span, span), PRIORITY_IDLE, PRIORITY_TIME_CRITICAL));
}

bool ThreadWin32::stop(double timeout)
{
    if (!running_) {
        return false;
    }
    {
        const CriticalSection guard(protection_, noAccess, patience);
        stopRequested_ = true;
    }
    const bool ended = os::waitThread(handle_, toMilliseconds(timeout)).status != os::WaitStatus::timedOut;
    if (ended) {
        running_ = false;
    }
    return ended;
}

ISemaphore* ThreadWin32::getProtectionObject() const
{
    return protection_;
}

bool ThreadWin32::setPriority(int priority)
{
    return os::setThreadPriority(handle_, priority) == os::error::none;
}

int ThreadWin32::getPriority() const
{
    return os::threadPriority(handle_);
}

} // namespace brvUtils
