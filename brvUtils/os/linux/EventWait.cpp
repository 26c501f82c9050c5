#include "brvUtils/os/Event.h"

#include "brvUtils/os/linux/Deadline.h"
#include "brvUtils/os/linux/Errno.h"
#include "brvUtils/os/linux/EventState.h"
#include "brvUtils/os/linux/ObjectTable.h"

#include <algorithm>
#include <array>

// Waits on several events.

namespace brvUtils::os {

using namespace eventState;

namespace {

// Declared by the kernel's headers since 5.16; the machine that builds may have older ones.
#ifndef FUTEX_32
constexpr std::uint32_t FUTEX_32 = 2;
struct futex_waitv
{
    std::uint64_t val;
    std::uint64_t uaddr;
    std::uint32_t flags;
    std::uint32_t __reserved;
};
#endif
#ifndef SYS_futex_waitv
constexpr long SYS_futex_waitv = 449;
#endif

struct Members
{
    Event* const* events;
    std::size_t count;

    Handle& operator[](std::size_t i) const { return *handleOf(events[i]); }
};

ErrorCode check(const Members& members, bool all)
{
    if (members.count == 0 || members.count > maximumWaitCount) {
        return error::invalidParameter;
    }
    for (std::size_t i = 0; i < members.count; ++i) {
        const Handle* event = handleOf(members.events[i]);
        if (event == nullptr || event->kind != Kind::event) {
            return error::invalidHandle;
        }
        for (std::size_t other = 0; all && other < i; ++other) {
            if (members[other].state == event->state) {
                return error::invalidParameter;
            }
        }
    }
    return error::none;
}

/// The first signalled one in list order.
class AnyOf
{
public:
    static constexpr bool needsAll = false;

    explicit AnyOf(const Members& members)
        : members_(members)
    {
        for (std::size_t i = 0; i < members.count; ++i) {
            resetsBefore_[i] = members[i].state->load(std::memory_order_acquire) & resets;
        }
    }

    Attempt tryPass(std::size_t& index)
    {
        Attempt result = Attempt::notSignalled;
        for (std::size_t i = 0; i < members_.count; ++i) {
            const Attempt attempt = tryPassSince(members_[i], resetsBefore_[i]);
            if (attempt == Attempt::done) {
                index = i;
                return attempt;
            }
            if (attempt == Attempt::held) {
                result = attempt;
            }
        }
        return result;
    }

private:
    const Members& members_;
    std::array<std::uint64_t, maximumWaitCount> resetsBefore_{};
};

/// All of them, in one step for those who look at them.
class AllOf
{
public:
    static constexpr bool needsAll = true;

    explicit AllOf(const Members& members)
        : count_(members.count)
    {
        for (std::size_t i = 0; i < count_; ++i) {
            ordered_[i] = &members[i];
        }
        // Everybody reserves in the order of the slots, so that of several waits one always gets on.
        std::sort(ordered_.begin(), ordered_.begin() + static_cast<std::ptrdiff_t>(count_),
            [](const Handle* a, const Handle* b) { return a->slot < b->slot; });
    }

    Attempt tryPass(std::size_t& index)
    {
        // Mostly one is missing: seen without touching the others.
        for (std::size_t i = 0; i < count_; ++i) {
            if ((ordered_[i]->state->load(std::memory_order_acquire) & signalled) == 0) {
                return Attempt::notSignalled;
            }
        }
        std::size_t held = 0;
        Attempt attempt = Attempt::done;
        while (held < count_ && (attempt = tryReserve(*ordered_[held])) == Attempt::done) {
            ++held;
        }
        for (std::size_t i = 0; i < held; ++i) {
            attempt == Attempt::done ? commit(*ordered_[i]) : rollBack(*ordered_[i]);
        }
        index = 0;
        return attempt;
    }

private:
    std::size_t count_;
    std::array<Handle*, maximumWaitCount> ordered_{};
};

/// Sleeps until one of the events that were not signalled changes. Returns at once when one changed meanwhile.
/// \param passSignalled whether signalled events are passed over: a wait for all has those already.
ErrorCode sleepOn(const Members& members, bool passSignalled, const Deadline& deadline, bool& inTime)
{
    std::array<futex_waitv, maximumWaitCount> waits{};
    unsigned count = 0;
    bool disturbed = false;
    for (std::size_t i = 0; i < members.count; ++i) {
        if (passSignalled && (members[i].state->load(std::memory_order_relaxed) & (signalled | reserved)) == signalled) {
            continue;
        }
        std::uint32_t expected = 0;
        if (!announceWaiter(members[i], expected)) {
            disturbed = true;
            break;
        }
        waits[count].val = expected;
        waits[count].uaddr = reinterpret_cast<std::uintptr_t>(futexOf(*members[i].state));
        waits[count].flags = FUTEX_32;
        ++count;
    }
    if (disturbed || count == 0) {
        inTime = !deadline.passed();
        return error::none;
    }
    if (syscall(SYS_futex_waitv, waits.data(), count, 0, deadline.moment(), CLOCK_MONOTONIC) >= 0 || errno == EAGAIN || errno == EINTR) {
        return error::none;
    }
    inTime = errno != ETIMEDOUT;
    // An old kernel, or a container that lets nobody call it.
    return !inTime ? error::none : errno == ENOSYS || errno == EPERM ? error::notSupported : fromErrno(errno);
}

template <typename Condition>
WaitResult wait(const Members& members, Condition condition, Milliseconds timeout, std::size_t& index)
{
    const Deadline deadline(monotonicNanoseconds(), timeout);
    bool inTime = timeout != 0;
    for (int naps = 0;;) {
        const Attempt attempt = condition.tryPass(index);
        if (attempt == Attempt::done) {
            return {WaitStatus::signalled, error::none};
        }
        if (!inTime && (attempt == Attempt::notSignalled || ++naps > lastNaps)) {
            return {WaitStatus::timedOut, error::none};
        }
        if (attempt == Attempt::held) {
            nap();
            inTime = !deadline.passed();
        } else if (const ErrorCode fault = sleepOn(members, Condition::needsAll, deadline, inTime); fault != error::none) {
            return {WaitStatus::failed, fault};
        }
    }
}

} // namespace

WaitResult waitEvents(Event* const* events, std::size_t count, bool all, Milliseconds timeout, std::size_t* index) noexcept
{
    const Members members{events, count};
    if (const ErrorCode fault = check(members, all); fault != error::none) {
        return {WaitStatus::failed, fault};
    }
    std::size_t found = 0;
    // Of one event all is any; but a wait for any also sees a signal that was reset at once.
    const WaitResult result = all && count > 1 ? wait(members, AllOf(members), timeout, found) : wait(members, AnyOf(members), timeout, found);
    if (result.status == WaitStatus::signalled) {
        *index = found;
    }
    return result;
}

} // namespace brvUtils::os
