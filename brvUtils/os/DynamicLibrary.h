#pragma once

#include "brvUtils/os/Error.h"

#include <string>

namespace brvUtils::os {

// Names and texts are UTF-8. Any thread may call these.

/// A shared library that is loaded while the program runs.
struct DynamicLibrary;

struct LibraryOpening
{
    DynamicLibrary* opened = nullptr; ///< Null after a failure.
    ErrorCode error = error::none;
    std::string text = {}; ///< Why it failed, in the words of the system's loader, without a line end; empty otherwise.
};

/// Loads a library, or counts one more user of one that is loaded.
///
/// What the library does as it is loaded must not throw. On Windows the system takes an exception for a failure, after which
/// the library is not loaded; on Linux it ends the process by `std::terminate`, since the system's loader could neither
/// undo its work nor free its lock.
/// \param name a path, in which `/` and `\` both separate folders, or a name alone that is looked for where the system looks
///        for libraries. Empty, or with a zero in it, there is no such library.
LibraryOpening openLibrary(const std::string& name);

/// The address of what the library exports under that name; null when there is none, or no library. On Linux also what
/// libraries export that it needs.
void* librarySymbol(DynamicLibrary* library, const char* name);

/// Unloads the library unless it has other users. Null is passed over.
void closeLibrary(DynamicLibrary* library);

/// Full file name of the library or program that holds the address, behind links on Linux. Empty when none does, or when the
/// system does not tell. On Linux slow: about as long as it takes to load a small library.
std::string libraryFile(const void* address);

} // namespace brvUtils::os
