#include "brvUtils/os/FileSystem.h"

#include "brvUtils/os/Calendar.h"
#include "brvUtils/os/Encoding.h"
#include "brvUtils/os/windows/ScopedHandle.h"

#include <windows.h>

#include <cstdlib>
#include <sys/stat.h>
#include <wchar.h>

namespace brvUtils::os {
namespace {

constexpr std::int64_t ticksPerSecond = 10'000'000; // of file times
constexpr std::int64_t secondsFrom1601To1970 = 11'644'473'600;

ErrorCode outcome(bool success)
{
    return success ? error::none : GetLastError();
}

/// A folder that holds its entries itself. Links and junctions lead elsewhere; other reparse points, as of files kept in
/// a cloud, are but a way to store it.
bool isOwnFolder(const WIN32_FIND_DATAW& entry)
{
    const bool leadsElsewhere = (entry.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0
        && (entry.dwReserved0 == IO_REPARSE_TAG_SYMLINK || entry.dwReserved0 == IO_REPARSE_TAG_MOUNT_POINT);
    return (entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0 && !leadsElsewhere;
}

/// Owns a search through a folder.
class Search
{
public:
    explicit Search(const std::wstring& pattern) : handle_(FindFirstFileW(pattern.c_str(), &found_)) {}
    ~Search()
    {
        if (open()) {
            FindClose(handle_);
        }
    }
    Search(const Search&) = delete;
    Search& operator=(const Search&) = delete;

    bool open() const { return handle_ != INVALID_HANDLE_VALUE; }
    bool next() { return FindNextFileW(handle_, &found_); }
    const WIN32_FIND_DATAW& found() const { return found_; }

private:
    WIN32_FIND_DATAW found_ {};
    HANDLE handle_;
};

} // namespace

std::size_t longestPath()
{
    return MAX_PATH;
}

ErrorCode fileStatus(const std::string& path, FileStatus& status)
{
    struct _stat64 entry {};
    if (_wstat64(wideFromUtf8(path).c_str(), &entry) != 0) {
        return _doserrno != 0 ? _doserrno : error::fileNotFound;
    }
    status.isFile = (entry.st_mode & _S_IFMT) == _S_IFREG;
    status.isFolder = (entry.st_mode & _S_IFMT) == _S_IFDIR;
    status.readable = (entry.st_mode & _S_IREAD) != 0;
    status.writable = (entry.st_mode & _S_IWRITE) != 0;
    status.executable = (entry.st_mode & _S_IEXEC) != 0;
    status.size = static_cast<std::uint64_t>(entry.st_size);
    return error::none;
}

ErrorCode modificationTime(const std::string& path, std::int64_t& seconds)
{
    // Not by the run-time library: old ones are an hour off for times of the other half of the year.
    const ScopedHandle file(CreateFileW(wideFromUtf8(path).c_str(), FILE_READ_ATTRIBUTES,
        FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr));
    FILETIME time;
    if (!file.open() || !GetFileTime(file.get(), nullptr, nullptr, &time)) {
        return GetLastError();
    }
    const std::uint64_t ticks = std::uint64_t { time.dwHighDateTime } << 32 | time.dwLowDateTime;
    seconds = static_cast<std::int64_t>(ticks / ticksPerSecond) - secondsFrom1601To1970;
    return error::none;
}

ErrorCode setModificationTime(const std::string& path, std::int64_t seconds)
{
    if (seconds < 0 || seconds > endOfCalendar) {
        return error::invalidParameter;
    }
    const ScopedHandle file(CreateFileW(wideFromUtf8(path).c_str(), GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
        nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    FILE_BASIC_INFO information;
    if (!file.open() || !GetFileInformationByHandleEx(file.get(), FileBasicInfo, &information, sizeof information)) {
        return GetLastError();
    }
    information.LastWriteTime.QuadPart = (seconds + secondsFrom1601To1970) * ticksPerSecond;
    information.LastAccessTime = information.LastWriteTime;
    information.FileAttributes = 0; // as they are
    return outcome(SetFileInformationByHandle(file.get(), FileBasicInfo, &information, sizeof information));
}

ErrorCode makeFolder(const std::string& path)
{
    return outcome(CreateDirectoryW(wideFromUtf8(path).c_str(), nullptr));
}

ErrorCode listFolder(const std::string& path, std::vector<FolderEntry>& entries)
{
    entries.clear();
    Search search(wideFromUtf8(path) + L"\\*");
    if (!search.open()) {
        return GetLastError();
    }
    // A listing that was disturbed may go on when asked again, but one of a drive that is gone never does.
    for (int faults = 0; faults < 100;) {
        if (search.next()) {
            const std::wstring name = search.found().cFileName;
            if (name != L"." && name != L"..") {
                entries.push_back({ utf8FromWide(name), isOwnFolder(search.found()) });
            }
        } else if (GetLastError() == ERROR_NO_MORE_FILES) {
            return error::none;
        } else {
            ++faults;
        }
    }
    return GetLastError();
}

ErrorCode deleteFile(const std::string& path)
{
    const std::wstring name = wideFromUtf8(path);
    const DWORD attributes = GetFileAttributesW(name.c_str());
    if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_READONLY) != 0) {
        SetFileAttributesW(name.c_str(), attributes & ~DWORD { FILE_ATTRIBUTE_READONLY });
    }
    return outcome(DeleteFileW(name.c_str()));
}

std::string pathForLibraries(const std::string& path)
{
    return path;
}

ErrorCode temporaryFolder(std::string& path)
{
    std::wstring text(GetTempPathW(0, nullptr), L'\0');
    if (text.empty()) {
        return GetLastError();
    }
    const DWORD length = GetTempPathW(static_cast<DWORD>(text.size()), text.data());
    if (length == 0 || length > text.size()) {
        return length == 0 ? GetLastError() : error::notEnoughMemory;
    }
    path = utf8FromWide(text.substr(0, length));
    return error::none;
}

std::string spellingOnDisk(const std::string& path)
{
    const std::string name = path.substr(path.find_last_of("/\\") + 1); // npos + 1 is the start
    if (path.find_first_of("*?") != std::string::npos) {
        return name;
    }
    const Search search(wideFromUtf8(path));
    return search.open() ? utf8FromWide(search.found().cFileName) : name;
}

bool sameFileName(const std::string& a, const std::string& b)
{
    return CompareStringOrdinal(wideFromUtf8(a).c_str(), -1, wideFromUtf8(b).c_str(), -1, TRUE) == CSTR_EQUAL;
}

} // namespace brvUtils::os
