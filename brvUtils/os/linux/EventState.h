#pragma once

#include "brvUtils/os/linux/Handle.h"

/// The state word of an event and the steps on it. None of them blocks.
///
///     bit 0        signalled
///     bit 1        somebody sleeps
///     bit 2        reserved: a wait for all is about to take the signal, or to leave it
///     bits 3..31   how often a signal was reset, so that a waiter sees a set that was reset before it looked
///     bits 32..63  ticket of the process that reserved
///
/// A reservation lasts some hundred nanoseconds; everybody but a setter waits for its end. One whose process has died is
/// taken back.
namespace brvUtils::os::eventState {

constexpr std::uint64_t signalled = 1;
constexpr std::uint64_t hasWaiters = 2;
constexpr std::uint64_t reserved = 4;
constexpr std::uint64_t oneReset = 8;
constexpr std::uint64_t resets = 0xFFFFFFF8;
constexpr std::uint64_t lowHalf = 0xFFFFFFFF;

enum class Attempt {
    done,
    notSignalled,
    held ///< Reserved by another, who is slow: to be tried again after a nap().
};

/// Lets the caller through if the event is signalled; takes the signal of an auto-reset event.
Attempt tryPass(Handle& event);

/// As tryPass; of a manual-reset event also done when it was reset since it had so many resets: it was set then.
Attempt tryPassSince(Handle& event, std::uint64_t resetsBefore);

/// Takes the signal back, if there is one. Never notSignalled.
Attempt tryReset(Handle& event);

/// Holds a signalled event for a wait for all.
Attempt tryReserve(Handle& event);

/// Ends a reservation of this process: takes the signal of an auto-reset event, or leaves it.
void commit(Handle& event);
void rollBack(Handle& event);

/// Says that somebody is about to sleep. False when the event is signalled or changed meanwhile; otherwise `expected` is
/// the low half to sleep on.
bool announceWaiter(Handle& event, std::uint32_t& expected);

/// Gives a process that holds a reservation time to go on.
void nap();

/// How many naps a wait whose time is over still grants: an event that is signalled must not look as if it were not.
constexpr int lastNaps = 40;

} // namespace brvUtils::os::eventState
