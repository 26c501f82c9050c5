#include "brvUtils/os/linux/TableFile.h"

#include "brvUtils/os/linux/Errno.h"
#include "brvUtils/os/linux/EventTransaction.h"
#include "brvUtils/os/linux/FileSpace.h"
#include "brvUtils/os/linux/ProcessIdentity.h"
#include "brvUtils/os/linux/SegmentFile.h"
#include "brvUtils/os/linux/SemaphoreWord.h"

#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace brvUtils::os {

namespace {

constexpr int attempts = 1000; // of attaching while others come and go

} // namespace

ErrorCode TableFile::attach()
{
    for (int attempt = 0; attempt < attempts; ++attempt) {
        bool removedMeanwhile = false;
        ErrorCode result = open(removedMeanwhile);
        if (result == error::none) {
            result = check();
            if (result != error::none && !hasOtherUsers()) {
                result = format();
            }
            if (result == error::none) {
                result = map();
            }
            if (result == error::none) {
                result = takeTicket();
            }
        }
        if (result == error::none) {
            return result;
        }
        close();
        if (!removedMeanwhile) {
            return result;
        }
    }
    return error::accessDenied;
}

ErrorCode TableFile::open(bool& removedMeanwhile)
{
    if (const ErrorCode result = folder_.open(); result != error::none) {
        removedMeanwhile = result == error::fileNotFound;
        return result;
    }
    file_ = openat(folder_.descriptor(), tableName, O_RDWR | O_CREAT | O_NOFOLLOW | O_CLOEXEC, folder_.fileMode());
    if (file_ < 0) {
        removedMeanwhile = errno == ENOENT;
        return fromErrno(errno);
    }
    if (const int number = setRecordLock(file_, F_WRLCK, tableByte, true); number != 0) {
        return fromErrno(number);
    }
    removedMeanwhile = isRemoved();
    if (removedMeanwhile) {
        return error::fileNotFound;
    }
    struct stat status{};
    fstat(file_, &status);
    if (!S_ISREG(status.st_mode)) {
        return error::accessDenied;
    }
    if (status.st_uid == geteuid()) {
        fchmod(file_, folder_.fileMode()); // creation leaves out what the mask forbids
    }
    return error::none;
}

ErrorCode TableFile::check() const
{
    struct stat status{};
    TableHeader header{};
    // Read, not mapped: a page that the file does not have must not be touched.
    if (fstat(file_, &status) != 0 || pread(file_, &header, sizeof header, 0) != sizeof header
        || std::memcmp(header.magic, tableMagic, sizeof tableMagic) != 0) {
        return error::invalidData;
    }
    if (header.version != tableVersion) {
        return error::revisionMismatch;
    }
    const bool sound = status.st_size == static_cast<off_t>(sizeof(Table)) && header.slotsReserved <= slotCapacity
        && header.slotsUsed <= header.slotsReserved;
    return sound ? error::none : error::invalidData;
}

ErrorCode TableFile::format()
{
    removeAllSegmentFiles(folder_.descriptor()); // of the table that was here
    TableHeader header{};
    header.version = tableVersion;
    int number = ftruncate(file_, 0) == 0 && ftruncate(file_, sizeof(Table)) == 0 ? 0 : errno;
    if (number == 0) {
        number = reserveFileSpace(file_, 0, offsetof(Table, slots));
    }
    if (number == 0
        && (pwrite(file_, &header, sizeof header, 0) != sizeof header
            || pwrite(file_, tableMagic, sizeof tableMagic, offsetof(TableHeader, magic)) != sizeof tableMagic)) {
        number = errno;
    }
    if (number != 0) {
        removeFiles();
    }
    return fromErrno(number);
}

ErrorCode TableFile::map()
{
    // Through a descriptor of its own: a mapping keeps alive the one it was made with, and with it the record locks,
    // in a forked child even beyond the death of this process. The lock of the table is held, so that it is this file.
    const int file = openat(folder_.descriptor(), tableName, O_RDWR | O_NOFOLLOW | O_CLOEXEC);
    if (file < 0) {
        return fromErrno(errno);
    }
    void* address = mmap(nullptr, sizeof(Table), PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
    const int number = errno;
    ::close(file);
    if (address == MAP_FAILED) {
        return fromErrno(number);
    }
    table_ = static_cast<Table*>(address);
    return error::none;
}

ErrorCode TableFile::takeTicket()
{
    if (identity_.processId != static_cast<std::uint32_t>(getpid())) {
        identity_ = identityOfThisProcess();
    }
    // A process that comes back takes its old ticket, so that the records tell of many processes, not of one that comes
    // and goes; but not with a semaphore that it has left taken, which would be taken for ever.
    std::uint32_t ticket = identity_.ticket;
    if (ticket == 0 || std::memcmp(&table_->processes[ticket % processCapacity].process, &identity_, sizeof identity_) != 0
        || isInAStateWord(ticket)) {
        ticket = unusedTicket();
    }
    if (ticket == 0) {
        return error::notEnoughMemory;
    }
    if (const int number = setRecordLock(file_, F_WRLCK, ticketBytes + ticket); number != 0) {
        return fromErrno(number);
    }
    identity_.ticket = ticket;
    EventTransaction::endAbandoned(*table_, ticket % processCapacity); // of the process that had the record before
    table_->processes[ticket % processCapacity].process = identity_;
    ticket_ = ticket;
    return error::none;
}

std::uint32_t TableFile::unusedTicket()
{
    TableHeader& header = table_->header;
    for (std::uint32_t attempt = 0; attempt < processCapacity; ++attempt) {
        if (header.lastTicket >= maximumTicket) {
            header.ticketsCameAround = 1;
        }
        header.lastTicket = header.lastTicket >= minimumTicket && header.lastTicket < maximumTicket ? header.lastTicket + 1 : minimumTicket;
        const std::uint32_t holder = table_->processes[header.lastTicket % processCapacity].process.ticket;
        if ((holder == 0 || !isAlive(holder)) && !(header.ticketsCameAround != 0 && isInAStateWord(header.lastTicket))) {
            return header.lastTicket;
        }
    }
    return 0;
}

bool TableFile::isInAStateWord(std::uint32_t ticket) const
{
    for (std::uint32_t slot = 0; slot < slotCapacity; ++slot) {
        if (table_->index[slot].load(std::memory_order_acquire) != 0 && table_->slots[slot].kind == Kind::semaphore
            && (SemaphoreWord(table_->slots[slot].state).load() & SemaphoreWord::takerBits) == ticket) {
            return true;
        }
    }
    return false;
}

ErrorCode TableFile::take(bool wait)
{
    if (const int number = setRecordLock(file_, F_WRLCK, tableByte, wait); number != 0) {
        return fromErrno(number);
    }
    struct stat status{};
    if (fstat(file_, &status) != 0 || status.st_size != static_cast<off_t>(sizeof(Table)) || isRemoved()) {
        unlock();
        return error::invalidData;
    }
    return error::none;
}

ErrorCode TableFile::lockSoon()
{
    constexpr timespec pause{0, 500'000};
    ErrorCode result = take(false);
    for (int attempt = 0; result != error::none && result != error::invalidData && attempt < 1000; ++attempt) {
        nanosleep(&pause, nullptr);
        result = take(false);
    }
    return result;
}

bool TableFile::isRemoved() const
{
    struct stat status{};
    return fstat(file_, &status) != 0 || status.st_nlink == 0;
}

ErrorCode TableFile::reserveSlots(std::uint32_t count)
{
    constexpr std::uint32_t step = 256;
    std::uint32_t& reserved = table_->header.slotsReserved;
    while (reserved < count) {
        const off_t begin = static_cast<off_t>(offsetof(Table, slots) + reserved * sizeof(Slot));
        if (const int number = reserveFileSpace(file_, begin, step * sizeof(Slot)); number != 0) {
            return fromErrno(number);
        }
        reserved += step;
    }
    return error::none;
}

bool TableFile::isAlive(std::uint32_t ticket) const
{
    return ticket == ticket_ || ticket > maximumTicket
        || static_cast<bool>(lockedByOthers(file_, ticketBytes + ticket, ticketBytes + ticket + 1));
}

bool TableFile::hasOtherUsers() const
{
    return static_cast<bool>(lockedByOthers(file_, ticketBytes, ticketBytes + maximumTicket + 1));
}

void TableFile::removeFiles()
{
    if (isRemoved()) {
        return; // what is there now belongs to others
    }
    removeAllSegmentFiles(folder_.descriptor());
    unlinkat(folder_.descriptor(), tableName, 0);
    folder_.removeIfEmpty();
}

void TableFile::leave()
{
    if (!hasOtherUsers()) {
        removeFiles();
    }
    close();
}

void TableFile::leaveAtExit()
{
    if (hasOtherUsers()) {
        unlock();
        return;
    }
    removeFiles();
    unlock();
    // Left open on purpose: with the descriptor the locks would go.
    file_ = -1;
    forget();
}

void TableFile::forget()
{
    if (file_ >= 0) {
        ::close(file_);
        file_ = -1;
    }
    folder_.close();
    table_ = nullptr;
    ticket_ = nobody;
}

void TableFile::close()
{
    if (table_ != nullptr) {
        munmap(table_, sizeof(Table));
    }
    if (file_ >= 0) {
        // By hand: a child between fork and exec may have a copy of the descriptor for a moment longer.
        unlockAll(file_);
    }
    forget();
}

} // namespace brvUtils::os
