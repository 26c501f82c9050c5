#pragma once

#include "brvUtils/os/linux/NameSpaceFolder.h"
#include "brvUtils/os/linux/RecordLock.h"
#include "brvUtils/os/linux/TableLayout.h"

#include <string>

namespace brvUtils::os {

/// The table file as mapped in this process, the locks on it, and the ticket by which others know this process.
/// Not safe for threads: its one user locks.
class TableFile
{
public:
    /// Makes or opens the file, maps it and takes a ticket. A file of which nobody is a user is made anew when it is
    /// damaged or of another version; otherwise that is error::invalidData or error::revisionMismatch.
    /// On success the lock of the table is held.
    ErrorCode attach();
    bool isAttached() const { return table_ != nullptr; }

    /// Gives up the locks and the mapping. The last user removes the files. The lock of the table is held before, and
    /// gone afterwards.
    void leave();

    /// Removes the files if there is no other user, and forgets them; the locks and the mapping stay until the process
    /// ends, for those of its threads that are still at work. The lock of the table is held before, and gone afterwards.
    void leaveAtExit();

    /// Closes the descriptor alone, in a child after fork: the locks are its parent's, and the mapping stays.
    void forget();

    /// Gives up the locks and the mapping of a file that was removed or damaged, and touches nothing else.
    void abandon() { close(); }

    /// The lock of the table. error::invalidData when the file was cut short or removed meanwhile.
    ErrorCode lock() { return take(true); }

    /// The same, but gives up when others hold it for a good while.
    ErrorCode lockSoon();
    void unlock() { setRecordLock(file_, F_UNLCK, tableByte); }

    /// Makes sure that the memory of so many slots is reserved.
    ErrorCode reserveSlots(std::uint32_t count);

    int holdSlot(std::uint32_t slot) { return setRecordLock(file_, F_RDLCK, slotBytes + slot); }
    void letGoOfSlot(std::uint32_t slot) { setRecordLock(file_, F_UNLCK, slotBytes + slot); }
    LockedRange slotsHeldByOthers(std::int64_t begin, std::int64_t end) const { return lockedByOthers(file_, slotBytes + begin, slotBytes + end); }
    bool isAlive(std::uint32_t ticket) const;

    Table& table() const { return *table_; }
    std::uint32_t ticket() const { return ticket_; }
    int folder() const { return folder_.descriptor(); }
    mode_t fileMode() const { return folder_.fileMode(); }

private:
    ErrorCode open(bool& removedMeanwhile);
    ErrorCode check() const;
    ErrorCode format();
    ErrorCode map();
    ErrorCode takeTicket();
    std::uint32_t unusedTicket();
    bool isInAStateWord(std::uint32_t ticket) const;
    bool isRemoved() const;
    ErrorCode take(bool wait);
    bool hasOtherUsers() const;
    void removeFiles();
    void close();

    NameSpaceFolder folder_;
    int file_ = -1;
    Table* table_ = nullptr;
    std::uint32_t ticket_ = nobody;
    ProcessIdentity identity_{}; ///< Of this process, with the ticket it had last.
};

} // namespace brvUtils::os
