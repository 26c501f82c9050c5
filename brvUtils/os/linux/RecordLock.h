#pragma once

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <fcntl.h>
#include <vector>

/// Record locks of an open file description: they belong to the descriptor and its copies, not to the process, and the
/// kernel drops them when the last copy is closed, however its process ended.
namespace brvUtils::os {

/// Takes, changes or gives back (F_RDLCK, F_WRLCK, F_UNLCK) the lock on a byte. 0 or the number of the error.
inline int setRecordLock(int file, short type, std::int64_t byte, bool wait = false)
{
    struct flock lock{};
    lock.l_type = type;
    lock.l_whence = SEEK_SET;
    lock.l_start = byte;
    lock.l_len = 1;
    while (fcntl(file, wait ? F_OFD_SETLKW : F_OFD_SETLK, &lock) != 0) {
        if (errno != EINTR) {
            return errno;
        }
    }
    return 0;
}

/// Gives back all locks of the descriptor.
inline void unlockAll(int file)
{
    struct flock lock{};
    lock.l_type = F_UNLCK;
    lock.l_whence = SEEK_SET;
    fcntl(file, F_OFD_SETLK, &lock);
}

/// A run of locked bytes.
struct LockedRange
{
    std::int64_t begin = 0;
    std::int64_t end = 0; ///< begin == end: nothing is locked.

    explicit operator bool() const { return begin != end; }
};

/// One of the ranges within [begin, end) that others have locked, in no order.
inline LockedRange lockedByOthers(int file, std::int64_t begin, std::int64_t end)
{
    struct flock lock{};
    lock.l_type = F_WRLCK;
    lock.l_whence = SEEK_SET;
    lock.l_start = begin;
    lock.l_len = end - begin;
    // An error counts as locked: what cannot be asked about must not be taken for dead.
    if (fcntl(file, F_OFD_GETLK, &lock) != 0) {
        return {begin, end};
    }
    if (lock.l_type == F_UNLCK) {
        return {};
    }
    return {lock.l_start, lock.l_len == 0 ? end : lock.l_start + lock.l_len};
}

/// All of them, cut to [begin, end); a range that several have locked may come in pieces.
inline void allLockedByOthers(int file, std::int64_t begin, std::int64_t end, std::vector<LockedRange>& found)
{
    if (begin >= end) {
        return;
    }
    // The kernel names one locked range, not the first: what lies on both sides of it is asked about again.
    const LockedRange held = lockedByOthers(file, begin, end);
    if (held) {
        allLockedByOthers(file, begin, held.begin, found);
        found.push_back({std::max(begin, held.begin), std::min(end, held.end)});
        allLockedByOthers(file, held.end, end, found);
    }
}

} // namespace brvUtils::os
