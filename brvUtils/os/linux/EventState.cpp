#include "brvUtils/os/linux/EventState.h"

#include "brvUtils/os/linux/EventTransaction.h"

namespace brvUtils::os::eventState {

namespace {

constexpr auto acquire = std::memory_order_acquire;
constexpr auto relaxed = std::memory_order_relaxed;

/// The state, without a reservation as far as nobody reserves again at once.
std::uint64_t settled(Handle& event)
{
    const std::uint64_t state = event.state->load(acquire);
    if ((state & reserved) == 0) {
        return state;
    }
    EventTransaction::endReservation(event, state);
    return event.state->load(acquire);
}

} // namespace

bool tryPass(Handle& event)
{
    if (event.manualReset) {
        return (event.state->load(acquire) & signalled) != 0;
    }
    for (;;) {
        std::uint64_t state = settled(event);
        if ((state & signalled) == 0) {
            return false;
        }
        if ((state & reserved) == 0 && event.state->compare_exchange_weak(state, state & ~(signalled | hasWaiters), acquire, relaxed)) {
            return true;
        }
    }
}

bool tryPassSince(Handle& event, std::uint64_t resetsBefore)
{
    return tryPass(event) || (event.manualReset && (event.state->load(acquire) & resets) != resetsBefore);
}

void set(Handle& event)
{
    std::uint64_t state = event.state->load(relaxed);
    // Also where the event is signalled already the word is written: whoever takes that signal must see what the caller
    // wrote before.
    while ((state & hasWaiters) == 0 || (state & signalled) != 0) {
        // A signal that is as good as taken is not this one.
        if ((state & reserved) != 0 && EventTransaction::followDecision(event, state)) {
            state = event.state->load(relaxed);
        } else if (event.state->compare_exchange_weak(state, state | signalled, std::memory_order_acq_rel, relaxed)) {
            return;
        }
    }
    futexChangeAndWakeAll(*event.state, FUTEX_OP_OR, signalled);
}

void reset(Handle& event)
{
    for (;;) {
        std::uint64_t state = settled(event);
        if ((state & signalled) == 0) {
            return;
        }
        const std::uint64_t next = ((state & ~(signalled | hasWaiters)) + oneReset) & lowHalf;
        if ((state & reserved) == 0 && event.state->compare_exchange_weak(state, next, std::memory_order_acq_rel, relaxed)) {
            return;
        }
    }
}

bool announceWaiter(Handle& event, std::uint32_t& expected)
{
    std::uint64_t state = event.state->load(relaxed);
    expected = static_cast<std::uint32_t>(state | hasWaiters);
    return (state & signalled) == 0 && ((state & hasWaiters) != 0 || event.state->compare_exchange_strong(state, state | hasWaiters, relaxed));
}

} // namespace brvUtils::os::eventState
