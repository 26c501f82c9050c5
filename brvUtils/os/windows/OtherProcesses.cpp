#include "brvUtils/os/OtherProcesses.h"

#include "brvUtils/os/Encoding.h"
#include "brvUtils/os/windows/ScopedHandle.h"

#include <windows.h>

#include <tlhelp32.h>

namespace brvUtils::os {

bool executableIsRunning(const std::string& name)
{
    const ScopedHandle processes(CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0));
    const std::wstring wanted = wideFromUtf8(name);
    PROCESSENTRY32W entry{};
    entry.dwSize = sizeof entry;
    for (bool found = processes.open() && Process32FirstW(processes.get(), &entry); found;
         found = Process32NextW(processes.get(), &entry)) {
        // One without threads has ended, and somebody has a handle of it; number 0 is no process but the idle processor.
        if (entry.th32ProcessID != 0 && entry.cntThreads != 0 && wanted == entry.szExeFile) {
            return true;
        }
    }
    return false;
}

bool suspendProcess(std::uint32_t id) noexcept
{
    return id != GetCurrentProcessId() && DebugActiveProcess(id);
}

bool resumeProcess(std::uint32_t id) noexcept
{
    return DebugActiveProcessStop(id);
}

} // namespace brvUtils::os
