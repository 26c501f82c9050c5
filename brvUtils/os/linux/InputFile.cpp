#include "brvUtils/os/InputFile.h"

#include "brvUtils/os/linux/Errno.h"
#include "brvUtils/os/linux/NativePath.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace brvUtils::os {

InputFile::~InputFile()
{
    if (file_ != none) {
        close(static_cast<int>(file_));
    }
}

ErrorCode InputFile::open(const std::string& path)
{
    const int file = ::open(nativePath(path).c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    if (file < 0) {
        return fromErrno(errno);
    }
    file_ = file;
    struct stat status {};
    if (fstat(file, &status) != 0) {
        return fromErrno(errno);
    }
    if (!S_ISREG(status.st_mode)) {
        return error::accessDenied;
    }
    size_ = static_cast<std::uint64_t>(status.st_size);
    return error::none;
}

ErrorCode InputFile::read(std::uint64_t offset, void* to, std::size_t count, std::size_t& got) const
{
    got = 0;
    while (got < count) {
        const ssize_t part = pread(static_cast<int>(file_), static_cast<char*>(to) + got, count - got, static_cast<off_t>(offset + got));
        if (part < 0 && errno != EINTR) {
            return fromErrno(errno);
        }
        if (part == 0) {
            break;
        }
        got += part > 0 ? static_cast<std::size_t>(part) : 0;
    }
    return error::none;
}

} // namespace brvUtils::os
