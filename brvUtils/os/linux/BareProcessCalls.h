#pragma once

#include <cstdio>
#include <dirent.h>
#include <dlfcn.h>
#include <unistd.h>

namespace brvUtils::os {

// The bare calls of the system, for benchmarks to compare with.

/// Reads where the executable of each process lies, and gives how many there are.
inline int bareReadExecutables()
{
    DIR* const folder = opendir("/proc");
    int count = 0;
    while (const dirent* const entry = folder != nullptr ? readdir(folder) : nullptr) {
        char path[300];
        char file[4096];
        std::snprintf(path, sizeof path, "/proc/%s/exe", entry->d_name);
        if (entry->d_name[0] >= '1' && entry->d_name[0] <= '9' && readlink(path, file, sizeof file) > 0) {
            ++count;
        }
    }
    if (folder != nullptr) {
        closedir(folder);
    }
    return count;
}

/// Loads a library, asks for a symbol, and unloads it. Whether that is there.
inline bool bareLoad(const char* path, const char* symbol)
{
    void* const library = dlopen(path, RTLD_NOW | RTLD_LOCAL);
    const bool found = library != nullptr && dlsym(library, symbol) != nullptr;
    if (library != nullptr) {
        dlclose(library);
    }
    return found;
}

} // namespace brvUtils::os
