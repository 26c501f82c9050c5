#include "brvUtils/os/linux/TableLocks.h"

#include "brvUtils/os/linux/TableLayout.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dirent.h>
#include <memory>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>

namespace brvUtils::os {

namespace {

/// "lock:	1: OFDLCK ADVISORY  READ -1 00:1b:1896025 0 4": the last two numbers are the first and last byte.
bool parseLock(const char* line, LockedRange& range)
{
    const char* const place = std::strncmp(line, "lock:", 5) == 0 ? std::strrchr(line, ':') : nullptr;
    const char* const first = place != nullptr ? std::strchr(place, ' ') : nullptr;
    if (first == nullptr) {
        return false;
    }
    char* rest = nullptr;
    range.begin = std::strtoll(first, &rest, 10);
    const char* const last = rest;
    range.end = std::strtoll(last, &rest, 10) + 1; // "EOF" is no number, and no lock of ours
    return rest != last && range.begin < range.end;
}

void readLocks(const std::string& fdinfo, std::vector<LockedRange>& found)
{
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(fdinfo.c_str(), "re"), std::fclose);
    char line[256];
    LockedRange range;
    while (file != nullptr && std::fgets(line, sizeof line, file.get()) != nullptr) {
        if (parseLock(line, range)) {
            found.push_back(range);
        }
    }
}

/// Whether the descriptor is one of a table. Its name is asked for first: a file on a computer that does not answer would hold
/// up who asks for more.
bool isTable(int descriptors, const char* entry, const struct stat& wanted)
{
    char path[4096];
    const ssize_t length = readlinkat(descriptors, entry, path, sizeof path);
    const std::string_view target(path, length > 0 ? static_cast<std::size_t>(length) : 0);
    struct stat status{};
    return target.find(tableName) != std::string_view::npos && fstatat(descriptors, entry, &status, 0) == 0
        && status.st_dev == wanted.st_dev && status.st_ino == wanted.st_ino;
}

} // namespace

std::vector<LockedRange> tableLocksOfProcess(std::uint32_t processId, int table)
{
    std::vector<LockedRange> found;
    const std::string process = "/proc/" + std::to_string(processId);
    const std::unique_ptr<DIR, int (*)(DIR*)> descriptors(opendir((process + "/fd").c_str()), closedir);
    struct stat wanted{};
    if (descriptors == nullptr || fstat(table, &wanted) != 0) {
        return found;
    }
    while (const dirent* entry = readdir(descriptors.get())) {
        if (isTable(dirfd(descriptors.get()), entry->d_name, wanted)) {
            readLocks(process + "/fdinfo/" + entry->d_name, found);
        }
    }
    return found;
}

} // namespace brvUtils::os
