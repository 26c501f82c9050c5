#pragma once

#include "brvUtils/os/linux/Futex.h"

#include <cstdint>

namespace brvUtils::os {

/// The state of a semaphore: the low half of its state word, on which the kernel waits.
///
///     bits 0..15   ticket of the taker, 0 when it is free: taking and telling who took is one step
///     bit 31       somebody sleeps, or is about to
///
/// There are two ways to release. The plain way writes the taker's bits alone and then looks for sleepers, without the
/// interlocked instruction that is half the price of a lock. A sleeper that announces itself between the two would be
/// overlooked while the write is still on its way to memory; therefore it runs a barrier everywhere before it sleeps. One
/// who is killed between the two wakes nobody; therefore sleepers look for themselves once a second.
///
/// The word is accessed in pieces of several sizes, which the language does not define and compilers and processors do.
class SemaphoreWord
{
public:
    using Value = std::uint32_t;
    static constexpr Value takerBits = 0xFFFF;
    static constexpr Value hasSleepers = 0x80000000;

    explicit SemaphoreWord(StateWord& state)
        : word_(futexOf(state))
    {
    }

    Value load() const { return __atomic_load_n(word_, __ATOMIC_ACQUIRE); }

    /// Changes exactly `expected`, which otherwise becomes what was found.
    bool change(Value& expected, Value desired) const
    {
        return __atomic_compare_exchange_n(word_, &expected, desired, false, __ATOMIC_ACQ_REL, __ATOMIC_RELAXED);
    }

    /// Takes it if it is free.
    bool tryTake(Value ticket) const
    {
        Value seen = 0;
        // A flag may have stayed behind.
        return change(seen, ticket) || ((seen & takerBits) == 0 && change(seen, seen | ticket));
    }

    /// The plain release. \return whether there are sleepers to be woken now.
    bool clearTaker() const
    {
        __atomic_store_n(reinterpret_cast<std::uint16_t*>(word_), std::uint16_t{0}, __ATOMIC_RELEASE);
        __atomic_signal_fence(__ATOMIC_SEQ_CST); // the sleeper's barrier does the rest
        return (__atomic_load_n(reinterpret_cast<std::uint8_t*>(word_) + 3, __ATOMIC_RELAXED) & (hasSleepers >> 24)) != 0;
    }

private:
    std::uint32_t* word_;
};

} // namespace brvUtils::os
