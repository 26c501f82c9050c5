#pragma once

#include "brvUtils/os/Wait.h"

#include <cstddef>

namespace brvUtils::os {

/// An open binary semaphore (opaque; null is a failed opening). Any thread or process may release what another took, and
/// the end of a process releases nothing. A closed handle answers error::invalidHandle until the number is used again.
///
/// A release is not handed to a particular waiter: a running taker may be quicker, and two releases before the woken
/// waiter has run may count as one. That keeps the lock fast, and no waiter that dies can swallow a release.
struct Semaphore;

/// What openSemaphore found.
struct SemaphoreOpening
{
    Semaphore* semaphore; ///< Null when it failed.
    bool created; ///< Whether this call made the object.
    ErrorCode error; ///< Of a failed opening; 0 otherwise.
};

/// Opens the semaphore of that name, or makes it, in one step. Only the creator fixes whether it starts free.
/// \param name 1 to 259 bytes; a backslash only as part of a leading `Local\` or `Global\`. Null: a new semaphore that
///        belongs to this process alone.
/// Errors: invalidHandle (the name belongs to another kind), fileNameTooLong, pathNotFound (a backslash),
/// invalidParameter (an empty name), notEnoughMemory, and those of the name space (accessDenied, diskFull, invalidData,
/// revisionMismatch).
SemaphoreOpening openSemaphore(const char* name, bool initiallyFree) noexcept;

/// Gives the handle back. The object is gone with the last handle of the last process. It is not released.
ErrorCode closeSemaphore(Semaphore* semaphore) noexcept;

/// Takes the semaphore, waiting at most that long.
WaitResult waitSemaphore(Semaphore* semaphore, Milliseconds timeout) noexcept;

/// Makes the semaphore free. error::tooManyPosts when it is free already.
ErrorCode releaseSemaphore(Semaphore* semaphore) noexcept;

/// Tunes this handle's releases for a semaphore that serves as a lock: taken and released far more often than waited for.
/// Where the system allows it a release then costs no more than two plain memory accesses, and going to sleep a little
/// more; sleepers wake once a second to look for themselves. To be called before the first take through this handle.
void useAsLock(Semaphore* semaphore) noexcept;

/// Whether the system tells who took a semaphore (Linux: yes, Windows: no).
bool deadTakersAreKnown() noexcept;

/// A process that took a semaphore and ended without releasing it.
struct DeadTaker
{
    bool found; ///< Whether there is one; always false where the system cannot tell (Windows).
    std::uint32_t processId; ///< 0 when its record was used again since.
    char program[40]; ///< File name of its executable, cut at 39 bytes; empty when unknown.
};

/// Makes the semaphore free when its taker has died, and says who that was. Of several callers one finds the dead taker.
/// Takers of semaphores without a name, and "nobody" of one created taken, are never dead.
DeadTaker releaseSemaphoreOfDeadTaker(Semaphore* semaphore) noexcept;

} // namespace brvUtils::os
