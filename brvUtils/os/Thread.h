#pragma once

#include "brvUtils/os/Wait.h"

namespace brvUtils::os {

/// A thread that was started here (opaque). What stands for it is kept for the life of the process, also after the
/// thread has ended, so that it can always be asked.
struct Thread;

/// What startThread did.
struct ThreadStart
{
    Thread* thread; ///< Null when it failed.
    ErrorCode error; ///< Of a failed start; 0 otherwise.
};

/// Runs `body(argument)` on a new thread, which begins at the priority of the calling one. Nothing may be thrown out of
/// the body: that ends the process. Errors: notEnoughMemory and what else the system says.
ThreadStart startThread(void (*body)(void*), void* argument) noexcept;

/// Waits until the thread has ended. A thread that waits for itself times out.
WaitResult waitThread(Thread* thread, Milliseconds timeout) noexcept;

/// Steps of priority, which each system maps to its own.
constexpr int lowestPriority = 0;
constexpr int normalPriority = 3;
constexpr int highestPriority = 6;

/// Gives the thread one of the priorities 0 to 6: on Windows idle, lowest, below normal, normal, above normal, highest,
/// time critical; on Linux the idle class, nice 10, 5, 0, -5 and -10, round-robin. Errors: accessDenied when this user may
/// not, which on Linux is the rule above normal and on the way back up, and then changes nothing but that round-robin is
/// left; invalidHandle for a thread that has ended.
ErrorCode setThreadPriority(Thread* thread, int priority) noexcept;

/// The thread's priority on that scale; normalPriority when it has another one or the system does not tell. What that is
/// behind a thread's end differs between systems.
int threadPriority(Thread* thread) noexcept;

/// Lets another thread run that waits for this processor, if there is one. Never sleeps.
void yieldThread() noexcept;

} // namespace brvUtils::os
