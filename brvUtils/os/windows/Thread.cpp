#include "brvUtils/os/Thread.h"

#include "brvUtils/os/CrashFilter.h"
#include "brvUtils/os/windows/Objects.h"

#include <algorithm>
#include <array>
#include <memory>
#include <new>

namespace brvUtils::os {
namespace {

struct Body
{
    void (*run)(void*);
    void* argument;
};

DWORD WINAPI runBody(void* parameter) noexcept
{
    const Body body = *static_cast<Body*>(parameter);
    delete static_cast<Body*>(parameter);
    prepareThreadForCrash();
    body.run(body.argument);
    return 1; // kept for those who look at exit codes
}

constexpr std::array<int, 7> nativePriorities{THREAD_PRIORITY_IDLE, THREAD_PRIORITY_LOWEST, THREAD_PRIORITY_BELOW_NORMAL,
    THREAD_PRIORITY_NORMAL, THREAD_PRIORITY_ABOVE_NORMAL, THREAD_PRIORITY_HIGHEST, THREAD_PRIORITY_TIME_CRITICAL};

} // namespace

ThreadStart startThread(void (*body)(void*), void* argument) noexcept
{
    std::unique_ptr<Body> parameter(new (std::nothrow) Body{body, argument});
    if (parameter == nullptr) {
        return {nullptr, error::notEnoughMemory};
    }
    HANDLE handle = CreateThread(nullptr, 0, runBody, parameter.get(), 0, nullptr);
    if (handle == nullptr) {
        return {nullptr, GetLastError()};
    }
    parameter.release();
    if (const int own = GetThreadPriority(GetCurrentThread()); own != THREAD_PRIORITY_ERROR_RETURN) {
        SetThreadPriority(handle, own);
    }
    return {static_cast<Thread*>(handle), error::none};
}

WaitResult waitThread(Thread* thread, Milliseconds timeout) noexcept
{
    return waitObject(thread, timeout);
}

ErrorCode setThreadPriority(Thread* thread, int priority) noexcept
{
    if (priority < lowestPriority || priority > highestPriority) {
        return error::invalidParameter;
    }
    if (thread == nullptr || WaitForSingleObject(thread, 0) == WAIT_OBJECT_0) {
        return error::invalidHandle;
    }
    return SetThreadPriority(thread, nativePriorities[static_cast<std::size_t>(priority)]) ? error::none : GetLastError();
}

int threadPriority(Thread* thread) noexcept
{
    // An error, such as that of null, is none of the seven.
    const auto* found = std::find(nativePriorities.begin(), nativePriorities.end(), GetThreadPriority(thread));
    return found != nativePriorities.end() ? static_cast<int>(found - nativePriorities.begin()) : normalPriority;
}

void yieldThread() noexcept
{
    Sleep(0);
}

} // namespace brvUtils::os
