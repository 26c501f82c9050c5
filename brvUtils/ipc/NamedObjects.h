#pragma once

#include "brvUtils/export.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

/// \file
/// What named objects live now: for programs that show the suite to people.
///
/// Who looks takes no lock and, on Linux, opens nothing: no module waits for it, no object lives longer by it, and nothing is
/// swept. It sees each object as it is at one moment, and different objects at different moments. On Windows the state of an
/// object can only be asked for through a handle, which is open for some microseconds. Any thread may look.

namespace brvUtils {

/// A process that has to do with an object.
struct ObjectUser
{
    std::uint32_t process = 0; ///< Its number; 0 where that is unknown.
    std::string program; ///< File name of its executable, cut at 39 bytes; empty where unknown.
};

/// One semaphore, event or segment.
struct NamedObject
{
    /// What it is.
    enum class Kind { semaphore, event, segment };

    /// What an object serves for, as far as its name tells.
    enum class Role {
        other,
        segment, ///< Of a composite segment: its memory.
        partLock, ///< Guards a part of a composite segment.
        initLock, ///< Under which a composite segment is made or checked.
        portTable, ///< Which process has which network port.
        portGuard ///< Guards that table.
    };

    /// Who took a semaphore that is taken.
    enum class Taker {
        unknown, ///< The system does not tell (Windows).
        nobody, ///< It was made taken.
        running,
        ended ///< Its taker has ended, or has closed all it had open, without freeing it.
    };

    Kind kind = Kind::semaphore; ///< What it is.
    Role role = Role::other; ///< What it serves for.
    std::string name; ///< As the system knows it: instance first, on Windows in the process's 8-bit code page.
    std::string segment; ///< Of the locks of a composite segment: its name, be it among the objects or on a card.
    int part = 0; ///< Of a partLock: the identifier of the part; -2 is the version record.

    bool stateKnown = false; ///< Otherwise the next three say nothing. Segments have none.
    bool taken = false; ///< Of a semaphore.
    bool set = false; ///< Of an event.
    bool manualReset = false; ///< Of an event.
    Taker taker = Taker::unknown; ///< Of a semaphore that is taken.
    ObjectUser lastTaker; ///< The same.

    std::uint64_t size = 0; ///< Of a segment, in bytes, as its maker asked for it; in whole pages on Windows.

    bool holdersKnown = false; ///< Whether `holders` are all; never on Windows.
    std::vector<ObjectUser> holders; ///< Processes that have it open.

    std::uint64_t stamp = 0; ///< For changesBetween.

    /// Whether the object is a lock of the library whose taker has ended, so that freeDeadLock may free it.
    bool isDeadLock() const { return role != Role::other && taken && taker == Taker::ended; }
};

/// All of them.
struct NamedObjects
{
    /// How looking went.
    enum class Outcome {
        seen,
        none, ///< Nobody has an object open here.
        refused, ///< The place is somebody else's, or open to others.
        otherVersion, ///< Made by another version of the library.
        damaged,
        unavailable ///< The system does not let this process look.
    };

    Outcome outcome = Outcome::seen; ///< How looking went. Only after seen there are objects.
    std::string place; ///< Where they live: a folder, or the system's directory of the session. UTF-8.
    std::string problem; ///< A sentence for people, behind which stands what to do; empty after seen and none.
    std::vector<NamedObject> objects; ///< By name.
    std::size_t leftOver = 0; ///< Places in the table that killed processes left. The next module that starts clears them.
};

/// The objects of this user, or of the name space that `STUDIO_IPC_NAMESPACE` names. On Windows those of the session; all
/// but the locks, segments and ports that their names tell are left out there, unless `all`, since other programs make theirs
/// in the same place. Takes a few milliseconds for a thousand objects.
BRVUTILS_API NamedObjects lookAtNamedObjects(bool all = true);

/// Whether the object may belong to that instance of the suite: its name begins with the instance's, or it is one that all
/// instances share. Without an instance everything may, since nothing marks where the name of an instance ends.
BRVUTILS_API bool belongsToInstance(const NamedObject& object, const std::string& instance);

/// How often the state of an object has changed at least between two looks. What goes there and back again between two looks
/// is not seen, but for resets of manual-reset events on Linux, which are counted.
BRVUTILS_API std::uint64_t changesBetween(const NamedObject& earlier, const NamedObject& later);

/// What stands in a segment.
struct SegmentGlance
{
    bool seen = false; ///< False when there is no such segment, or it may not be read.
    std::uint64_t fingerprint = 0; ///< Another value means other bytes. For comparisons within this process.
    std::int16_t firstTwoBytes = 0; ///< The layout version of a composite segment.
};

/// Reads all of a segment without its locks.
BRVUTILS_API SegmentGlance glanceAtSegment(const std::string& name);

/// What became of a lock whose taker has ended.
struct LockRepair
{
    bool freed = false; ///< False when somebody else was quicker, the lock is gone, or the system does not tell takers (Windows).
    ObjectUser taker; ///< Who had it.
};

/// Frees a lock of the library that a dead process has left taken, as the next module that asks would, by one
/// compare-and-swap: safe beside running modules. Opens the object for that moment, and so takes the lock of the table.
/// Semaphores of other roles belong to their modules, which may have left them taken on purpose: not freed.
BRVUTILS_API LockRepair freeDeadLock(const NamedObject& lock);

/// Whether the system tells who took a semaphore and who has an object open (Linux: yes, Windows: no).
BRVUTILS_API bool takersAreKnown();

} // namespace brvUtils
