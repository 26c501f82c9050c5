#pragma once

#include <cstddef>
#include <cstdint>

/// \file
/// The interface between this library and the driver of a reflective-memory card: what the driver's shared library exports
/// under undecorated names, as plain C functions. ShmVmic calls it, the software card in drivers/rfm2g offers it.

namespace brvUtils::rfm2g {

/// An open card; null before it is opened and after it was closed.
using Handle = void*;

/// Bytes in the card's memory.
using Offset = std::uint32_t;

/// The number of a card in its ring, 0 to 255.
using Node = std::uint16_t;

/// Addresses every node but the sender.
constexpr Node allNodes = 0xFFFF;

/// What a function answers.
enum class Status : std::int32_t {
    success = 0,
    notImplemented = 1,
    driverError = 2,
    timedOut = 3,
    lowMemory = 4,
    osError = 6,
    eventInUse = 7,
    notSupported = 8,
    notOpen = 9,
    noBoard = 10,
    badParameter1 = 11, ///< Those up to parameter 9 follow.
    badParameter2 = 12,
    badParameter3 = 13,
    badParameter4 = 14,
    outOfRange = 20, ///< Of the card's memory.
    linkTestFail = 22, ///< The ring is open.
    readError = 27,
    writeError = 28,
    notEnabled = 31,
    alreadyEnabled = 32,
    nullDescriptor = 35, ///< The handle is null.
    ownNode = 41 ///< A card never interrupts itself.
};

/// What a card can tell. Only those up to user4 can be sent; the others are found by the card itself.
enum class Event : std::int32_t {
    reset = 0,
    user1 = 1,
    user2 = 2,
    user3 = 3,
    user4 = 4,
    badData = 5,
    fifoFull = 6,
    roguePacket = 7,
    fifoAlmostFull = 8,
    syncLoss = 9,
    memoryWriteInhibited = 10,
    parityError = 11
};

/// What a callback is told.
struct EventInfo
{
    std::uint32_t data; ///< The word that was sent along.
    Event event; ///< Which one it was.
    std::uint32_t timeout; ///< Milliseconds; of waits alone.
    Node node; ///< The sender.
    void* driverOwn; ///< The driver's.
};
static_assert(offsetof(EventInfo, event) == 4 && offsetof(EventInfo, timeout) == 8 && offsetof(EventInfo, node) == 12);
static_assert(sizeof(void*) != 8 || (offsetof(EventInfo, driverOwn) == 16 && sizeof(EventInfo) == 24));

/// Called on a thread of the driver.
using Callback = void (*)(Handle, EventInfo*);

/// The types of the functions; the texts are their names in the driver's library.
/// @{
using Open = Status(char* device, Handle* handle); ///< "RFM2gOpen"
using Close = Status(Handle* handle); ///< "RFM2gClose"; sets the handle to null.
using NodeId = Status(Handle, Node* node); ///< "RFM2gNodeID"
using Size = Status(Handle, Offset* bytes); ///< "RFM2gSize": of the whole memory.
using First = Status(Handle, Offset* offset); ///< "RFM2gFirst": from which on memory may be used.
using Read = Status(Handle, Offset, void* to, Offset length); ///< "RFM2gRead"
using Write = Status(Handle, Offset, void* from, Offset length); ///< "RFM2gWrite"
using EnableEvent = Status(Handle, Event); ///< "RFM2gEnableEvent": none comes before.
using SendEvent = Status(Handle, Node to, Event, std::uint32_t data); ///< "RFM2gSendEvent"
using EnableEventCallback = Status(Handle, Event, Callback); ///< "RFM2gEnableEventCallback": one per event and handle.
using ClearEvent = Status(Handle, Event); ///< "RFM2gClearEvent": drops those of that kind that wait.
using ErrorMsg = char*(Status); ///< "RFM2gErrorMsg": static text, null for a status that the driver does not know.
using CheckRingCont = Status(Handle); ///< "RFM2gCheckRingCont": success when the ring is closed.
/// @}

} // namespace brvUtils::rfm2g
