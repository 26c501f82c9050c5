#include "brvUtils/os/DynamicLibrary.h"

#include "brvUtils/os/Encoding.h"

#include <windows.h>

namespace brvUtils::os {

LibraryOpening openLibrary(const std::string& name)
{
    // Else a file that is no library, or one for another processor, may open a dialog and wait for somebody to close it.
    const DWORD mode = GetThreadErrorMode();
    SetThreadErrorMode(mode | SEM_FAILCRITICALERRORS, nullptr);
    const HMODULE library = LoadLibraryW(wideFromUtf8(name).c_str());
    const ErrorCode outcome = library != nullptr ? error::none : GetLastError();
    SetThreadErrorMode(mode, nullptr);
    return {reinterpret_cast<DynamicLibrary*>(library), outcome};
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
