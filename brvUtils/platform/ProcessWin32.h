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

    /// Whether a process of that number runs. One that has ended does not, even if something of it is still kept.
    static bool isProcessAlive(unsigned long pid);

    /// Whether some process of this computer that may be looked at runs this executable.
    /// \param executableName with its extension and without a folder, UTF-8; case counts.
    static bool isLaunched(const std::string& executableName);

    /// Stops all threads of another process until resume.
    /// \return false when the process is stopped already or watched by a debugger, when there is none or it is this one, and
    ///         when this user may not. On Windows this process becomes its debugger: when this one ends, that one does, too.
    static bool suspend(unsigned long pid);

    /// Lets a process go on that was suspended; on Windows by this thread. False when it was not.
    static bool resume(unsigned long pid);
};
