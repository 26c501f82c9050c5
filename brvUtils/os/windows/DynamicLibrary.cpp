#include "brvUtils/os/DynamicLibrary.h"

#include "brvUtils/os/Encoding.h"

#include <windows.h>

#include <algorithm>

namespace brvUtils::os {
namespace {

constexpr DWORD longestName = 32768; // of any file, with its zero

/// The system's text for a code, which may have a place for the file's name.
std::string loaderText(DWORD code, const std::wstring& file)
{
    wchar_t* buffer = nullptr;
    const DWORD length = FormatMessageW(
        FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, code, 0,
        reinterpret_cast<wchar_t*>(&buffer), 0, nullptr);
    std::wstring text(buffer, length);
    LocalFree(buffer);
    text.resize(text.find_last_not_of(L" \r\n") + 1);
    const std::size_t place = text.find(L"%1");
    if (place != std::wstring::npos) {
        text.replace(place, 2, file);
    }
    return text.empty() ? "error " + std::to_string(code) : utf8FromWide(text);
}

} // namespace

LibraryOpening openLibrary(const std::string& name)
{
    if (name.empty() || name.find('\0') != std::string::npos) {
        return {nullptr, error::moduleNotFound, loaderText(error::moduleNotFound, {})};
    }
    std::wstring path = wideFromUtf8(name);
    std::replace(path.begin(), path.end(), L'/', L'\\'); // the loader asks for these
    // Else a file that is no library, or one for another processor, may open a dialog and wait for somebody to close it.
    const DWORD mode = GetThreadErrorMode();
    SetThreadErrorMode(mode | SEM_FAILCRITICALERRORS, nullptr);
    const HMODULE library = LoadLibraryW(path.c_str());
    const ErrorCode outcome = library != nullptr ? error::none : GetLastError();
    SetThreadErrorMode(mode, nullptr);
    if (library == nullptr) {
        return {nullptr, outcome, loaderText(outcome, path)};
    }
    return {reinterpret_cast<DynamicLibrary*>(library)};
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

std::string libraryFile(const void* address)
{
    HMODULE module = nullptr;
    if (!GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
            static_cast<const wchar_t*>(address), &module)) {
        return {};
    }
    std::wstring path(longestName, L'\0');
    const DWORD length = GetModuleFileNameW(module, path.data(), longestName);
    return length < longestName ? utf8FromWide(path.substr(0, length)) : std::string();
}

} // namespace brvUtils::os
