#include "brvUtils/os/linux/EventTransaction.h"

#include "brvUtils/os/linux/EventState.h"
#include "brvUtils/os/linux/SpinThenSleep.h"

#include <algorithm>

namespace brvUtils::os {

using namespace eventState;

namespace {

constexpr int patience = 200; // pauses: on common processors some microseconds, more than a transaction takes

enum Phase : std::uint32_t { idle, open, taken, aborted };
constexpr std::uint32_t phaseBits = 3;
constexpr std::uint32_t sequenceBits = 0x3FFFFF;
constexpr int recordShift = 22;

using Transaction = std::atomic<std::uint32_t>;

Transaction& transactionOf(Table& table, std::uint32_t id)
{
    return table.processes[id >> recordShift].transaction;
}

std::uint32_t valueOf(std::uint32_t id, Phase phase)
{
    return (id & sequenceBits) << 2 | phase;
}

bool isOf(std::uint64_t state, std::uint32_t id)
{
    return (state & reserved) != 0 && state >> 32 == id;
}

/// The phase in which the transaction ended, or is. One that has gone on with other numbers has left nothing to take.
Phase phaseOf(Table& table, std::uint32_t id)
{
    const std::uint32_t value = transactionOf(table, id).load(std::memory_order_acquire);
    return value >> 2 == (id & sequenceBits) ? static_cast<Phase>(value & phaseBits) : aborted;
}

/// The decision: of a transaction that is still open, that it takes nothing.
Phase decisionOf(Table& table, std::uint32_t id)
{
    std::uint32_t expected = valueOf(id, open);
    transactionOf(table, id).compare_exchange_strong(expected, valueOf(id, aborted), std::memory_order_acq_rel);
    return phaseOf(table, id);
}

/// Changes exactly the state that was seen, and so that reservation and no later one.
void follow(StateWord& word, bool manualReset, std::uint64_t seen, Phase decision)
{
    const std::uint64_t signal = decision == taken && !manualReset ? signalled | hasWaiters : 0;
    word.compare_exchange_strong(seen, seen & lowHalf & ~reserved & ~signal, std::memory_order_acq_rel);
}

} // namespace

std::uint32_t EventTransaction::recordOf(std::uint32_t id)
{
    return id >> recordShift;
}

bool EventTransaction::hasTaken(const std::atomic<std::uint32_t>& transaction, std::uint32_t id)
{
    return transaction.load(std::memory_order_relaxed) == valueOf(id, taken);
}

EventTransaction::EventTransaction(const Handle& event)
    : table_(*event.table)
{
    const std::uint32_t record = event.ticket % processCapacity;
    Transaction& transaction = table_.processes[record].transaction;
    for (int round = 0;; ++round) {
        std::uint32_t seen = transaction.load(std::memory_order_relaxed);
        const std::uint32_t next = ((seen >> 2) + 1) & sequenceBits;
        id_ = record << recordShift | std::max(next, 1u); // 0 is in the state words of semaphores
        if ((seen & phaseBits) == idle && transaction.compare_exchange_weak(seen, valueOf(id_, open), std::memory_order_acq_rel)) {
            return;
        }
        // Another thread is at it, or a forked child that shares the record.
        if (round < patience) {
            pauseProcessor();
        } else {
            endAbandoned(table_, record);
            round = 0;
        }
    }
}

bool EventTransaction::reserve(Handle& event) const
{
    std::uint64_t state = event.state->load(std::memory_order_acquire);
    while ((state & signalled) != 0) {
        if ((state & reserved) != 0) {
            endReservation(event, state);
            state = event.state->load(std::memory_order_acquire);
        } else if (event.state->compare_exchange_weak(state, state | reserved | std::uint64_t{id_} << 32, std::memory_order_acq_rel)) {
            return true;
        }
    }
    return false;
}

bool EventTransaction::decide()
{
    std::uint32_t expected = valueOf(id_, open);
    return transactionOf(table_, id_).compare_exchange_strong(expected, valueOf(id_, taken), std::memory_order_acq_rel);
}

void EventTransaction::finish(Handle& event) const
{
    const Phase decision = decisionOf(table_, id_);
    std::uint64_t state;
    while (isOf(state = event.state->load(std::memory_order_acquire), id_)) {
        follow(*event.state, event.manualReset, state, decision);
    }
}

void EventTransaction::close()
{
    std::uint32_t value = transactionOf(table_, id_).load(std::memory_order_relaxed);
    if (value >> 2 == (id_ & sequenceBits)) {
        transactionOf(table_, id_).compare_exchange_strong(value, valueOf(id_, idle), std::memory_order_release);
    }
}

bool EventTransaction::takeAll(Handle* const* events, std::size_t count)
{
    for (;;) {
        // Mostly one is missing: seen without touching the others.
        for (std::size_t i = 0; i < count; ++i) {
            if ((events[i]->state->load(std::memory_order_acquire) & signalled) == 0) {
                return false;
            }
        }
        EventTransaction transaction(*events[0]);
        std::size_t held = 0;
        while (held < count && transaction.reserve(*events[held])) {
            ++held;
        }
        const bool complete = held == count && transaction.decide();
        for (std::size_t i = 0; i < held; ++i) {
            transaction.finish(*events[i]);
        }
        transaction.close();
        if (complete) {
            return true;
        }
    }
}

void EventTransaction::endReservation(Handle& event, std::uint64_t seen)
{
    const auto id = static_cast<std::uint32_t>(seen >> 32);
    for (int round = 0; round < patience && phaseOf(*event.table, id) == open; ++round) {
        pauseProcessor();
    }
    const std::uint64_t state = event.state->load(std::memory_order_acquire);
    if (isOf(state, id)) {
        follow(*event.state, event.manualReset, state, decisionOf(*event.table, id));
    }
}

bool EventTransaction::followDecision(Handle& event, std::uint64_t seen)
{
    const Phase phase = phaseOf(*event.table, static_cast<std::uint32_t>(seen >> 32));
    if (phase == open) {
        return false;
    }
    follow(*event.state, event.manualReset, seen, phase);
    return true;
}

void EventTransaction::endAbandoned(Table& table, std::uint32_t record)
{
    Transaction& transaction = table.processes[record].transaction;
    std::uint32_t value = transaction.load(std::memory_order_acquire);
    if ((value & phaseBits) == idle) {
        return;
    }
    const std::uint32_t id = record << recordShift | value >> 2;
    const Phase decision = decisionOf(table, id);
    for (std::uint32_t number = 0; number < slotCapacity; ++number) {
        if (table.index[number].load(std::memory_order_acquire) == 0) {
            continue;
        }
        Slot& slot = table.slots[number];
        // Only an event that somebody has open can be reserved, and so nobody changes its slot.
        if (const std::uint64_t state = slot.state.load(std::memory_order_acquire); isOf(state, id)) {
            follow(slot.state, slot.manualReset != 0, state, decision);
        }
    }
    value = valueOf(id, decision);
    transaction.compare_exchange_strong(value, valueOf(id, idle), std::memory_order_release);
}

} // namespace brvUtils::os
