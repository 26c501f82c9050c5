#pragma once

#include "brvUtils/os/Wait.h"

#include <cstddef>

namespace brvUtils::os {

/// An open event (opaque; null is a failed opening). An auto-reset event lets one waiter through per set; a manual-reset
/// event lets everybody through until it is reset, and everybody who was waiting when it was set, however soon the reset
/// follows. Two sets before the woken waiter has run may count as one.
struct Event;

/// What openEvent found.
struct EventOpening
{
    Event* event; ///< Null when it failed.
    bool created; ///< Whether this call made the object.
    ErrorCode error; ///< Of a failed opening; 0 otherwise.
};

/// Opens the event of that name, or makes it, in one step. Only the creator fixes the kind of reset and the first state.
/// Names and errors as for openSemaphore, but the name must not be null (error::invalidParameter).
EventOpening openEvent(const char* name, bool manualReset, bool initiallySet) noexcept;

/// Gives the handle back. The object is gone with the last handle of the last process.
ErrorCode closeEvent(Event* event) noexcept;

/// Signals the event. No effect on one that is signalled.
ErrorCode setEvent(Event* event) noexcept;

/// Takes the signal back. No effect on an event that is not signalled.
ErrorCode resetEvent(Event* event) noexcept;

/// Waits until the event is signalled, at most that long; takes the signal of an auto-reset event.
WaitResult waitEvent(Event* event, Milliseconds timeout) noexcept;

/// The largest number of events in one waitEvents.
constexpr std::size_t maximumWaitCount = 64;

/// Waits for the first signalled event of the list, or for all at once.
/// \param index where the place of the event in the list goes: for the wait for any, the first signalled one in list
///        order; for the wait for all, 0. Untouched unless the result is signalled.
/// A wait for all of several looks at the present states: it takes nothing until it can take everything in one step.
/// Errors: invalidHandle; invalidParameter for no events, more than maximumWaitCount or, in a wait for all, an event that
/// stands in the list twice; notSupported for several events on a Linux kernel before 5.16.
WaitResult waitEvents(Event* const* events, std::size_t count, bool all, Milliseconds timeout, std::size_t* index) noexcept;

} // namespace brvUtils::os
