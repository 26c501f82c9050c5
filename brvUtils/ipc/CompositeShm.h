#pragma once

#include "brvUtils/ipc/IShm.h"
#include "brvUtils/ipc/ISemaphore.h"
#include "brvUtils/ipc/ShmVersion.h"

#include <cstddef>
#include <memory>

namespace brvUtils {

class PartTable;
struct PartPlace;

/// One named segment cut into parts, each guarded by a semaphore of its own, so that programs that use different parts
/// never wait for each other.
///
/// A module derives its segment class, holds its parts as members and registers them with addPart in the constructor:
/// every program the same parts, of the same sizes, in the same order. Offsets are not stored in the segment; the layout
/// version, which is part of the segment's name and its first two bytes, is the only check.
///
///     offset 0   version of the layout, signed 16 bits
///     offset 2   the parts, in the order of registration
///
/// Once all parts are registered, put, get and the accesses may run on several threads. The parts are not owned.
///
/// When a process dies inside put or get, its lock is freed on Linux by the next one that asks: that one call writes a
/// line to the error stream and returns false, since the part may be half written.
class BRVUTILS_API CompositeShm
{
public:
    /// Makes or opens the segment "<name>_<version>_<user>"; blocks while another process does the same. Says on the
    /// standard output what it does.
    /// \param shmFactory makes the segment: newShm where the configuration decides, ShmWin32::New for memory of this computer.
    /// \param semaphoreFactory makes the locks: SemaphoreWin32::New does. \param name not null.
    /// \param size bytes of all parts together.
    /// \param version of the layout. \param shmVersion appended to the segment's name by the factory.
    /// \throw ConfigurationError when the segment holds another layout version (the text ends with "Program will end.\n"),
    ///        or cannot be made.
    CompositeShm(ShmFactory shmFactory, SemaphoreFactory semaphoreFactory, char const* name, size_t size, short version,
        short shmVersion);

    /// Closes the segment, then the locks. The segment lives on while another process has it open.
    virtual ~CompositeShm();

    CompositeShm(const CompositeShm&) = delete;
    CompositeShm& operator=(const CompositeShm&) = delete;

protected:
    /// Registers the next part; at most 255. The process that made the segment also writes the part's value to it.
    /// \return false, with lines on the standard output, when there is no more room.
    bool addPart(ShmAble& part);

    /// Writes the part's value to the segment.
    /// \param part registered. \param timeout for its lock, in seconds as for ISemaphore::ask.
    /// \return false when the part is not registered or its lock could not be had; nothing is written then.
    bool put(ShmAble& part, double timeout);

    /// Reads the part's value from the segment.
    /// \param part registered. \param timeout for its lock, in seconds as for ISemaphore::ask.
    /// \return false when the part is not registered or its lock could not be had. True also when the segment refused the
    ///         read (IShm::beforeRead); the value is then unchanged.
    bool get(ShmAble& part, double timeout);

    /// As put, for a caller that holds the part through getAccess. `timeout` is ignored.
    bool putWithoutProtect(ShmAble& part, double timeout);
    /// As get, in the same way.
    bool getWithoutProtect(ShmAble& part, double timeout);

    /// Takes the part's lock, to change the part in several steps. \param part registered. \param timeout in seconds.
    /// \return whether it was had.
    bool getAccess(ShmAble& part, double timeout);

    /// Gives the part's lock back. \return false when the part is not registered or was not locked.
    bool releaseAccess(ShmAble& part);

    /// Takes a part out of a segment that is about to be discarded; no part may be registered afterwards. The segment's
    /// bytes stay, and so does getNbParts(). The version record cannot be removed.
    void remove(ShmAble& part);

    /// Registered parts, the version record included.
    int getNbParts() const;

    /// The first byte of the segment as mapped in this process.
    void* getShmPtr() const;

    /// The layout version.
    short getShmVersion() const;

    /// What makes segments, as the constructor was given it.
    ShmFactory getShmFactory() const;
    /// What makes locks, in the same way.
    SemaphoreFactory getSemaphoreFactory() const;

    /// Whether this process made the segment.
    bool isCreated() const;

    /// The name by which the system knows the segment.
    char const* shmName() const;

private:
    /// What comes after a lock was found with a dead process: an exchange fails once, construction goes on.
    enum class Attempts { one, untilHad };

    template <void (CompositeShm::*copy)(ShmAble&, const PartPlace&), Attempts attempts>
    bool exchange(ShmAble& part, double timeout);
    PartPlace* find(ShmAble& part) const;
    static bool printUnknown(int id);
    bool lock(PartPlace& place, double timeout, Attempts attempts);
    void write(ShmAble& part, const PartPlace& place);
    void read(ShmAble& part, const PartPlace& place);
    void settleVersion(char const* name, short expected);
    void printNoRoom(ShmAble& part, size_t padding) const;

    ShmFactory shmFactory_;
    SemaphoreFactory semaphoreFactory_;
    std::unique_ptr<PartTable> parts_;
    ShmVersion version_;
    char* begin_ = nullptr; ///< Of the segment.
    bool segmentTakesPart_ = true; ///< In exchanges; mere memory is spared two calls that do nothing.
    std::unique_ptr<IShm> shm_; ///< Last, so that it is closed first.
};

} // namespace brvUtils
