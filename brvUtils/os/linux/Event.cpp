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
    if (pace.spin([&] { return tryPassSince(event, resetsBefore) == Attempt::done; })) {
        return {WaitStatus::signalled, error::none};
    }
    const Deadline deadline(pace.start(), timeout);
    bool inTime = true;
    for (int naps = 0;;) {
        const Attempt attempt = tryPassSince(event, resetsBefore);
        if (attempt == Attempt::done) {
            return {WaitStatus::signalled, error::none};
        }
        if (!inTime && (attempt == Attempt::notSignalled || ++naps > lastNaps)) {
            return {WaitStatus::timedOut, error::none};
        }
        std::uint32_t expected = 0;
        if (attempt == Attempt::held) {
            nap();
            inTime = !deadline.passed();
        } else if (announceWaiter(event, expected)) {
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
    StateWord& word = *handle->state;
    std::uint64_t state = word.load(std::memory_order_relaxed);
    // Also where the event is signalled already the word is written: whoever takes that signal must see what the caller
    // wrote before.
    while ((state & hasWaiters) == 0 || (state & signalled) != 0) {
        if (word.compare_exchange_weak(state, state | signalled, std::memory_order_acq_rel, std::memory_order_relaxed)) {
            return error::none;
        }
    }
    futexChangeAndWakeAll(word, FUTEX_OP_OR, signalled);
    return error::none;
}

ErrorCode resetEvent(Event* event) noexcept
{
    Handle* handle = handleOf(event);
    if (!isValid(handle)) {
        return error::invalidHandle;
    }
    while (tryReset(*handle) == Attempt::held) {
        nap();
    }
    return error::none;
}

WaitResult waitEvent(Event* event, Milliseconds timeout) noexcept
{
    Handle* handle = handleOf(event);
    if (!isValid(handle)) {
        return {WaitStatus::failed, error::invalidHandle};
    }
    const Attempt attempt = tryPass(*handle);
    if (attempt == Attempt::done) {
        return {WaitStatus::signalled, error::none};
    }
    if (timeout == 0 && attempt == Attempt::notSignalled) {
        return {WaitStatus::timedOut, error::none};
    }
    return waitLonger(*handle, timeout);
}

} // namespace brvUtils::os
