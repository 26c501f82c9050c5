#include "brvUtils/os/linux/MemoryMap.h"

#include <algorithm>
#include <cinttypes>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <iterator>
#include <unistd.h>

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

/// Whether what stands behind the address range says that it is neither a file nor the kernel's ("[vdso]").
bool isPlain(const char* rest)
{
    std::uint64_t file = 1;
    std::sscanf(rest, "%*s %*s %*s %" SCNu64, &file);
    return file == 0 && std::strstr(rest, "[v") == nullptr;
}

} // namespace

std::size_t readMemoryMap(MemoryRange* ranges, bool* plain, std::size_t room)
{
    Lines lines("/proc/self/smaps");
    std::size_t count = 0;
    char line[256];
    MemoryRange range{};
    bool readable = false;
    bool isPlainRange = false;
    while (count < room && lines.next(line)) {
        std::uint64_t start = 0;
        std::uint64_t end = 0;
        int rest = 0;
        if (std::sscanf(line, "%" SCNx64 "-%" SCNx64 " %n", &start, &end, &rest) == 2) {
            range = {start, end - start};
            readable = line[rest] == 'r';
            isPlainRange = isPlain(line + rest);
        } else if (std::strncmp(line, "VmFlags:", 8) == 0 && readable && belongsInDump(line)) {
            plain[count] = isPlainRange;
            ranges[count++] = range;
        }
    }
    return count;
}

UntouchedPages::UntouchedPages()
{
    file_.take(open("/proc/self/pagemap", O_RDONLY | O_CLOEXEC));
}

std::uint64_t UntouchedPages::from(std::uint64_t address, std::uint64_t size)
{
    const auto pageSize = static_cast<std::uint64_t>(sysconf(_SC_PAGESIZE));
    constexpr std::uint64_t inMemoryOrSwap = 3ULL << 62;
    const std::uint64_t page = address / pageSize;
    if (page < first_ || page >= first_ + count_) {
        const std::size_t wanted = std::min<std::uint64_t>(size / pageSize, std::size(pages_)) * sizeof pages_[0];
        const ssize_t read = file_.open() ? pread(file_.get(), pages_, wanted, static_cast<off_t>(page * sizeof pages_[0])) : 0;
        first_ = page;
        count_ = read > 0 ? static_cast<std::uint64_t>(read) / sizeof pages_[0] : 0;
    }
    std::uint64_t at = page - first_;
    while (at < count_ && (pages_[at] & inMemoryOrSwap) == 0) {
        ++at;
    }
    return std::min((first_ + at - page) * pageSize, size);
}

} // namespace brvUtils::os
