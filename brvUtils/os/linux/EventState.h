#pragma once

#include "brvUtils/os/linux/Handle.h"

/// The state word of an event and the steps on it.
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

/// The state once no reservation stands.
std::uint64_t settled(Handle& event);

/// Lets the caller through if the event is signalled; takes the signal of an auto-reset event.
bool tryPass(Handle& event);

/// As tryPass; of a manual-reset event also true when it was set since it had so many resets.
bool tryPassSince(Handle& event, std::uint64_t resetsBefore);

/// Says that somebody is about to sleep. False when the event is signalled or changed meanwhile; otherwise `expected` is
/// the low half to sleep on.
bool announceWaiter(Handle& event, std::uint32_t& expected);

/// Holds a signalled event for a wait for all. False when it is not signalled or held by another.
bool tryReserve(Handle& event);

/// Ends a reservation of this process: takes the signal of an auto-reset event, or leaves it.
void commit(Handle& event);
void rollBack(Handle& event);

} // namespace brvUtils::os::eventState
