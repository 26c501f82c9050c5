#include "brvUtils/os/ThreadStanding.h"

#include <windows.h>

namespace brvUtils::os {

std::string standingOfThread()
{
    const DWORD process = GetPriorityClass(GetCurrentProcess());
    const char* name = process == REALTIME_PRIORITY_CLASS ? "real-time"
        : process == HIGH_PRIORITY_CLASS ? "high"
        : process == ABOVE_NORMAL_PRIORITY_CLASS ? "above normal"
        : process == BELOW_NORMAL_PRIORITY_CLASS ? "below normal"
        : process == IDLE_PRIORITY_CLASS ? "idle" : "normal";
    return "thread priority " + std::to_string(GetThreadPriority(GetCurrentThread())) + " in a process of class " + name;
}

std::string steadyClockName()
{
    LARGE_INTEGER frequency{};
    QueryPerformanceFrequency(&frequency);
    return "performance counter, " + std::to_string(frequency.QuadPart) + " Hz";
}

} // namespace brvUtils::os
