#include "brvUtils/os/ProcessLife.h"

#include <windows.h>

namespace brvUtils::os {

std::uint32_t currentProcessId() noexcept
{
    return GetCurrentProcessId();
}

bool processIsAlive(std::uint32_t id) noexcept
{
    const HANDLE process = OpenProcess(PROCESS_QUERY_INFORMATION | SYNCHRONIZE, FALSE, id);
    if (process == nullptr) {
        return GetLastError() != ERROR_INVALID_PARAMETER; // that is "no such process"; others may not be looked at
    }
    // An ended process can be opened as long as anybody has a handle of it.
    const bool ended = WaitForSingleObject(process, 0) == WAIT_OBJECT_0;
    CloseHandle(process);
    return !ended;
}

} // namespace brvUtils::os
