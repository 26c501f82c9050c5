#pragma once

#include <cstddef>
#include <ctime>

namespace brvUtils::os {

// What a crash filter may call, when the heap may be damaged and any lock of the process may be held: nothing here allocates
// on Linux, or calls what does. All text is UTF-8; what does not fit is cut.

/// The value of an environment variable into `text`, with a zero behind it. False, and an empty text, when it is not defined.
bool crashVariable(const char* name, char* text, std::size_t size) noexcept;

/// The file name of this process's executable without its folder. False when the system does not tell.
bool crashModuleName(char* text, std::size_t size) noexcept;

/// The local time now. On Linux in the time zone of the first call, which prepareCrashClock makes.
std::tm crashTime() noexcept;

/// Makes crashTime ready. Not to be called in a filter.
void prepareCrashClock() noexcept;

/// Makes a folder with all its parents. Failures show when a file is made in it.
void makeCrashFolder(const char* path) noexcept;

/// Whether there is something of that path, of whatever kind.
bool crashPathExists(const char* path) noexcept;

/// What stands between folders in a path of this system.
extern const char crashPathSeparator;

/// What the system's files of this kind lie in when no variable tells: "C:\Temp", "/tmp".
extern const char* const crashTemporaryFolder;

/// The variables that name the folder of temporary files, in order, with a null at the end.
extern const char* const crashTemporaryVariables[];

void writeCrashLine(const char* text) noexcept; ///< To the standard error stream, as it is.

/// Tells the user about a dump: by a dialog that goes away by itself after 20 s and opens the folder when the user asks for it
/// (Windows), or on the standard error stream. Returns when the user has seen it.
/// \param text with "\r\n" between its lines.
void showCrashReport(const char* text, const char* folder) noexcept;

/// Ends this process at once; nothing is cleaned up.
[[noreturn]] void endCrashedProcess(int code) noexcept;

} // namespace brvUtils::os
