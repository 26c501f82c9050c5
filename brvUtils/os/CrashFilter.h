#pragma once

struct _EXCEPTION_POINTERS; // Windows' own; on Linux os/linux/CrashException.h has it

namespace brvUtils::os {

/// What is called when the process crashes. What it returns is what happens then.
using CrashFilter = long (*)(_EXCEPTION_POINTERS*);
constexpr long crashEndsProcess = 1; ///< At once, with the exit code of such a crash.
constexpr long crashGoesToSystem = 0;
constexpr long crashGoesOn = -1; ///< Where it happened.

/// The filter from now on, for all threads; null for none. \return the one before; null when there was none.
///
/// A crash is what the system has no other answer to (Windows: an exception without handler; Linux: SIGSEGV, SIGBUS, SIGFPE,
/// SIGILL, SIGABRT, SIGSYS), `abort()`, and an exception that nobody catches. The filter runs with enough stack (64 KiB or
/// more), also when the thread that crashed has none left, if that thread has called prepareThreadForCrash. Of threads that
/// crash at once the first runs the filter; the others wait until it lets things go on, or for ever. A crash within the filter
/// ends the process at once, with code 0.
CrashFilter setCrashFilter(CrashFilter filter) noexcept;

/// Gives the calling thread what a filter needs when the stack has overflowed. What is taken for it goes with the thread. Done
/// for every thread of startThread and of a PeriodicTimer; a second call does nothing.
void prepareThreadForCrash() noexcept;

} // namespace brvUtils::os
