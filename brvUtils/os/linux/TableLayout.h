#pragma once

#include "brvUtils/os/linux/Futex.h"

#include <cstddef>

/// The bytes of the table file, shared by all processes of a name space, and the meaning of the record locks on it.
///
///     header        64 bytes
///     index         8 bytes per slot: 0 for a free slot, else the hash of its name
///     processes     64 bytes per process that is attached or was
///     slots         384 bytes each: one cache line of state, then the name
///
/// Nothing here tells whether an object or a process is alive. The kernel does: each process holds record locks (of its
/// open file description) on the bytes of the slots it has open and of its own ticket, and they are gone when it dies.
/// Everything but what is atomic changes only under the lock of the table.
namespace brvUtils::os {

constexpr const char* tableName = "brvUtils-table"; // a folder that users have named may hold other files
constexpr char tableMagic[8] = {'b', 'r', 'v', 't', 'a', 'b', 'l', 'e'};
constexpr std::uint32_t tableVersion = 1;
constexpr std::uint32_t slotCapacity = 32768;
constexpr std::uint32_t processCapacity = 1024;
constexpr std::size_t nameCapacity = 320;
constexpr std::size_t nameLimit = 259; ///< As on Windows: 260 with the terminator.

enum class Kind : std::uint32_t { closed, semaphore, event, segment };

struct alignas(64) TableHeader
{
    char magic[8]; ///< Written last.
    std::uint32_t version;
    std::uint32_t slotsReserved; ///< Slots whose memory is reserved; the rest must not be touched.
    std::uint32_t slotsUsed; ///< No slot in use at or behind this one.
    std::uint32_t lastTicket;
    std::uint32_t ticketsCameAround; ///< Whether the last ticket was given out once, so that some come again.
};

struct ProcessIdentity
{
    std::uint32_t ticket;
    std::uint32_t processId;
    std::uint64_t startTime; ///< In clock ticks since the computer started.
    char program[40];
};

struct alignas(64) ProcessRecord
{
    ProcessIdentity process;
    std::atomic<std::uint32_t> transaction; ///< Its wait for all events, see EventTransaction.h. Goes on with the next process.
};

struct alignas(64) Slot
{
    StateWord state;
    std::uint64_t size; ///< Of a segment, in bytes.
    Kind kind;
    std::uint32_t manualReset; ///< Of an event.
    std::atomic<std::uint32_t> plainReleases; ///< Of a semaphore: whether somebody releases it as a lock (SemaphoreWord.h).
    alignas(64) char name[nameCapacity]; ///< Filled up with zeros.
};

struct Table
{
    TableHeader header;
    std::atomic<std::uint64_t> index[slotCapacity];
    ProcessRecord processes[processCapacity];
    Slot slots[slotCapacity];
};

static_assert(sizeof(TableHeader) == 64 && sizeof(ProcessRecord) == 64 && sizeof(Slot) == 384);
static_assert(offsetof(Table, index) == 64);
static_assert(offsetof(Table, processes) == 64 + 8 * slotCapacity);
static_assert(offsetof(Table, slots) == offsetof(Table, processes) + 64 * processCapacity);

/// Bytes that carry the record locks. Those of tickets are the same in every version of the table, so that any version
/// sees whether somebody is attached.
constexpr std::int64_t slotBytes = 0; ///< + number of the slot: shared, by each process that has it open.
constexpr std::int64_t tableByte = std::int64_t{1} << 40; ///< Exclusive: the lock of the table.
constexpr std::int64_t ticketBytes = std::int64_t{1} << 41; ///< + ticket: exclusive, by the process of that ticket.

/// Tickets stand for processes in the state words of semaphores. They go round, so that a ticket comes again only after
/// all others, and then only if no state word holds it any more; a process that leaves and comes back keeps its own.
/// The record of a process is the one numbered ticket % processCapacity.
constexpr std::uint32_t nobody = 0xFFFF; ///< Taken from the start, by no process.
constexpr std::uint32_t minimumTicket = processCapacity;
constexpr std::uint32_t maximumTicket = 63 * processCapacity - 1;
static_assert(maximumTicket < nobody);

} // namespace brvUtils::os
