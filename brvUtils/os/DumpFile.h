#pragma once

struct _EXCEPTION_POINTERS;

namespace brvUtils::os {

enum class DumpContents {
    normal, ///< Threads with their stacks, modules, the exception.
    full ///< And all memory (Windows: and the handles).
};

/// Writes a minidump of this process. Takes nothing from the heap on Linux, so that a damaged or locked one does no harm.
/// \param file UTF-8; replaced when it is there, and taken away again when the dump does not become whole.
/// \param exception what a crash filter was given, also on another thread than the one that crashed; null: the calling
///        thread as it is now.
bool writeDumpFile(const char* file, DumpContents contents, _EXCEPTION_POINTERS* exception) noexcept;

} // namespace brvUtils::os
