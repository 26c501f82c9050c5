#include "rfm2g/RingFile.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace softwareCard {

namespace {

// Locked bytes, beyond any that the file has. These locks belong to the open file, not to the process.
constexpr off_t lockedByte = off_t{1} << 40;
constexpr off_t firstPlace = lockedByte + 1;

int locking(int file, int command, short type, off_t byte, bool* conflict = nullptr)
{
    struct flock lock{};
    lock.l_type = type;
    lock.l_whence = SEEK_SET;
    lock.l_start = byte;
    lock.l_len = 1;
    int result = 0;
    do {
        result = fcntl(file, command, &lock);
    } while (result != 0 && errno == EINTR);
    if (conflict != nullptr) {
        *conflict = result != 0 || lock.l_type != F_UNLCK;
    }
    return result;
}

/// Where the file system cannot reserve space.
bool writeZeros(int file, std::uint64_t offset, std::uint64_t length)
{
    static constexpr std::array<char, 4096> zeros{};
    while (length > 0) {
        const ssize_t count = pwrite(file, zeros.data(), std::min<std::uint64_t>(length, zeros.size()), static_cast<off_t>(offset));
        if (count < 0 && errno != EINTR) {
            return false;
        }
        offset += static_cast<std::uint64_t>(std::max<ssize_t>(count, 0));
        length -= static_cast<std::uint64_t>(std::max<ssize_t>(count, 0));
    }
    return true;
}

} // namespace

RingFile::RingFile(const std::string& path, Missing missing) : path_(path)
{
    // A link that somebody else has put there is not followed.
    file_ = ::open(path.c_str(), O_RDWR | O_CLOEXEC | O_NOFOLLOW | (missing == Missing::make ? O_CREAT : 0), 0600);
    if (file_ < 0) {
        fail("it cannot be opened");
    }
}

RingFile::~RingFile()
{
    if (memory_ != nullptr) {
        munmap(memory_, mapped_);
    }
    if (file_ >= 0) {
        ::close(static_cast<int>(file_));
    }
}

bool RingFile::fail(const char* what)
{
    problem_ = path_ + ": " + what + " (" + std::strerror(errno) + ")";
    return false;
}

bool RingFile::lock()
{
    locked_.lock();
    if (locking(static_cast<int>(file_), F_OFD_SETLKW, F_WRLCK, lockedByte) == 0) {
        return true;
    }
    fail("it cannot be locked");
    locked_.unlock();
    return false;
}

void RingFile::unlock()
{
    locking(static_cast<int>(file_), F_OFD_SETLK, F_UNLCK, lockedByte);
    locked_.unlock();
}

bool RingFile::wasRemoved() const
{
    struct stat status{};
    return fstat(static_cast<int>(file_), &status) == 0 && status.st_nlink == 0;
}

bool RingFile::remove()
{
    return ::unlink(path_.c_str()) == 0 || fail("it cannot be removed");
}

std::uint64_t RingFile::size() const
{
    struct stat status{};
    return fstat(static_cast<int>(file_), &status) == 0 ? static_cast<std::uint64_t>(status.st_size) : 0;
}

bool RingFile::clear(std::uint64_t size)
{
    // Beyond this limit the system ends the process.
    rlimit limit{};
    if (getrlimit(RLIMIT_FSIZE, &limit) == 0 && limit.rlim_cur < size) {
        errno = EFBIG;
        return fail("it cannot have its size");
    }
    const int file = static_cast<int>(file_);
    return (ftruncate(file, 0) == 0 && ftruncate(file, static_cast<off_t>(size)) == 0) || fail("it cannot have its size");
}

bool RingFile::readStart(void* to, std::size_t length)
{
    return pread(static_cast<int>(file_), to, length, 0) == static_cast<ssize_t>(length) || fail("it cannot be read");
}

bool RingFile::map(std::uint64_t length)
{
    void* memory = mmap(nullptr, length, PROT_READ | PROT_WRITE, MAP_SHARED, static_cast<int>(file_), 0);
    if (memory == MAP_FAILED) {
        return fail("it cannot be mapped");
    }
    memory_ = memory;
    mapped_ = length;
    return true;
}

bool RingFile::reserve(std::uint64_t offset, std::uint64_t length)
{
    // A mapped page that the system then has no space for would end the process.
    const int file = static_cast<int>(file_);
    int result = 0;
    do {
        result = fallocate(file, 0, static_cast<off_t>(offset), static_cast<off_t>(length));
    } while (result != 0 && errno == EINTR);
    return result == 0 || (errno == EOPNOTSUPP && writeZeros(file, offset, length)) || fail("too little space");
}

bool RingFile::isTaken(unsigned place)
{
    bool conflict = false;
    locking(static_cast<int>(file_), F_OFD_GETLK, F_WRLCK, firstPlace + place, &conflict);
    return conflict;
}

bool RingFile::take(unsigned place)
{
    return locking(static_cast<int>(file_), F_OFD_SETLK, F_WRLCK, firstPlace + place) == 0;
}

void RingFile::free(unsigned place)
{
    locking(static_cast<int>(file_), F_OFD_SETLK, F_UNLCK, firstPlace + place);
}

} // namespace softwareCard
