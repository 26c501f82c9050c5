#include "brvUtils/os/Semaphore.h"

#include "brvUtils/os/linux/ObjectTable.h"
#include "brvUtils/os/linux/SpinThenSleep.h"

#include <cstring>

// The state word: 0 is free, else the ticket of the taker, so that taking and telling who took is one step.
// A waiter that goes to sleep sets the flag beside the ticket; the release then wakes everybody who sleeps.

namespace brvUtils::os {

namespace {

constexpr std::uint64_t isFree = 0;
constexpr std::uint64_t hasWaiters = 0x80000000;

bool isValid(const Handle* handle)
{
    return handle != nullptr && handle->kind == Kind::semaphore;
}

bool tryTake(Handle& handle)
{
    std::uint64_t expected = isFree;
    return handle.state->compare_exchange_strong(expected, handle.ticket, std::memory_order_acquire, std::memory_order_relaxed);
}

bool looksFree(Handle& handle)
{
    return handle.state->load(std::memory_order_relaxed) == isFree;
}

/// One turn of a waiter: takes the semaphore, or sleeps until it changes. False when the deadline has passed.
bool takeOrSleep(Handle& handle, const Deadline& deadline, bool& taken)
{
    std::uint64_t state = handle.state->load(std::memory_order_relaxed);
    taken = state == isFree && tryTake(handle);
    if (taken || state == isFree) {
        return true;
    }
    if ((state & hasWaiters) == 0
        && !handle.state->compare_exchange_strong(state, state | hasWaiters, std::memory_order_relaxed)) {
        return true;
    }
    return futexWait(*handle.state, static_cast<std::uint32_t>(state | hasWaiters), deadline.moment());
}

// Apart from the short way, which is to stay short.
[[gnu::noinline, gnu::cold]] WaitResult waitLonger(Handle& handle, Milliseconds timeout)
{
    SpinThenSleep pace(handle);
    if (pace.spin([&] { return looksFree(handle) && tryTake(handle); })) {
        return {WaitStatus::signalled, error::none};
    }
    const Deadline deadline(pace.start(), timeout);
    bool taken = false;
    while (!taken && takeOrSleep(handle, deadline, taken)) {
    }
    if (taken || tryTake(handle)) {
        return {WaitStatus::signalled, error::none};
    }
    return {WaitStatus::timedOut, error::none};
}

} // namespace

SemaphoreOpening openSemaphore(const char* name, bool initiallyFree) noexcept
{
    const ObjectRequest request{Kind::semaphore, initiallyFree ? isFree : nobody};
    const ObjectOpening opening = name != nullptr ? ObjectTable::instance().open(name, request)
                                                  : ObjectTable::instance().openUnnamed(request);
    return {as<Semaphore>(opening.handle), opening.created, opening.error};
}

ErrorCode closeSemaphore(Semaphore* semaphore) noexcept
{
    return ObjectTable::instance().close(handleOf(semaphore), Kind::semaphore);
}

WaitResult waitSemaphore(Semaphore* semaphore, Milliseconds timeout) noexcept
{
    Handle* handle = handleOf(semaphore);
    if (!isValid(handle)) {
        return {WaitStatus::failed, error::invalidHandle};
    }
    if (tryTake(*handle)) {
        return {WaitStatus::signalled, error::none};
    }
    if (timeout == 0) {
        return {WaitStatus::timedOut, error::none};
    }
    return waitLonger(*handle, timeout);
}

ErrorCode releaseSemaphore(Semaphore* semaphore) noexcept
{
    Handle* handle = handleOf(semaphore);
    if (!isValid(handle)) {
        return error::invalidHandle;
    }
    StateWord& state = *handle->state;
    // Usually this process took it and nobody waits: guessing that saves a look.
    std::uint64_t seen = handle->ticket;
    while (!state.compare_exchange_strong(seen, isFree, std::memory_order_release, std::memory_order_relaxed)) {
        if (seen == isFree) {
            return error::tooManyPosts;
        }
        if ((seen & hasWaiters) != 0) {
            futexChangeAndWakeAll(state, FUTEX_OP_SET, 0);
            return error::none;
        }
    }
    return error::none;
}

bool deadTakersAreKnown() noexcept
{
    return true;
}

DeadTaker releaseSemaphoreOfDeadTaker(Semaphore* semaphore) noexcept
{
    DeadTaker dead{};
    Handle* handle = handleOf(semaphore);
    if (!isValid(handle) || handle->attachment == 0) {
        return dead;
    }
    std::uint64_t state = handle->state->load(std::memory_order_relaxed);
    const auto ticket = static_cast<std::uint32_t>(state & ~hasWaiters);
    const ObjectTable& table = ObjectTable::instance();
    if (ticket == isFree || table.isAlive(ticket)) {
        return dead;
    }
    const ProcessRecord process = table.processOf(ticket);
    dead.processId = process.processId;
    std::memcpy(dead.program, process.program, sizeof dead.program);
    // Taken over and then released: were this process killed in between, the next one would find a dead taker again, and
    // whoever sleeps is woken by a release, not forgotten. Exactly the state that the dead process left is changed: the
    // semaphore may have a new taker by now, or a waiter have set its flag.
    while (static_cast<std::uint32_t>(state & ~hasWaiters) == ticket) {
        if (handle->state->compare_exchange_strong(state, handle->ticket | (state & hasWaiters), std::memory_order_acq_rel, std::memory_order_relaxed)) {
            dead.found = true;
            releaseSemaphore(semaphore);
            break;
        }
    }
    return dead;
}

} // namespace brvUtils::os
