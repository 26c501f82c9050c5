#include "brvUtils/os/linux/TableView.h"

#include "brvUtils/os/linux/Errno.h"
#include "brvUtils/os/linux/ObjectName.h"

#include <algorithm>
#include <cstring>
#include <ctime>
#include <sys/stat.h>

namespace brvUtils::os {

namespace {

constexpr int looks = 50; // at a slot that is being filled, and at a table that makes no sense
constexpr int looksAtWork = 10'000; // at one that somebody is making: two seconds, unless that one is stopped in its midst

bool readAll(int file, void* to, std::size_t count, std::size_t offset)
{
    return pread(file, to, count, static_cast<off_t>(offset)) == static_cast<ssize_t>(count);
}

} // namespace

ErrorCode TableView::read()
{
    ErrorCode result = error::none;
    ino_t seen = 0;
    int idle = 0; // looks at the same file that nobody is at work on
    for (int look = 0; look < looksAtWork && idle < looks; ++look) {
        TableHeader header{};
        result = open();
        if (result == error::none) {
            result = check(header);
        }
        if (result == error::none && !copy(header)) {
            result = error::invalidData;
        }
        if (result != error::invalidData) {
            return result;
        }
        // What is no table may be one that is just being made or removed.
        struct stat status{};
        fstat(file_.get(), &status);
        const bool atWork = status.st_nlink == 0 || lockedByOthers(file_.get(), tableByte, tableByte + 1);
        idle = atWork || status.st_ino != seen ? 0 : idle + 1;
        seen = status.st_ino;
        if (idle == looks - 1 && status.st_size == 0 && ticketsAlive().empty()) {
            return error::fileNotFound; // its maker has not begun yet, or was killed there
        }
        constexpr timespec pause{0, 100'000};
        nanosleep(&pause, nullptr);
    }
    return result;
}

ErrorCode TableView::open()
{
    folder_.close();
    if (const ErrorCode result = folder_.openExisting(); result != error::none) {
        return result == error::pathNotFound ? error::fileNotFound : result;
    }
    file_.take(openat(folder_.descriptor(), tableName, O_RDONLY | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK));
    return file_.open() ? error::none : fromErrno(errno);
}

ErrorCode TableView::check(TableHeader& header) const
{
    struct stat status{};
    if (fstat(file_.get(), &status) != 0 || !S_ISREG(status.st_mode) || !readAll(file_.get(), &header, sizeof header, 0)
        || std::memcmp(header.magic, tableMagic, sizeof tableMagic) != 0) {
        return error::invalidData;
    }
    if (header.version != tableVersion) {
        return error::revisionMismatch;
    }
    return status.st_size == static_cast<off_t>(sizeof(Table)) && header.slotsUsed <= slotCapacity ? error::none : error::invalidData;
}

bool TableView::readIndex(std::uint32_t first, std::uint32_t count, std::uint64_t* hashes) const
{
    return readAll(file_.get(), hashes, count * sizeof *hashes, offsetof(Table, index) + first * sizeof *hashes);
}

bool TableView::copy(const TableHeader& header)
{
    const std::uint32_t count = header.slotsUsed;
    std::vector<std::uint64_t> before(count), after(count);
    slots_ = std::make_unique<Slot[]>(count);
    processes_ = std::make_unique<ProcessRecord[]>(processCapacity);
    used_.clear();
    // The index before and after: what had the same name at both times, and has it now, is whole.
    if (!readIndex(0, count, before.data()) || !readAll(file_.get(), slots_.get(), count * sizeof(Slot), offsetof(Table, slots))
        || !readIndex(0, count, after.data())
        || !readAll(file_.get(), processes_.get(), processCapacity * sizeof(ProcessRecord), offsetof(Table, processes))) {
        return false;
    }
    for (std::uint32_t number = 0; number < count; ++number) {
        slots_[number].name[nameCapacity - 1] = '\0';
        if (after[number] == 0) {
            continue;
        }
        if ((before[number] == after[number] && hashOf(name(number)) == after[number]) || copySlot(number)) {
            used_.push_back(number);
        }
    }
    return true;
}

bool TableView::copySlot(std::uint32_t number)
{
    for (int look = 0; look < looks; ++look) {
        std::uint64_t before = 0;
        std::uint64_t after = 0;
        if (!readIndex(number, 1, &before) || before == 0
            || !readAll(file_.get(), &slots_[number], sizeof(Slot), offsetof(Table, slots) + number * sizeof(Slot))
            || !readIndex(number, 1, &after)) {
            return false;
        }
        slots_[number].name[nameCapacity - 1] = '\0';
        if (before == after && hashOf(name(number)) == after) {
            return true;
        }
    }
    return false;
}

std::vector<LockedRange> TableView::ticketsAlive() const
{
    std::vector<LockedRange> found;
    allLockedByOthers(file_.get(), ticketBytes + minimumTicket, ticketBytes + maximumTicket + 1, found);
    for (LockedRange& range : found) {
        range = {range.begin - ticketBytes, range.end - ticketBytes};
    }
    return found;
}

bool TableView::isStillThere(std::uint32_t slot) const
{
    std::uint64_t hash = 0;
    return readIndex(slot, 1, &hash) && hash == hashOf(name(slot));
}

} // namespace brvUtils::os
