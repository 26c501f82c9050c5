#include "brvUtils/os/FileSystem.h"

#include "brvUtils/os/linux/Descriptor.h"
#include "brvUtils/os/linux/Errno.h"
#include "brvUtils/os/linux/NativePath.h"
#include "brvUtils/os/linux/RecordLock.h"

#include <atomic>
#include <cstdio>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

namespace brvUtils::os {
namespace {

/// What a path stands for behind links; the path itself when that does not exist.
std::string behindLinks(const std::string& path)
{
    std::error_code fault;
    const std::filesystem::path target = std::filesystem::canonical(path, fault);
    return fault ? path : target.string();
}

/// Makes a file of a new name beside `path` and gives the name.
std::string createBeside(const std::string& path, Descriptor& file)
{
    static std::atomic<unsigned> count { 0 };
    std::string name;
    do {
        name = path + "~" + std::to_string(getpid()) + "-" + std::to_string(++count);
        file.take(::open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666));
    } while (!file.open() && errno == EEXIST);
    return name;
}

bool writeAll(int file, const std::string& contents)
{
    for (std::size_t done = 0; done < contents.size();) {
        const ssize_t count = write(file, contents.data() + done, contents.size() - done);
        if (count >= 0) {
            done += static_cast<std::size_t>(count);
        } else if (errno != EINTR) {
            return false;
        }
    }
    return true;
}

bool takeOver(int file, const struct stat& old)
{
    // Only who may give files away can keep the owner; the owner's group alone is open to more.
    if (fchown(file, old.st_uid, old.st_gid) != 0 && fchown(file, static_cast<uid_t>(-1), old.st_gid) != 0) {
        errno = 0;
    }
    return fchmod(file, old.st_mode & 0777) == 0;
}

bool sameFile(int file, const std::string& path)
{
    struct stat held {};
    struct stat named {};
    return fstat(file, &held) == 0 && stat(path.c_str(), &named) == 0 && held.st_dev == named.st_dev && held.st_ino == named.st_ino;
}

} // namespace

ErrorCode readFile(const std::string& path, std::string& contents)
{
    Descriptor file;
    file.take(::open(nativePath(path).c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC)); // no wait for the writer of a pipe
    struct stat status {};
    if (!file.open() || fstat(file.get(), &status) != 0) {
        return fromErrno(errno);
    }
    if (!S_ISREG(status.st_mode)) {
        return error::accessDenied;
    }
    std::string bytes(static_cast<std::size_t>(status.st_size) + 1, '\0'); // one more, to see the end at once
    std::size_t size = 0;
    while (true) {
        const ssize_t count = read(file.get(), bytes.data() + size, bytes.size() - size);
        if (count > 0) {
            size += static_cast<std::size_t>(count);
            if (size == bytes.size()) {
                bytes.resize(2 * size);
            }
        } else if (count == 0) {
            bytes.resize(size);
            contents.swap(bytes);
            return error::none;
        } else if (errno != EINTR) {
            return fromErrno(errno);
        }
    }
}

ErrorCode replaceFile(const std::string& path, const std::string& contents)
{
    const std::string target = behindLinks(nativePath(path));
    struct stat old {};
    const bool exists = stat(target.c_str(), &old) == 0;
    if (!exists && errno != ENOENT) {
        return fromErrno(errno);
    }
    if (exists && (!S_ISREG(old.st_mode) || faccessat(AT_FDCWD, target.c_str(), W_OK, AT_EACCESS) != 0)) {
        return error::accessDenied;
    }
    Descriptor file;
    const std::string written = createBeside(target, file);
    if (!file.open()) {
        return fromErrno(errno);
    }
    if (writeAll(file.get(), contents) && (!exists || takeOver(file.get(), old)) && fsync(file.get()) == 0
        && std::rename(written.c_str(), target.c_str()) == 0) {
        return error::none;
    }
    const ErrorCode result = fromErrno(errno);
    unlink(written.c_str());
    return result;
}

struct FileLock::Held
{
    std::string path;
    Descriptor file;
    bool made = false;

    /// Opens and locks what the path names now. False when another file has taken its place meanwhile.
    bool take(ErrorCode& fault)
    {
        file.take(::open(path.c_str(), O_RDWR | O_CLOEXEC));
        made = !file.open() && errno == ENOENT;
        if (made) {
            file.take(::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0666));
        }
        fault = file.open() ? fromErrno(setRecordLock(file.get(), F_WRLCK, 0, true)) : fromErrno(errno);
        return fault != error::none || sameFile(file.get(), path);
    }

    ~Held()
    {
        struct stat status {};
        if (made && file.open() && fstat(file.get(), &status) == 0 && status.st_size == 0 && sameFile(file.get(), path)) {
            unlink(path.c_str());
        }
        if (file.open()) {
            unlockAll(file.get()); // closing would leave it to the copy of a forked child
        }
    }
};

FileLock::FileLock(const std::string& path) : held_(std::make_unique<Held>())
{
    held_->path = nativePath(path);
    while (!held_->take(error_)) {
    }
    if (error_ != error::none) {
        held_.reset();
    }
}

FileLock::~FileLock() = default;

} // namespace brvUtils::os
