#include "brvUtils/os/linux/DumpTarget.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>

namespace brvUtils::os {
namespace {

/// The folder of a path into `folder`. False when it is too long.
bool folderOf(const char* path, char (&folder)[PATH_MAX])
{
    const char* slash = std::strrchr(path, '/');
    const std::size_t length = slash == nullptr ? 0 : static_cast<std::size_t>(std::max(slash - path, std::ptrdiff_t{1}));
    if (length >= sizeof folder - 1) {
        return false;
    }
    std::memcpy(folder, slash == nullptr ? "." : path, std::max(length, std::size_t{1}));
    folder[std::max(length, std::size_t{1})] = '\0';
    return true;
}

/// Whether nothing is in the way of a new file.
bool clear(const char* path)
{
    struct stat there{};
    if (lstat(path, &there) != 0) {
        return errno == ENOENT;
    }
    return S_ISREG(there.st_mode) && unlink(path) == 0;
}

} // namespace

bool DumpTarget::open(const char* path, CopyNotes& notes)
{
    char folder[PATH_MAX];
    struct stat there{};
    if (!folderOf(path, folder) || (lstat(path, &there) == 0 && !S_ISREG(there.st_mode))) {
        return false;
    }
    path_ = path;
    notes_ = &notes;
    file_.take(::open(folder, O_TMPFILE | O_WRONLY | O_CLOEXEC, 0600));
    if (!file_.open() && clear(path)) {
        file_.take(::open(path, O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, 0600));
        named_ = file_.open();
        notes.leftFile.store(named_);
    }
    return file_.open();
}

bool DumpTarget::append(const void* data, std::size_t size)
{
    const char* bytes = static_cast<const char*>(data);
    while (size > 0) {
        const ssize_t written = pwrite(file_.get(), bytes, size, static_cast<off_t>(position_));
        if (written <= 0) {
            return false;
        }
        bytes += written;
        size -= static_cast<std::size_t>(written);
        position_ += static_cast<std::uint64_t>(written);
        notes_->live();
    }
    return true;
}

bool DumpTarget::finish()
{
    if (ftruncate(file_.get(), static_cast<off_t>(position_)) != 0) {
        return false;
    }
    if (named_) {
        return close(file_.release()) == 0; // where some file systems say at last that they are full
    }
    char link[32];
    std::snprintf(link, sizeof link, "/proc/self/fd/%d", file_.get());
    return clear(path_) && linkat(AT_FDCWD, link, AT_FDCWD, path_, AT_SYMLINK_FOLLOW) == 0;
}

void DumpTarget::abandon()
{
    if (named_) {
        unlink(path_);
    }
}

} // namespace brvUtils::os
