#include "brvUtils/os/Event.h"

#include "brvUtils/os/linux/Deadline.h"
#include "brvUtils/os/linux/Errno.h"
#include "brvUtils/os/linux/EventState.h"
#include "brvUtils/os/linux/EventTransaction.h"

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
            if (members[other].slot == event->slot) {
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

    bool tryPass(std::size_t& index)
    {
        for (std::size_t i = 0; i < members_.count; ++i) {
            if (tryPassSince(members_[i], resetsBefore_[i])) {
                index = i;
                return true;
            }
        }
        return false;
    }

private:
    const Members& members_;
    std::array<std::uint64_t, maximumWaitCount> resetsBefore_{};
};

/// All of them in one step.
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

    bool tryPass(std::size_t& index)
    {
        index = 0;
        return EventTransaction::takeAll(ordered_.data(), count_);
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
        if (passSignalled && (members[i].state->load(std::memory_order_relaxed) & signalled) != 0) {
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
    for (bool inTime = timeout != 0;;) {
        if (condition.tryPass(index)) {
            return {WaitStatus::signalled, error::none};
        }
        if (!inTime) {
            return {WaitStatus::timedOut, error::none};
        }
        if (const ErrorCode fault = sleepOn(members, Condition::needsAll, deadline, inTime); fault != error::none) {
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
    const WaitResult result = count == 1 ? waitEvent(events[0], timeout)
        : all                            ? wait(members, AllOf(members), timeout, found)
                                         : wait(members, AnyOf(members), timeout, found);
    if (result.status == WaitStatus::signalled) {
        *index = found;
    }
    return result;
}

} // namespace brvUtils::os
