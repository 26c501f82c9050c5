#pragma once

#include <fcntl.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace brvUtils::os {

// The bare limit in benchmarks of files.

inline bool bareExists(const std::string& path)
{
    struct stat status{};
    return stat(path.c_str(), &status) == 0;
}

/// At most 64 KiB.
inline std::string bareRead(const std::string& path)
{
    std::string text(1 << 16, '\0');
    const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    const ssize_t length = read(file, text.data(), text.size());
    close(file);
    text.resize(length > 0 ? static_cast<std::size_t>(length) : 0);
    return text;
}

} // namespace brvUtils::os
