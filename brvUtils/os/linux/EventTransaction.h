#pragma once

#include "brvUtils/os/linux/Handle.h"

namespace brvUtils::os {

/// A wait for all events in the act of taking their signals, in one step for everybody else.
///
/// It reserves one signal after the other by writing its id beside it, decides by one compare-and-swap whether it takes
/// them all, and takes or leaves each. Whoever meets a reservation can end it: it follows the decision where there is one,
/// and otherwise aborts the transaction, whose owner tries again. So nobody waits for an owner that is slow, stopped or
/// dead, and of one that was killed either all signals are taken or none.
///
/// Each process has one transaction at a time, in its record of the table:
///
///     bits 0..1    phase: idle, open, taken, aborted
///     bits 2..23   sequence number
///
/// The id in the upper half of an event's state word is the number of the record (bits 22..31) and the sequence number.
/// Sequence numbers go round after four million: who is stopped between two instructions for exactly as many takes one
/// transaction for another.
class EventTransaction
{
public:
    /// Takes the signals of all these events, which are open and stand in the order of their slots, each once; or none
    /// if one is not signalled.
    static bool takeAll(Handle* const* events, std::size_t count);

    /// Ends the reservation that was seen in the event's state, after giving its owner some microseconds to do so.
    static void endReservation(Handle& event, std::uint64_t seen);

    /// Ends it at once, but only if it is decided. \return whether it is.
    static bool followDecision(Handle& event, std::uint64_t seen);

    /// Ends the transaction that a process has left in its record, with all its reservations.
    static void endAbandoned(Table& table, std::uint32_t record);

    /// For who only looks: the number of the record that an id names, and whether the transaction there takes for that id.
    static std::uint32_t recordOf(std::uint32_t id);
    static bool hasTaken(const std::atomic<std::uint32_t>& transaction, std::uint32_t id);

    /// Opens the transaction of the process that opened the event.
    explicit EventTransaction(const Handle& event);

    /// Reserves the signal of an event; false if there is none.
    bool reserve(Handle& event) const;

    /// Whether the transaction takes what it has reserved: false when somebody has aborted it.
    bool decide();

    /// Takes or leaves the signal of an event that was reserved.
    void finish(Handle& event) const;

    /// Makes room for the next one.
    void close();

private:
    Table& table_;
    std::uint32_t id_;
};

} // namespace brvUtils::os
