#include "brvUtils/os/linux/MemoryMap.h"

#include "brvUtils/os/linux/Descriptor.h"

#include <cinttypes>
#include <cstdio>
#include <cstring>
#include <fcntl.h>

namespace brvUtils::os {
namespace {

/// The lines of a file, cut where they are longer than anything that is asked of them.
class Lines
{
public:
    explicit Lines(const char* path) { file_.take(open(path, O_RDONLY | O_CLOEXEC)); }

    bool next(char (&line)[256])
    {
        std::size_t length = 0;
        while (fill()) {
            const char letter = buffer_[at_++];
            if (letter == '\n') {
                line[length] = '\0';
                return true;
            }
            if (length < sizeof line - 1) {
                line[length++] = letter;
            }
        }
        return false;
    }

private:
    bool fill()
    {
        if (at_ == filled_) {
            const ssize_t count = file_.open() ? read(file_.get(), buffer_, sizeof buffer_) : 0;
            filled_ = count > 0 ? static_cast<std::size_t>(count) : 0;
            at_ = 0;
        }
        return at_ < filled_;
    }

    Descriptor file_;
    char buffer_[4096];
    std::size_t at_ = 0;
    std::size_t filled_ = 0;
};

/// Whether the line about a mapping's flags has none of those of devices ("io", "pf") and of madvise ("dd").
bool belongsInDump(const char* flags)
{
    return std::strstr(flags, " io") == nullptr && std::strstr(flags, " pf") == nullptr && std::strstr(flags, " dd") == nullptr;
}

} // namespace

std::size_t readMemoryMap(MemoryRange* ranges, std::size_t room)
{
    Lines lines("/proc/self/smaps");
    std::size_t count = 0;
    char line[256];
    MemoryRange range{};
    bool readable = false;
    while (count < room && lines.next(line)) {
        std::uint64_t start = 0;
        std::uint64_t end = 0;
        char mayRead = '-';
        if (std::sscanf(line, "%" SCNx64 "-%" SCNx64 " %c", &start, &end, &mayRead) == 3) {
            range = {start, end - start};
            readable = mayRead == 'r';
        } else if (std::strncmp(line, "VmFlags:", 8) == 0 && readable && belongsInDump(line)) {
            ranges[count++] = range;
        }
    }
    return count;
}

} // namespace brvUtils::os
