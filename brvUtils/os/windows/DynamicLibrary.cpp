#include "brvUtils/os/DynamicLibrary.h"

#include "brvUtils/os/Encoding.h"

#include <windows.h>

namespace brvUtils::os {

LibraryOpening openLibrary(const std::string& name)
{
    const HMODULE library = LoadLibraryW(wideFromUtf8(name).c_str());
    return {reinterpret_cast<DynamicLibrary*>(library), library != nullptr ? error::none : GetLastError()};
}

void* librarySymbol(DynamicLibrary* library, const char* name)
{
    // Without a library it would look into the program.
    return library == nullptr ? nullptr : reinterpret_cast<void*>(GetProcAddress(reinterpret_cast<HMODULE>(library), name));
}

void closeLibrary(DynamicLibrary* library)
{
    if (library != nullptr) {
        FreeLibrary(reinterpret_cast<HMODULE>(library));
    }
}

} // namespace brvUtils::os
