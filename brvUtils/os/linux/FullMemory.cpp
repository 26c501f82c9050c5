#include "brvUtils/os/linux/FullMemory.h"

#include "brvUtils/os/linux/MemoryMap.h"

#include <algorithm>
#include <cstring>
#include <google_breakpad/common/minidump_format.h>
#include <new>
#include <sys/mman.h>
#include <sys/uio.h>

namespace brvUtils::os {
namespace {

constexpr std::size_t mostRanges = 70'000; // the kernel allows 65,530 unless it was told otherwise
constexpr std::size_t mostStreams = 64;
constexpr std::size_t page = 4096;

alignas(16) char buffer[64 * page]; // of the copy of the process alone

/// All memory as the map of it says, in pages of its own.
struct Memory
{
    MemoryRange ranges[mostRanges];
    bool plain[mostRanges];
    UntouchedPages untouched;
};

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

/// \param untouched null when what nobody has written to need not be zero.
bool appendRange(const MemoryRange& range, UntouchedPages* untouched, DumpTarget& target, CopyNotes& notes)
{
    std::uint64_t size = 0;
    for (std::uint64_t at = 0; at < range.size; at += size) {
        const std::uint64_t left = range.size - at;
        size = untouched != nullptr ? untouched->from(range.start + at, left) : 0;
        if (size > 0) {
            target.skip(size);
        } else {
            size = std::min<std::uint64_t>(sizeof buffer, left);
            if (!appendPages(range.start + at, static_cast<std::size_t>(size), target)) {
                return false;
            }
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
    void* room = mmap(nullptr, sizeof(Memory), PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (room == MAP_FAILED) {
        return false;
    }
    auto& memory = *new (room) Memory;
    const std::size_t count = readMemoryMap(memory.ranges, memory.plain, mostRanges);

    // Offsets in the directory have 32 bits, so it stands before the bytes.
    const auto directoryAt = static_cast<std::uint32_t>((end + 7) / 8 * 8);
    MDRawDirectory& list = streams[header.stream_count++];
    list.stream_type = MD_MEMORY_64_LIST_STREAM;
    list.location.rva = directoryAt + static_cast<std::uint32_t>(header.stream_count * sizeof(MDRawDirectory));
    list.location.data_size = static_cast<std::uint32_t>(sizeof(MemoryListStart) + count * sizeof(MemoryRange));
    const MemoryListStart start{count, list.location.rva + list.location.data_size};
    header.stream_directory_rva = directoryAt;
    header.flags |= MD_WITH_FULL_MEMORY;
    if (pwrite(minidump, &header, sizeof header, 0) != sizeof header || !appendMinidump(minidump, target)) {
        return false;
    }
    target.skip(directoryAt - target.position());
    bool whole = target.append(streams, header.stream_count * sizeof(MDRawDirectory)) && target.append(&start, sizeof start)
        && target.append(memory.ranges, count * sizeof(MemoryRange));
    for (std::size_t range = 0; whole && range < count; ++range) {
        whole = appendRange(memory.ranges[range], memory.plain[range] ? &memory.untouched : nullptr, target, notes);
    }
    memory.~Memory();
    munmap(room, sizeof(Memory));
    return whole;
}

} // namespace brvUtils::os
