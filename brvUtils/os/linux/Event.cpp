#include "brvUtils/os/Event.h"

#include "brvUtils/os/linux/EventState.h"
#include "brvUtils/os/linux/ObjectTable.h"
#include "brvUtils/os/linux/SpinThenSleep.h"

namespace brvUtils::os {

using namespace eventState;

namespace {

bool isValid(const Handle* handle)
{
    return handle != nullptr && handle->kind == Kind::event;
}

// Apart from the short way, which is to stay short.
[[gnu::noinline, gnu::cold]] WaitResult waitLonger(Handle& event, Milliseconds timeout)
{
    const std::uint64_t resetsBefore = event.state->load(std::memory_order_acquire) & resets;
    SpinThenSleep pace(event);
    if (pace.spin([&] { return tryPassSince(event, resetsBefore); })) {
        return {WaitStatus::signalled, error::none};
    }
    const Deadline deadline(pace.start(), timeout);
    for (bool inTime = true;;) {
        if (tryPassSince(event, resetsBefore)) {
            return {WaitStatus::signalled, error::none};
        }
        if (!inTime) {
            return {WaitStatus::timedOut, error::none};
        }
        if (std::uint32_t expected = 0; announceWaiter(event, expected)) {
            inTime = futexWait(*event.state, expected, deadline.moment());
        }
    }
}

} // namespace

EventOpening openEvent(const char* name, bool manualReset, bool initiallySet) noexcept
{
    const ObjectRequest request{Kind::event, initiallySet ? signalled : 0, manualReset};
    const ObjectOpening opening = ObjectTable::instance().open(name, request);
    return {as<Event>(opening.handle), opening.created, opening.error};
}

ErrorCode closeEvent(Event* event) noexcept
{
    return ObjectTable::instance().close(handleOf(event), Kind::event);
}

ErrorCode setEvent(Event* event) noexcept
{
    Handle* handle = handleOf(event);
    if (!isValid(handle)) {
        return error::invalidHandle;
    }
    set(*handle);
    return error::none;
}

ErrorCode resetEvent(Event* event) noexcept
{
    Handle* handle = handleOf(event);
    if (!isValid(handle)) {
        return error::invalidHandle;
    }
    reset(*handle);
    return error::none;
}

WaitResult waitEvent(Event* event, Milliseconds timeout) noexcept
{
    Handle* handle = handleOf(event);
    if (!isValid(handle)) {
        return {WaitStatus::failed, error::invalidHandle};
    }
    if (tryPass(*handle)) {
        return {WaitStatus::signalled, error::none};
    }
    if (timeout == 0) {
        return {WaitStatus::timedOut, error::none};
    }
    return waitLonger(*handle, timeout);
}

} // namespace brvUtils::os
