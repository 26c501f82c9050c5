#include "rfm2g/RingFile.h"

#include <filesystem>
#include <system_error>
#include <windows.h>

namespace softwareCard {

namespace {

// Locked bytes, beyond any that the file has.
constexpr std::uint64_t lockedByte = std::uint64_t{1} << 40;
constexpr std::uint64_t firstPlace = lockedByte + 1;

HANDLE handleOf(std::intptr_t file)
{
    return reinterpret_cast<HANDLE>(file);
}

OVERLAPPED at(std::uint64_t offset)
{
    OVERLAPPED place{};
    place.Offset = static_cast<DWORD>(offset);
    place.OffsetHigh = static_cast<DWORD>(offset >> 32);
    return place;
}

bool lockByte(std::intptr_t file, std::uint64_t byte, DWORD flags)
{
    OVERLAPPED place = at(byte);
    return LockFileEx(handleOf(file), LOCKFILE_EXCLUSIVE_LOCK | flags, 0, 1, 0, &place) != 0;
}

void unlockByte(std::intptr_t file, std::uint64_t byte)
{
    OVERLAPPED place = at(byte);
    UnlockFileEx(handleOf(file), 0, 1, 0, &place);
}

bool setLength(std::intptr_t file, std::uint64_t length)
{
    LARGE_INTEGER end{};
    end.QuadPart = static_cast<LONGLONG>(length);
    return SetFilePointerEx(handleOf(file), end, nullptr, FILE_BEGIN) != 0 && SetEndOfFile(handleOf(file)) != 0;
}

} // namespace

RingFile::RingFile(const std::string& path, Missing missing) : path_(path)
{
    // Shared, but not for removing it: a ring that anybody has open stays. Of little interest to the disk.
    const HANDLE file = CreateFileW(std::filesystem::u8path(path).c_str(), GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
        nullptr, missing == Missing::make ? OPEN_ALWAYS : OPEN_EXISTING, FILE_ATTRIBUTE_TEMPORARY, nullptr);
    file_ = reinterpret_cast<std::intptr_t>(file);
    if (file == INVALID_HANDLE_VALUE) {
        fail("it cannot be opened");
    }
}

RingFile::~RingFile()
{
    if (memory_ != nullptr) {
        UnmapViewOfFile(memory_);
    }
    if (handleOf(file_) != INVALID_HANDLE_VALUE) {
        CloseHandle(handleOf(file_));
    }
}

bool RingFile::fail(const char* what)
{
    const DWORD code = GetLastError();
    problem_ = path_ + ": " + what + " (" + std::system_category().message(static_cast<int>(code)) + ")";
    return false;
}

bool RingFile::lock()
{
    locked_.lock();
    if (lockByte(file_, lockedByte, 0)) {
        return true;
    }
    fail("it cannot be locked");
    locked_.unlock();
    return false;
}

void RingFile::unlock()
{
    if (handleOf(file_) != INVALID_HANDLE_VALUE) {
        unlockByte(file_, lockedByte);
    }
    locked_.unlock();
}

bool RingFile::wasRemoved() const
{
    return false;
}

bool RingFile::remove()
{
    CloseHandle(handleOf(file_));
    file_ = reinterpret_cast<std::intptr_t>(INVALID_HANDLE_VALUE);
    return DeleteFileW(std::filesystem::u8path(path_).c_str()) != 0 || fail("it cannot be removed");
}

std::uint64_t RingFile::size() const
{
    LARGE_INTEGER size{};
    return GetFileSizeEx(handleOf(file_), &size) != 0 ? static_cast<std::uint64_t>(size.QuadPart) : 0;
}

bool RingFile::clear(std::uint64_t size)
{
    return (setLength(file_, 0) && setLength(file_, size)) || fail("it cannot have its size");
}

bool RingFile::readStart(void* to, std::size_t length)
{
    OVERLAPPED start = at(0);
    DWORD count = 0;
    return (ReadFile(handleOf(file_), to, static_cast<DWORD>(length), &count, &start) != 0 && count == length) || fail("it cannot be read");
}

bool RingFile::map(std::uint64_t length)
{
    const HANDLE mapping = CreateFileMappingW(handleOf(file_), nullptr, PAGE_READWRITE, 0, 0, nullptr);
    if (mapping != nullptr) {
        memory_ = MapViewOfFile(mapping, FILE_MAP_WRITE, 0, 0, static_cast<SIZE_T>(length));
        // The view keeps the mapping.
        const DWORD code = GetLastError();
        CloseHandle(mapping);
        SetLastError(code);
    }
    mapped_ = length;
    return memory_ != nullptr || fail("it cannot be mapped");
}

bool RingFile::reserve(std::uint64_t, std::uint64_t)
{
    // A file that is not sparse has its space since it has its size.
    return true;
}

bool RingFile::isTaken(unsigned place)
{
    const bool taken = !take(place);
    if (!taken) {
        free(place);
    }
    return taken;
}

bool RingFile::take(unsigned place)
{
    return lockByte(file_, firstPlace + place, LOCKFILE_FAIL_IMMEDIATELY);
}

void RingFile::free(unsigned place)
{
    unlockByte(file_, firstPlace + place);
}

} // namespace softwareCard
