#include "brvUtils/os/linux/FullMemory.h"

#include "brvUtils/os/linux/MemoryMap.h"

#include <algorithm>
#include <cstring>
#include <google_breakpad/common/minidump_format.h>
#include <sys/mman.h>
#include <sys/uio.h>

namespace brvUtils::os {
namespace {

constexpr std::size_t mostRanges = 70'000; // the kernel allows 65,530 unless it was told otherwise
constexpr std::size_t mostStreams = 64;
constexpr std::size_t page = 4096;

alignas(16) char buffer[64 * page]; // of the copy of the process alone

struct MemoryListStart
{
    std::uint64_t count;
    std::uint64_t bytesAt;
};

bool isZero(const char* bytes, std::size_t size)
{
    return bytes[0] == 0 && std::memcmp(bytes, bytes + 1, size - 1) == 0;
}

/// Reads without a fault what may be unreadable in spite of its flags, such as what lies behind the end of a mapped file.
bool readMemory(std::uint64_t address, std::size_t size)
{
    const iovec to{buffer, size};
    const iovec from{reinterpret_cast<void*>(address), size}; // NOLINT: an address is what it is
    return process_vm_readv(getpid(), &to, 1, &from, 1, 0) == static_cast<ssize_t>(size);
}

bool appendPages(std::uint64_t address, std::size_t size, DumpTarget& target)
{
    if (!readMemory(address, size)) {
        if (size == page) {
            target.skip(size);
            return true;
        }
        for (std::size_t at = 0; at < size; at += page) {
            if (!appendPages(address + at, page, target)) {
                return false;
            }
        }
        return true;
    }
    for (std::size_t at = 0; at < size; at += page) {
        if (isZero(buffer + at, page)) {
            target.skip(page);
        } else if (!target.append(buffer + at, page)) {
            return false;
        }
    }
    return true;
}

bool appendRange(const MemoryRange& range, DumpTarget& target, CopyNotes& notes)
{
    for (std::uint64_t at = 0; at < range.size; at += sizeof buffer) {
        const auto size = static_cast<std::size_t>(std::min<std::uint64_t>(sizeof buffer, range.size - at));
        if (!appendPages(range.start + at, size, target)) {
            return false;
        }
        notes.live();
    }
    return true;
}

} // namespace

bool appendMinidump(int minidump, DumpTarget& target)
{
    ssize_t count = 0;
    while ((count = pread(minidump, buffer, sizeof buffer, static_cast<off_t>(target.position()))) > 0) {
        if (!target.append(buffer, static_cast<std::size_t>(count))) {
            return false;
        }
    }
    return count == 0;
}

bool appendWithFullMemory(int minidump, DumpTarget& target, CopyNotes& notes)
{
    MDRawHeader header{};
    MDRawDirectory streams[mostStreams + 1];
    const off_t end = lseek(minidump, 0, SEEK_END);
    if (end < 0 || pread(minidump, &header, sizeof header, 0) != sizeof header || header.stream_count > mostStreams) {
        return false;
    }
    const auto listSize = static_cast<ssize_t>(header.stream_count * sizeof(MDRawDirectory));
    if (pread(minidump, streams, static_cast<std::size_t>(listSize), header.stream_directory_rva) != listSize) {
        return false;
    }
    void* room = mmap(nullptr, mostRanges * sizeof(MemoryRange), PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (room == MAP_FAILED) {
        return false;
    }
    auto* ranges = static_cast<MemoryRange*>(room);
    const std::size_t count = readMemoryMap(ranges, mostRanges);

    // Offsets in the directory have 32 bits, so it stands before the bytes.
    const auto directoryAt = static_cast<std::uint32_t>((end + 7) / 8 * 8);
    MDRawDirectory& memory = streams[header.stream_count++];
    memory.stream_type = MD_MEMORY_64_LIST_STREAM;
    memory.location.rva = directoryAt + static_cast<std::uint32_t>(header.stream_count * sizeof(MDRawDirectory));
    memory.location.data_size = static_cast<std::uint32_t>(sizeof(MemoryListStart) + count * sizeof(MemoryRange));
    const MemoryListStart start{count, memory.location.rva + memory.location.data_size};
    header.stream_directory_rva = directoryAt;
    header.flags |= MD_WITH_FULL_MEMORY;
    if (pwrite(minidump, &header, sizeof header, 0) != sizeof header || !appendMinidump(minidump, target)) {
        return false;
    }
    target.skip(directoryAt - target.position());
    bool whole = target.append(streams, header.stream_count * sizeof(MDRawDirectory)) && target.append(&start, sizeof start)
        && target.append(ranges, count * sizeof(MemoryRange));
    for (std::size_t range = 0; whole && range < count; ++range) {
        whole = appendRange(ranges[range], target, notes);
    }
    munmap(room, mostRanges * sizeof(MemoryRange));
    return whole;
}

} // namespace brvUtils::os
