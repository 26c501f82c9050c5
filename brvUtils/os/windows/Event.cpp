#include "brvUtils/os/Event.h"

#include "brvUtils/os/windows/Objects.h"

namespace brvUtils::os {

namespace {

static_assert(maximumWaitCount == MAXIMUM_WAIT_OBJECTS);

bool hasTwice(Event* const* events, std::size_t count)
{
    for (std::size_t i = 0; i < count; ++i) {
        for (std::size_t other = 0; other < i; ++other) {
            if (events[i] == events[other]) {
                return true;
            }
        }
    }
    return false;
}

} // namespace

EventOpening openEvent(const char* name, bool manualReset, bool initiallySet) noexcept
{
    if (name == nullptr || *name == '\0') {
        return {nullptr, false, error::invalidParameter};
    }
    SetLastError(0);
    HANDLE handle = CreateEventA(nullptr, manualReset, initiallySet, name);
    const DWORD code = GetLastError();
    if (handle == nullptr) {
        return {nullptr, false, code};
    }
    return {static_cast<Event*>(handle), code != ERROR_ALREADY_EXISTS, error::none};
}

ErrorCode closeEvent(Event* event) noexcept
{
    return closeObject(event);
}

ErrorCode setEvent(Event* event) noexcept
{
    if (event == nullptr) {
        return error::invalidHandle;
    }
    return SetEvent(event) ? error::none : GetLastError();
}

ErrorCode resetEvent(Event* event) noexcept
{
    if (event == nullptr) {
        return error::invalidHandle;
    }
    return ResetEvent(event) ? error::none : GetLastError();
}

WaitResult waitEvent(Event* event, Milliseconds timeout) noexcept
{
    return waitObject(event, timeout);
}

WaitResult waitEvents(Event* const* events, std::size_t count, bool all, Milliseconds timeout, std::size_t* index) noexcept
{
    if (count == 0 || count > maximumWaitCount || (all && hasTwice(events, count))) {
        return {WaitStatus::failed, error::invalidParameter};
    }
    HANDLE handles[maximumWaitCount];
    for (std::size_t i = 0; i < count; ++i) {
        handles[i] = events[i];
        if (handles[i] == nullptr) {
            return {WaitStatus::failed, error::invalidHandle};
        }
    }
    const DWORD result = WaitForMultipleObjects(static_cast<DWORD>(count), handles, all, timeout);
    if (result < WAIT_OBJECT_0 + count) {
        *index = all ? 0 : result - WAIT_OBJECT_0;
        return {WaitStatus::signalled, error::none};
    }
    if (result >= WAIT_ABANDONED_0 && result < WAIT_ABANDONED_0 + count) {
        return {WaitStatus::abandoned, error::none};
    }
    if (result == WAIT_TIMEOUT) {
        return {WaitStatus::timedOut, error::none};
    }
    return {WaitStatus::failed, GetLastError()};
}

} // namespace brvUtils::os
