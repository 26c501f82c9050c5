#include "brvUtils/os/linux/EventState.h"

#include "brvUtils/os/linux/ObjectTable.h"
#include "brvUtils/os/linux/SpinThenSleep.h"

namespace brvUtils::os::eventState {

namespace {

constexpr auto acquire = std::memory_order_acquire;
constexpr auto relaxed = std::memory_order_relaxed;

std::uint64_t ended(std::uint64_t state)
{
    return state & lowHalf & ~reserved;
}

/// Gives the reserving process time to go on; takes the reservation back if it has died.
void outlast(Handle& event, std::uint64_t state, int round)
{
    if (round < 100) {
        pauseProcessor();
        return;
    }
    const auto ticket = static_cast<std::uint32_t>(state >> 32);
    if (!ObjectTable::instance().isAlive(ticket)) {
        event.state->compare_exchange_strong(state, ended(state), relaxed);
        return;
    }
    const timespec shortly{0, 50'000};
    nanosleep(&shortly, nullptr);
}

} // namespace

std::uint64_t settled(Handle& event)
{
    std::uint64_t state = event.state->load(acquire);
    for (int round = 0; (state & reserved) != 0; ++round) {
        outlast(event, state, round);
        state = event.state->load(acquire);
    }
    return state;
}

bool tryPass(Handle& event)
{
    std::uint64_t state = settled(event);
    while ((state & signalled) != 0) {
        if (event.manualReset || event.state->compare_exchange_weak(state, state & ~(signalled | hasWaiters), acquire, relaxed)) {
            return true;
        }
        state = settled(event);
    }
    return false;
}

bool tryPassSince(Handle& event, std::uint64_t resetsBefore)
{
    return tryPass(event) || (event.manualReset && (event.state->load(acquire) & resets) != resetsBefore);
}

bool announceWaiter(Handle& event, std::uint32_t& expected)
{
    std::uint64_t state = event.state->load(relaxed);
    expected = static_cast<std::uint32_t>(state | hasWaiters);
    return (state & (signalled | reserved)) == 0
        && ((state & hasWaiters) != 0 || event.state->compare_exchange_strong(state, state | hasWaiters, relaxed));
}

bool tryReserve(Handle& event)
{
    const std::uint64_t holder = std::uint64_t{event.ticket} << 32;
    std::uint64_t state = event.state->load(relaxed);
    return (state & signalled) != 0 && (state & reserved) == 0
        && event.state->compare_exchange_strong(state, state | reserved | holder, acquire, relaxed);
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

} // namespace brvUtils::os::eventState
