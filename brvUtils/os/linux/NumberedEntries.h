#pragma once

#include "brvUtils/os/linux/Descriptor.h"

#include <cstddef>
#include <dirent.h>
#include <fcntl.h>
#include <string_view>
#include <unistd.h>

namespace brvUtils::os {

/// Calls `visit(folder, name)` for the entries of a folder whose names are numbers, as are those of processes and of
/// threads, with a descriptor of the folder, until it gives true. Gives whether it did.
template <typename Visit>
bool anyNumberedEntry(const char* path, Visit visit)
{
    DIR* const folder = opendir(path);
    if (folder == nullptr) {
        return false;
    }
    bool found = false;
    while (const dirent* const entry = found ? nullptr : readdir(folder)) {
        if (entry->d_name[0] >= '1' && entry->d_name[0] <= '9') {
            found = visit(dirfd(folder), entry->d_name);
        }
    }
    closedir(folder);
    return found;
}

/// The beginning of a file, as much of it as the buffer takes; empty when it cannot be read.
template <std::size_t size>
std::string_view readBeginning(int folder, const char* path, char (&buffer)[size])
{
    Descriptor file;
    file.take(openat(folder, path, O_RDONLY | O_CLOEXEC));
    const ssize_t count = file.open() ? read(file.get(), buffer, size) : -1;
    return { buffer, count > 0 ? static_cast<std::size_t>(count) : 0 };
}

} // namespace brvUtils::os
