#pragma once

#include "brvUtils/os/linux/Handle.h"

/// The state word of an event and the steps on it. None of them blocks.
///
///     bit 0        signalled
///     bit 1        somebody sleeps
///     bit 2        reserved: a wait for all is about to take the signal, or to leave it (EventTransaction.h)
///     bits 3..31   how often a signal was reset, so that a waiter sees a set that was reset before it looked
///     bits 32..63  id of the wait that reserved
namespace brvUtils::os::eventState {

constexpr std::uint64_t signalled = 1;
constexpr std::uint64_t hasWaiters = 2;
constexpr std::uint64_t reserved = 4; ///< Only beside `signalled`.
constexpr std::uint64_t oneReset = 8;
constexpr std::uint64_t resets = 0xFFFFFFF8;
constexpr std::uint64_t lowHalf = 0xFFFFFFFF;

/// Lets the caller through if the event is signalled; takes the signal of an auto-reset event.
bool tryPass(Handle& event);

/// As tryPass; a manual-reset event also lets through when it was reset since it had so many resets: it was set then.
bool tryPassSince(Handle& event, std::uint64_t resetsBefore);

/// Gives the signal and wakes who sleeps.
void set(Handle& event);

/// Takes the signal back, if there is one.
void reset(Handle& event);

/// Says that somebody is about to sleep. False when the event is signalled or changed meanwhile; otherwise `expected` is
/// the low half to sleep on.
bool announceWaiter(Handle& event, std::uint32_t& expected);

} // namespace brvUtils::os::eventState
