#pragma once

#include "brvUtils/os/Error.h"

#include <string>

namespace brvUtils::os {

/// A shared library that is loaded while the program runs.
struct DynamicLibrary;

struct LibraryOpening
{
    DynamicLibrary* opened = nullptr; ///< Null after a failure.
    ErrorCode error = error::none;
};

/// Loads a library, or counts one more user of one that is loaded.
/// \param name in UTF-8: a path, or a name alone that is looked for where the system looks for libraries.
LibraryOpening openLibrary(const std::string& name);

/// The address of what the library exports under that name; null when there is none, or no library.
void* librarySymbol(DynamicLibrary* library, const char* name);

/// Unloads the library unless it has other users. Null is passed over.
void closeLibrary(DynamicLibrary* library);

} // namespace brvUtils::os
