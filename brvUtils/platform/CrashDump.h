#pragma once

#include <string>

#include "brvUtils/export.h"

/// \file
/// What a module leaves behind when it crashes: a dump, in the one format on both systems, in a folder per version and program
/// below `STUDIO_DUMP_DIR`, and a word to the user about where it is.
///
/// | variable | effect, looked at when the crash happens |
/// |---|---|
/// | `STUDIO_DISABLE_DUMP` | defined: no dump and no message, the process ends at once |
/// | `STUDIO_DUMP_DIR` | the folder of all dumps; by default `STUDIO_Dumps` below `TEMP` (Linux: or `TMPDIR`, or `/tmp`) |
/// | `STUDIO_PROCESS_DUMP_LEVEL` | `FULL`: all memory; `NONE`: no dump and no message; case counts; anything else: a normal dump |
/// | `STUDIO_DUMP_NO_MSG` | defined: a line on the standard error stream in place of the dialog |
/// | `COMPUTERNAME`, `USERNAME` | part of the file's name |

/// What the system says about a crash: on Windows its own structure, on Linux one that only this library reads.
struct _EXCEPTION_POINTERS;

/// From now on a crash of this process leaves a dump and ends it with exit code 0. On Linux a crash is a signal SIGSEGV, SIGBUS,
/// SIGFPE, SIGILL, SIGABRT or SIGSYS, on Windows an exception that nobody handles; `abort()` and an exception that nobody
/// catches are crashes on both. Call it first of all in `main`. A stack overflow leaves a dump on the thread that called this
/// and on threads of ThreadWin32 and TimerWin32. Of threads that crash at once the first one writes, the others wait for the end.
BRVUTILS_API void RegisterDump();

/// As RegisterDump, but a crash calls the given function, on the thread that crashed or on one made for it. It may call
/// GenerateDump. What it returns is what happens then: 1 ends the process with the code of its crash (Linux: 128 and the number
/// of the signal, 139 for SIGSEGV), 0 leaves the crash to the system (Linux: the signal ends the process, with a core file
/// where these are wanted), -1 goes on where it happened. Neither keeps nor calls the function before. Null takes the function
/// away, and the system has its way again.
/// \return whether there was one before.
BRVUTILS_API bool RegisterDumpCallback(long (*filter)(_EXCEPTION_POINTERS*));

/// Writes one dump of this process; `STUDIO_PROCESS_DUMP_LEVEL` chooses what is in it, `FULL` everything, all others the usual.
/// Any thread; one at a time in a process, others wait.
/// \param file UTF-8; a file of that name is replaced. Its folder must exist.
/// \param exception what a filter was given, or null: then the calling thread as it is now.
/// \return whether the dump is there, whole. If not, no part of it is left.
BRVUTILS_API bool GenerateDump(const std::string& file, _EXCEPTION_POINTERS* exception);
