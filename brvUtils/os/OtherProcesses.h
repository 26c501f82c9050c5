#pragma once

#include <cstdint>
#include <string>

namespace brvUtils::os {

// Any thread may call these. Numbers are those of ProcessLife.h.

/// Whether some process runs this executable, of all that the system lists; one that has ended does not.
/// \param name with its extension and without a folder, UTF-8; case counts.
///
/// On Linux the file that is run counts: for a script its interpreter; for a file that was removed or replaced meanwhile the
/// name that it had; behind links. Of a process that this user may not look at it is the name that the process goes by.
bool executableIsRunning(const std::string& name);

/// Stops all threads of a process. On Linux they stay stopped after the end of the caller; on Windows the caller becomes the
/// debugger of the process, and the process ends when the caller ends.
///
/// \return true once it is stopped. False for this process and those that are none, that are stopped or being debugged
///         already (also by somebody else), or that this user may not stop. On Linux two callers at the same moment may both
///         get true.
bool suspendProcess(std::uint32_t id) noexcept;

/// Lets a process go on that was suspended: on Windows by the calling thread, on Linux by anybody, also by a terminal.
/// False when it is not suspended or this user may not.
bool resumeProcess(std::uint32_t id) noexcept;

} // namespace brvUtils::os
