#pragma once

#include <string>

#include "brvUtils/export.h"

/// A look at other processes of this computer. The functions may be called from any thread; failures are false, and nothing
/// is thrown.
class BRVUTILS_API ProcessWin32
{
public:
    /// The number by which the system knows this process.
    static unsigned long getCurrentProcessID();

    /// Whether a process of that number runs, whoever owns it. One that has ended does not, even if something of it is still
    /// kept; neither 0 nor the number of a thread is a process.
    static bool isProcessAlive(unsigned long pid);

    /// Whether some process of this computer, which may be this one, runs this executable.
    /// \param executableName with its extension and without a folder, UTF-8; case counts.
    ///
    /// On Linux a script counts under its interpreter, a link under what it leads to, and a file that was removed or replaced
    /// meanwhile under the name that it had; a process that this user may not look at counts under the name that it gives
    /// itself.
    static bool isLaunched(const std::string& executableName);

    /// Stops all threads of another process until resume. Blocks until they stand, on Linux for at most a second, after which
    /// those that wait for a disk stop later.
    ///
    /// On Windows this process becomes its debugger: when this one ends, that one does, too. On Linux it stays stopped.
    /// \return false when the process is stopped already, by whomever, or watched by a debugger, when there is none or it is
    ///         this one, and when this user may not. On Linux two callers at the same moment may both get true.
    static bool suspend(unsigned long pid);

    /// Lets a process go on that was suspended: on Windows by this thread, on Linux by anybody, also by a terminal. False when
    /// it is not suspended, and when this user may not.
    static bool resume(unsigned long pid);
};
