#include "brvUtils/os/linux/NameSpaceFolder.h"

#include "brvUtils/os/Environment.h"
#include "brvUtils/os/linux/Errno.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace brvUtils::os {

namespace {

const std::string sharedMemoryFileSystem = "/dev/shm/";

} // namespace

NameSpaceFolder::~NameSpaceFolder()
{
    close();
}

void NameSpaceFolder::choose()
{
    const std::string shared = environmentVariable("STUDIO_IPC_NAMESPACE").value_or("");
    shared_ = !shared.empty();
    if (!shared_) {
        path_ = sharedMemoryFileSystem + "brvUtils-" + std::to_string(geteuid());
    } else {
        path_ = shared.find('/') != std::string::npos ? shared : sharedMemoryFileSystem + shared;
    }
}

ErrorCode NameSpaceFolder::openChosen(bool& ours)
{
    descriptor_ = ::open(path_.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
    if (descriptor_ < 0) {
        return errno == ENOTDIR ? error::accessDenied : fromErrno(errno);
    }
    struct stat status{};
    fstat(descriptor_, &status);
    ours = status.st_uid == geteuid();
    const bool trusted = shared_ ? (status.st_mode & 0007) == 0 : ours && (status.st_mode & 0077) == 0;
    if (!trusted) {
        close();
        return error::accessDenied;
    }
    return error::none;
}

ErrorCode NameSpaceFolder::openExisting()
{
    choose();
    bool ours = false;
    return openChosen(ours);
}

ErrorCode NameSpaceFolder::open()
{
    choose();
    const mode_t mode = shared_ ? 02770 : 0700;
    const bool made = mkdir(path_.c_str(), mode) == 0;
    if (!made && errno != EEXIST) {
        return errno == ENOENT ? error::pathNotFound : fromErrno(errno);
    }
    bool ours = false;
    const ErrorCode result = openChosen(ours);
    if (result == error::none && (made || (ours && !shared_))) {
        fchmod(descriptor_, mode); // mkdir leaves out what the mask forbids
    }
    return result;
}

void NameSpaceFolder::close()
{
    if (descriptor_ >= 0) {
        ::close(descriptor_);
        descriptor_ = -1;
    }
}

void NameSpaceFolder::removeIfEmpty() const
{
    if (!shared_) {
        rmdir(path_.c_str());
    }
}

} // namespace brvUtils::os
