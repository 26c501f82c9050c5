#include "brvUtils/os/Semaphore.h"

#include "brvUtils/os/linux/MemoryBarrier.h"
#include "brvUtils/os/linux/ObjectTable.h"
#include "brvUtils/os/linux/SemaphoreWord.h"
#include "brvUtils/os/linux/SpinThenSleep.h"

#include <cstring>

namespace brvUtils::os {

namespace {

bool isValid(const Handle* handle)
{
    return handle != nullptr && handle->kind == Kind::semaphore;
}

bool isFree(SemaphoreWord::Value value)
{
    return (value & SemaphoreWord::takerBits) == 0;
}

bool isReleasedPlainly(const Handle& handle)
{
    return handle.table != nullptr && handle.table->slots[handle.slot].plainReleases.load(std::memory_order_acquire) != 0;
}

/// Waits until the semaphore is no longer as it was seen, with the flag of sleepers. False when the deadline has passed.
bool sleep(Handle& handle, SemaphoreWord::Value seen, const Deadline& deadline)
{
    if (!isReleasedPlainly(handle)) {
        return futexWait(*handle.state, seen, deadline.moment());
    }
    // Who is killed between the two halves of a plain release has woken nobody; and where barriers are not allowed, a
    // release may overlook a sleeper. So this one looks after itself.
    const Milliseconds nextLook = barrierEverywhere() ? 1000 : 2;
    const Deadline turn = deadline.earlier({monotonicNanoseconds(), nextLook});
    futexWait(*handle.state, seen, turn.moment());
    return !deadline.passed();
}

// Apart from the short way, which is to stay short.
[[gnu::noinline, gnu::cold]] WaitResult waitLonger(Handle& handle, Milliseconds timeout)
{
    const SemaphoreWord word(*handle.state);
    SpinThenSleep pace(handle);
    if (pace.spin([&] { return isFree(word.load()) && word.tryTake(handle.ticket); })) {
        return {WaitStatus::signalled, error::none};
    }
    const Deadline deadline(pace.start(), timeout);
    bool inTime = true;
    for (;;) {
        SemaphoreWord::Value seen = word.load();
        if (isFree(seen)) {
            if (word.tryTake(handle.ticket)) {
                return {WaitStatus::signalled, error::none};
            }
        } else if (!inTime) {
            return {WaitStatus::timedOut, error::none};
        } else if ((seen & SemaphoreWord::hasSleepers) != 0 || word.change(seen, seen | SemaphoreWord::hasSleepers)) {
            inTime = sleep(handle, seen | SemaphoreWord::hasSleepers, deadline);
        }
    }
}

} // namespace

SemaphoreOpening openSemaphore(const char* name, bool initiallyFree) noexcept
{
    const ObjectRequest request{Kind::semaphore, initiallyFree ? 0 : nobody};
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
    if (SemaphoreWord(*handle->state).tryTake(handle->ticket)) {
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
    const SemaphoreWord word(*handle->state);
    SemaphoreWord::Value seen = word.load();
    while (!isFree(seen)) {
        if ((seen & SemaphoreWord::hasSleepers) != 0) {
            futexChangeAndWakeAll(*handle->state, FUTEX_OP_SET, 0);
            return error::none;
        }
        if (handle->releasesPlainly) {
            if (word.clearTaker()) {
                futexWakeAll(*handle->state);
            }
            return error::none;
        }
        if (word.change(seen, 0)) {
            return error::none;
        }
    }
    return error::tooManyPosts;
}

void useAsLock(Semaphore* semaphore) noexcept
{
    Handle* handle = handleOf(semaphore);
    if (isValid(handle) && handle->table != nullptr && registerForBarriers()) {
        handle->table->slots[handle->slot].plainReleases = 1;
        handle->releasesPlainly = true;
    }
}

bool deadTakersAreKnown() noexcept
{
    return true;
}

DeadTaker releaseSemaphoreOfDeadTaker(Semaphore* semaphore) noexcept
{
    DeadTaker dead{};
    Handle* handle = handleOf(semaphore);
    if (!isValid(handle) || handle->table == nullptr) {
        return dead;
    }
    const SemaphoreWord word(*handle->state);
    SemaphoreWord::Value seen = word.load();
    const SemaphoreWord::Value ticket = seen & SemaphoreWord::takerBits;
    const ObjectTable& table = ObjectTable::instance();
    if (isFree(seen) || table.isAlive(ticket)) {
        return dead;
    }
    const ProcessIdentity process = table.processOf(ticket);
    dead.processId = process.processId;
    std::memcpy(dead.program, process.program, sizeof dead.program);
    // Taken over and then released: were this process killed in between, the next one would find a dead taker again, and
    // whoever sleeps is woken by a release, not forgotten. Exactly the state that the dead process left is changed: the
    // semaphore may have a new taker by now, or a waiter have set its flag.
    while ((seen & SemaphoreWord::takerBits) == ticket) {
        if (word.change(seen, handle->ticket | (seen & SemaphoreWord::hasSleepers))) {
            dead.found = true;
            releaseSemaphore(semaphore);
            break;
        }
    }
    return dead;
}

} // namespace brvUtils::os
