#include "brvUtils/os/linux/SegmentFile.h"

#include "brvUtils/os/linux/Errno.h"
#include "brvUtils/os/linux/FileSpace.h"

#include <cstdio>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace brvUtils::os {

namespace {

struct FileName
{
    explicit FileName(std::uint32_t slot) { std::snprintf(text, sizeof text, "%s%u", stem, slot); }

    static constexpr const char* stem = "brvUtils-segment-";
    char text[32];
};

bool isSegmentFile(const char* name)
{
    const std::size_t length = std::strlen(FileName::stem);
    return std::strncmp(name, FileName::stem, length) == 0 && std::strspn(name + length, "0123456789") == std::strlen(name + length);
}

} // namespace

std::size_t wholePages(std::size_t size)
{
    const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    return (size + page - 1) / page * page;
}

ErrorCode createSegmentFile(int folder, std::uint32_t slot, std::size_t size, mode_t mode)
{
    removeSegmentFile(folder, slot); // of a creator that was killed
    const int file = openat(folder, FileName(slot).text, O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, mode);
    if (file < 0) {
        return fromErrno(errno);
    }
    int number = 0;
    if (ftruncate(file, static_cast<off_t>(wholePages(size))) != 0 || fchmod(file, mode) != 0) {
        number = errno;
    } else {
        number = reserveFileSpace(file, 0, static_cast<off_t>(wholePages(size)));
    }
    if (number != 0) {
        removeSegmentFile(folder, slot);
    }
    close(file);
    return fromErrno(number);
}

ErrorCode mapSegmentFile(int folder, std::uint32_t slot, std::size_t size, Handle& handle)
{
    const int file = openat(folder, FileName(slot).text, O_RDWR | O_NOFOLLOW | O_CLOEXEC);
    if (file < 0) {
        return fromErrno(errno);
    }
    const std::size_t length = wholePages(size);
    ErrorCode result = error::none;
    struct stat status{};
    if (fstat(file, &status) != 0 || status.st_size < static_cast<off_t>(length)) {
        result = error::invalidData;
    } else if (void* view = mmap(nullptr, length, PROT_READ | PROT_WRITE, MAP_SHARED, file, 0); view != MAP_FAILED) {
        handle.view = view;
        handle.size = length;
    } else {
        result = fromErrno(errno);
    }
    close(file);
    return result;
}

int openSegmentFileToLook(int folder, std::uint32_t slot)
{
    return openat(folder, FileName(slot).text, O_RDONLY | O_NOFOLLOW | O_CLOEXEC);
}

void removeSegmentFile(int folder, std::uint32_t slot)
{
    unlinkat(folder, FileName(slot).text, 0);
}

void removeAllSegmentFiles(int folder)
{
    const int list = openat(folder, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC); // the reading closes it
    DIR* entries = list >= 0 ? fdopendir(list) : nullptr;
    if (entries == nullptr) {
        if (list >= 0) {
            close(list);
        }
        return;
    }
    while (const dirent* entry = readdir(entries)) {
        if (isSegmentFile(entry->d_name)) {
            unlinkat(folder, entry->d_name, 0);
        }
    }
    closedir(entries);
}

} // namespace brvUtils::os
