#include "brvUtils/os/linux/EventState.h"

#include "brvUtils/os/linux/ObjectTable.h"
#include "brvUtils/os/linux/SpinThenSleep.h"

namespace brvUtils::os::eventState {

namespace {

constexpr auto acquire = std::memory_order_acquire;
constexpr auto relaxed = std::memory_order_relaxed;

/// The state once no reservation stands, or one that has lasted too long.
std::uint64_t settled(Handle& event)
{
    constexpr int patience = 200; // pauses: several times what a reservation takes
    std::uint64_t state = event.state->load(acquire);
    for (int round = 0; (state & reserved) != 0 && round < patience; ++round) {
        pauseProcessor();
        state = event.state->load(acquire);
    }
    if ((state & reserved) != 0 && !ObjectTable::instance().isAlive(static_cast<std::uint32_t>(state >> 32))) {
        const std::uint64_t ended = state & lowHalf & ~reserved;
        if (event.state->compare_exchange_strong(state, ended, acquire, acquire)) {
            return ended;
        }
    }
    return state;
}

} // namespace

Attempt tryPass(Handle& event)
{
    for (;;) {
        std::uint64_t state = settled(event);
        if ((state & signalled) == 0) {
            return Attempt::notSignalled;
        }
        if ((state & reserved) != 0) {
            return Attempt::held;
        }
        if (event.manualReset || event.state->compare_exchange_weak(state, state & ~(signalled | hasWaiters), acquire, relaxed)) {
            return Attempt::done;
        }
    }
}

Attempt tryPassSince(Handle& event, std::uint64_t resetsBefore)
{
    const Attempt attempt = tryPass(event);
    const bool wasSet = event.manualReset && (event.state->load(acquire) & resets) != resetsBefore;
    return wasSet ? Attempt::done : attempt;
}

Attempt tryReset(Handle& event)
{
    for (;;) {
        std::uint64_t state = settled(event);
        if ((state & reserved) != 0) {
            return Attempt::held;
        }
        const std::uint64_t next = ((state & ~(signalled | hasWaiters)) + oneReset) & lowHalf;
        if ((state & signalled) == 0 || event.state->compare_exchange_weak(state, next, std::memory_order_acq_rel, relaxed)) {
            return Attempt::done;
        }
    }
}

Attempt tryReserve(Handle& event)
{
    const std::uint64_t holder = std::uint64_t{event.ticket} << 32;
    for (;;) {
        std::uint64_t state = settled(event);
        if ((state & signalled) == 0) {
            return Attempt::notSignalled;
        }
        if ((state & reserved) != 0) {
            return Attempt::held;
        }
        if (event.state->compare_exchange_weak(state, state | reserved | holder, acquire, relaxed)) {
            return Attempt::done;
        }
    }
}

void commit(Handle& event)
{
    const std::uint64_t taken = event.manualReset ? 0 : signalled | hasWaiters;
    event.state->fetch_and(lowHalf & ~reserved & ~taken, std::memory_order_acq_rel);
}

void rollBack(Handle& event)
{
    event.state->fetch_and(lowHalf & ~reserved, std::memory_order_release);
}

bool announceWaiter(Handle& event, std::uint32_t& expected)
{
    std::uint64_t state = event.state->load(relaxed);
    expected = static_cast<std::uint32_t>(state | hasWaiters);
    return (state & (signalled | reserved)) == 0
        && ((state & hasWaiters) != 0 || event.state->compare_exchange_strong(state, state | hasWaiters, relaxed));
}

void nap()
{
    const timespec shortly{0, 50'000};
    nanosleep(&shortly, nullptr);
}

} // namespace brvUtils::os::eventState
