#include "brvUtils/os/InputFile.h"

#include "brvUtils/os/Encoding.h"

#include <algorithm>
#include <windows.h>

namespace brvUtils::os {
namespace {

HANDLE handleOf(std::intptr_t file)
{
    return reinterpret_cast<HANDLE>(file);
}

constexpr std::size_t longestRead = 1u << 30;

} // namespace

InputFile::~InputFile()
{
    if (file_ != none) {
        CloseHandle(handleOf(file_));
    }
}

ErrorCode InputFile::open(const std::string& path)
{
    static_assert(none == -1, "which is INVALID_HANDLE_VALUE");
    file_ = reinterpret_cast<std::intptr_t>(CreateFileW(wideFromUtf8(path).c_str(), GENERIC_READ,
        FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (file_ == none) {
        return GetLastError();
    }
    LARGE_INTEGER size;
    if (GetFileType(handleOf(file_)) != FILE_TYPE_DISK || !GetFileSizeEx(handleOf(file_), &size)) {
        return error::accessDenied;
    }
    size_ = static_cast<std::uint64_t>(size.QuadPart);
    return error::none;
}

ErrorCode InputFile::read(std::uint64_t offset, void* to, std::size_t count, std::size_t& got) const
{
    got = 0;
    while (got < count) {
        OVERLAPPED place {};
        place.Offset = static_cast<DWORD>(offset + got);
        place.OffsetHigh = static_cast<DWORD>((offset + got) >> 32);
        DWORD part = 0;
        const auto wanted = static_cast<DWORD>(std::min(count - got, longestRead));
        if (!ReadFile(handleOf(file_), static_cast<char*>(to) + got, wanted, &part, &place)) {
            const ErrorCode error = GetLastError();
            return error == ERROR_HANDLE_EOF ? error::none : error;
        }
        if (part == 0) {
            break;
        }
        got += part;
    }
    return error::none;
}

} // namespace brvUtils::os
