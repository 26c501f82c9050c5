#include "brvUtils/os/Process.h"

#include "brvUtils/os/Encoding.h"

#include <windows.h>

namespace brvUtils::os {
namespace {

ErrorCode outcome(bool success)
{
    return success ? error::none : GetLastError();
}

} // namespace

std::string executablePath()
{
    // Systems differ in whether a path that was cut ends with a zero.
    wchar_t path[MAX_PATH + 1] = {};
    return GetModuleFileNameW(nullptr, path, MAX_PATH) != 0 ? utf8FromWide(path) : std::string();
}

ErrorCode setPriorityClass(PriorityClass priority)
{
    return outcome(SetPriorityClass(GetCurrentProcess(),
        priority == PriorityClass::realTime ? REALTIME_PRIORITY_CLASS : HIGH_PRIORITY_CLASS));
}

ErrorCode processAffinity(ProcessorMask& process, ProcessorMask& system)
{
    DWORD_PTR processMask = 0;
    DWORD_PTR systemMask = 0;
    const ErrorCode result = outcome(GetProcessAffinityMask(GetCurrentProcess(), &processMask, &systemMask));
    process = processMask;
    system = systemMask;
    return result;
}

ErrorCode setProcessAffinity(ProcessorMask mask)
{
    return outcome(SetProcessAffinityMask(GetCurrentProcess(), static_cast<DWORD_PTR>(mask)));
}

ErrorCode setThreadAffinity(ProcessorMask mask)
{
    return outcome(SetThreadAffinityMask(GetCurrentThread(), static_cast<DWORD_PTR>(mask)) != 0);
}

} // namespace brvUtils::os
