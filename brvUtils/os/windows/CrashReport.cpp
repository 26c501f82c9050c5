#include "brvUtils/os/CrashReport.h"

#include "brvUtils/os/windows/WideText.h"
#include "brvUtils/os/windows/CrashThread.h"

#include <windows.h>

#include <algorithm>
#include <cstring>

namespace brvUtils::os {
namespace {

/// Into UTF-8, as much as there is room for.
void copyText(const wchar_t* wide, std::size_t length, char* text, std::size_t size) noexcept
{
    const int room = static_cast<int>(size) - 1;
    int take = static_cast<int>(std::min(length, size - 1));
    int count = 0;
    while (take > 0 && (count = WideCharToMultiByte(CP_UTF8, 0, wide, take, text, room, nullptr, nullptr)) == 0) {
        --take;
    }
    text[count] = '\0';
}

} // namespace

bool crashVariable(const char* name, char* text, std::size_t size) noexcept
{
    text[0] = '\0';
    constexpr DWORD longest = 32767; // that the system knows, with the zero
    WideText<128> wideName;
    if (!wideName.set(name)) {
        return false;
    }
    auto* const value = static_cast<wchar_t*>(VirtualAlloc(nullptr, longest * sizeof(wchar_t), MEM_COMMIT | MEM_RESERVE, PAGE_READWRITE));
    if (value == nullptr) {
        return false;
    }
    SetLastError(ERROR_SUCCESS);
    const DWORD length = GetEnvironmentVariableW(wideName.text(), value, longest);
    const bool defined = length != 0 || GetLastError() == ERROR_SUCCESS;
    copyText(value, length < longest ? length : 0, text, size);
    VirtualFree(value, 0, MEM_RELEASE);
    return defined;
}

bool crashModuleName(char* text, std::size_t size) noexcept
{
    text[0] = '\0';
    wchar_t path[1024];
    DWORD length = 1024;
    if (!QueryFullProcessImageNameW(GetCurrentProcess(), 0, path, &length)) {
        return false;
    }
    const wchar_t* const end = path + length;
    const wchar_t* name = end;
    while (name != path && name[-1] != L'\\') {
        --name;
    }
    copyText(name, static_cast<std::size_t>(end - name), text, size);
    return text[0] != '\0';
}

std::tm crashTime() noexcept
{
    SYSTEMTIME now;
    GetLocalTime(&now);
    std::tm time {};
    time.tm_sec = now.wSecond;
    time.tm_min = now.wMinute;
    time.tm_hour = now.wHour;
    time.tm_mday = now.wDay;
    time.tm_mon = now.wMonth - 1;
    time.tm_year = now.wYear - 1900;
    time.tm_wday = now.wDayOfWeek;
    time.tm_isdst = -1;
    return time;
}

void prepareCrashClock() noexcept {}

void makeCrashFolder(const char* path) noexcept
{
    const CrashDeadline deadline;
    WidePath folder;
    if (!folder.set(path)) {
        return;
    }
    for (wchar_t* at = folder.text(); *at != L'\0'; ++at) {
        const wchar_t separator = *at;
        if (separator == L'\\' || separator == L'/') {
            *at = L'\0';
            CreateDirectoryW(folder.text(), nullptr);
            *at = separator;
        }
    }
    CreateDirectoryW(folder.text(), nullptr);
}

bool crashPathExists(const char* path) noexcept
{
    const CrashDeadline deadline;
    WidePath wide;
    return wide.set(path) && GetFileAttributesW(wide.text()) != INVALID_FILE_ATTRIBUTES;
}

const char crashPathSeparator = '\\';
const char* const crashTemporaryFolder = "C:\\Temp";
const char* const crashTemporaryVariables[] = { "TEMP", nullptr };

void writeCrashLine(const char* text) noexcept
{
    const CrashDeadline deadline; // nobody may read it
    DWORD count = 0;
    WriteFile(GetStdHandle(STD_ERROR_HANDLE), text, static_cast<DWORD>(std::strlen(text)), &count, nullptr);
}

void endCrashedProcess(int code) noexcept
{
    for (;;) {
        TerminateProcess(GetCurrentProcess(), static_cast<UINT>(code));
    }
}

} // namespace brvUtils::os
