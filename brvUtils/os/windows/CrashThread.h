#pragma once

#include <windows.h>

namespace brvUtils::os {

// The threads that work on a crash. Takes nothing from the heap and no lock of the process once prepared.

/// Makes what the rest needs, the guard among it: a thread that waits until a deadline begins. It is made in time because a
/// new one does not start while the thread that crashed loads a library. Later calls do nothing.
void prepareCrashThreads() noexcept;

/// The calling thread has crashed and works on that from now on. One at a time in the process.
void beginCrash(const EXCEPTION_POINTERS* exception) noexcept;
void endCrash() noexcept; ///< It goes on where it crashed.

/// Whether the calling thread works on a crash; a crash of such a thread is one too many.
bool worksOnCrash() noexcept;

/// The thread whose crash these belong to; the calling thread for all others.
DWORD crashedThread(const EXCEPTION_POINTERS* exception) noexcept;

/// The system's number of the guard; 0 when there is none.
DWORD crashGuard() noexcept;

/// Runs a function on a thread of its own that works on a crash, and waits for its end. \return whether it ran.
bool runOnCrashThread(void (*run)(void*), void* argument) noexcept;

/// Ends the process, with code 0, unless it goes within this time. On threads that do not work on a crash it does nothing.
///
/// What is done after a crash may need a lock that a thread holds which crashed as well, or was halted for the dump.
class CrashDeadline
{
public:
    explicit CrashDeadline(DWORD milliseconds = 10'000) noexcept;
    ~CrashDeadline();
    CrashDeadline(const CrashDeadline&) = delete;
    CrashDeadline& operator=(const CrashDeadline&) = delete;

private:
    const bool counts_;
};

} // namespace brvUtils::os
