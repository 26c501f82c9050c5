#include "brvUtils/platform/ProcessWin32.h"

#include "brvUtils/os/OtherProcesses.h"
#include "brvUtils/os/ProcessLife.h"

#include <cstdint>

using namespace brvUtils;

namespace {

/// The number, or 0, which is no process's, where it does not fit.
std::uint32_t number(unsigned long pid)
{
    const auto id = static_cast<std::uint32_t>(pid);
    return id == pid ? id : 0;
}

} // namespace

unsigned long ProcessWin32::getCurrentProcessID()
{
    return os::currentProcessId();
}

bool ProcessWin32::isProcessAlive(unsigned long pid)
{
    return os::processIsAlive(number(pid));
}

bool ProcessWin32::isLaunched(const std::string& executableName)
{
    return os::executableIsRunning(executableName);
}

bool ProcessWin32::suspend(unsigned long pid)
{
    return os::suspendProcess(number(pid));
}

bool ProcessWin32::resume(unsigned long pid)
{
    return os::resumeProcess(number(pid));
}
