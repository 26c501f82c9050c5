#include "brvUtils/os/Semaphore.h"

#include "brvUtils/os/windows/Objects.h"

namespace brvUtils::os {

SemaphoreOpening openSemaphore(const char* name, bool initiallyFree) noexcept
{
    if (name != nullptr && *name == '\0') {
        return {nullptr, false, error::invalidParameter}; // the system would make one without a name
    }
    SetLastError(0);
    HANDLE handle = CreateSemaphoreA(nullptr, initiallyFree ? 1 : 0, 1, name);
    const DWORD code = GetLastError();
    if (handle == nullptr) {
        return {nullptr, false, code};
    }
    return {static_cast<Semaphore*>(handle), code != ERROR_ALREADY_EXISTS, error::none};
}

ErrorCode closeSemaphore(Semaphore* semaphore) noexcept
{
    return closeObject(semaphore);
}

WaitResult waitSemaphore(Semaphore* semaphore, Milliseconds timeout) noexcept
{
    return waitObject(semaphore, timeout);
}

ErrorCode releaseSemaphore(Semaphore* semaphore) noexcept
{
    if (semaphore == nullptr) {
        return error::invalidHandle;
    }
    return ReleaseSemaphore(semaphore, 1, nullptr) ? error::none : GetLastError();
}

void useAsLock(Semaphore*) noexcept
{
}

bool deadTakersAreKnown() noexcept
{
    return false;
}

DeadTaker releaseSemaphoreOfDeadTaker(Semaphore*) noexcept
{
    return {};
}

} // namespace brvUtils::os
