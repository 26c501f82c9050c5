#pragma once

#include "brvUtils/os/Error.h"

namespace brvUtils::os {

/// A source of beats that is running (opaque).
///
/// It calls a function once per period, one call after the other, on a thread that is not the caller's: on Linux one for
/// each timer, on Windows one for all of the process, so that a slow call delays the beats of others there. Beats lie on a
/// grid that begins when it was started, so that no lateness adds up. The date of the computer plays no part.
struct PeriodicTimer;

/// Calls `call(context)` first after one period and then once per period. The call must not throw: that ends the process.
/// A call that takes longer than the period delays the next one; on Linux the beats that passed meanwhile are counted and
/// left out, on Windows the system makes up for some of them.
/// \param timer set before the first call; to be stopped. Null when it failed.
/// \param milliseconds 1 or more. Errors: invalidParameter for 0 and for what the system's source cannot hold (on Windows
///        above some minutes), notEnoughMemory.
ErrorCode startPeriodicTimer(PeriodicTimer*& timer, std::uint32_t milliseconds, void (*call)(void*), void* context) noexcept;

/// Ends the beats and forgets the timer. No call is running or will come when it returns; from within the call itself the
/// present one is the last. On Windows it waits for the calls of other timers, too. Only one thread may stop a timer, and
/// only once.
void stopPeriodicTimer(PeriodicTimer* timer) noexcept;

/// Beats left out so far because a call took too long. 0 on Windows, which does not tell. Any thread, until it is stopped.
std::uint64_t missedBeats(const PeriodicTimer* timer) noexcept;

/// Makes the system's timers at least as fine as that, until as many calls of endTimerResolution with the same number.
/// Nothing is to be done on Linux.
void beginTimerResolution(std::uint32_t milliseconds) noexcept;
void endTimerResolution(std::uint32_t milliseconds) noexcept;

} // namespace brvUtils::os
