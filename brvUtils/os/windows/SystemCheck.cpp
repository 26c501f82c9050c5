#include "brvUtils/os/SystemCheck.h"

#include <windows.h>

#include <mmsystem.h>

namespace brvUtils::os {

namespace {

using State = SystemFact::State;

constexpr unsigned long long mebibyte = 1 << 20;

SystemFact sharedMemory()
{
    MEMORYSTATUSEX memory{};
    memory.dwLength = sizeof memory;
    GlobalMemoryStatusEx(&memory);
    const unsigned long long free = memory.ullAvailPageFile / mebibyte;
    const std::string text = std::to_string(free) + " MB are free for segments";
    return free >= 64 ? SystemFact{State::good, "shared memory", text}
                      : SystemFact{State::warning, "shared memory", text, "SystemPropertiesPerformance.exe, where \"Advanced\" sets the paging file"};
}

SystemFact realTime()
{
    HANDLE token = nullptr;
    bool held = false;
    if (OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &token) != 0) {
        char buffer[4096];
        DWORD size = 0;
        LUID privilege{};
        LookupPrivilegeValueW(nullptr, L"SeIncreaseBasePriorityPrivilege", &privilege);
        if (GetTokenInformation(token, TokenPrivileges, buffer, sizeof buffer, &size) != 0) {
            const auto* const all = reinterpret_cast<const TOKEN_PRIVILEGES*>(buffer);
            for (DWORD i = 0; i < all->PrivilegeCount; ++i) {
                const LUID& each = all->Privileges[i].Luid;
                held = held || (each.LowPart == privilege.LowPart && each.HighPart == privilege.HighPart);
            }
        }
        CloseHandle(token);
    }
    return held ? SystemFact{State::good, "real time", "all priorities are allowed"}
                : SystemFact{State::warning, "real time", "this user gets high priority where real-time priority (-rt) is asked for",
                      "secpol.msc, Local Policies, User Rights Assignment: Increase scheduling priority"};
}

SystemFact timers()
{
    TIMECAPS caps{};
    const bool known = timeGetDevCaps(&caps, sizeof caps) == TIMERR_NOERROR;
    return known && caps.wPeriodMin <= 1
        ? SystemFact{State::good, "timers", "timers go by steps of " + std::to_string(caps.wPeriodMin) + " ms"}
        : SystemFact{State::warning, "timers", "timers do not go by steps of 1 ms", "bcdedit /deletevalue useplatformclock"};
}

} // namespace

std::vector<SystemFact> systemFacts()
{
    return {sharedMemory(), realTime(), timers(), cardDriverFact()};
}

} // namespace brvUtils::os
