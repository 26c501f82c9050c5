#pragma once

#include "brvUtils/os/Wait.h"

#include <windows.h>

/// What the kinds of named objects have in common: the opaque types of the headers are kernel handles.
namespace brvUtils::os {

static_assert(infinite == INFINITE);

inline ErrorCode closeObject(HANDLE handle)
{
    if (handle == nullptr) {
        return error::invalidHandle;
    }
    return CloseHandle(handle) ? error::none : GetLastError();
}

inline WaitResult waitObject(HANDLE handle, Milliseconds timeout)
{
    if (handle == nullptr) {
        return {WaitStatus::failed, error::invalidHandle};
    }
    switch (WaitForSingleObject(handle, timeout)) {
    case WAIT_OBJECT_0: return {WaitStatus::signalled, error::none};
    case WAIT_ABANDONED: return {WaitStatus::abandoned, error::none};
    case WAIT_TIMEOUT: return {WaitStatus::timedOut, error::none};
    default: return {WaitStatus::failed, GetLastError()};
    }
}

} // namespace brvUtils::os
