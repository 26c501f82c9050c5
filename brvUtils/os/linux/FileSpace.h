#pragma once

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/statvfs.h>

namespace brvUtils::os {

/// Reserves the space of that part of a file, which grows where needed. 0 or the number of the error.
/// In steps, because a signal undoes what one call has done: a program with a fast timer still gets on.
inline int reserveFileSpace(int file, off_t begin, off_t length)
{
    struct statvfs space{};
    // At once, and not after having taken all there is. A file system without a limit says that it has no blocks.
    if (fstatvfs(file, &space) == 0 && space.f_blocks != 0 && static_cast<fsblkcnt_t>(length) / space.f_frsize > space.f_bavail) {
        return ENOSPC;
    }
    constexpr off_t step = off_t{16} << 20;
    for (const off_t end = begin + length; begin < end; begin += step) {
        while (fallocate(file, 0, begin, std::min(step, end - begin)) != 0) {
            if (errno != EINTR) {
                return errno;
            }
        }
    }
    return 0;
}

} // namespace brvUtils::os
