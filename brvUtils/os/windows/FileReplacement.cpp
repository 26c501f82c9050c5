#include "brvUtils/os/FileSystem.h"

#include "brvUtils/os/Encoding.h"
#include "brvUtils/os/windows/ScopedHandle.h"

#include <windows.h>

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <cstring>
#include <vector>

namespace brvUtils::os {
namespace {

constexpr int patience = 100; // attempts, 10 ms apart
constexpr ULONGLONG readersPatience = 1000; // ms

bool isFolder(const std::wstring& path)
{
    const DWORD attributes = GetFileAttributesW(path.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

/// Opens a file that others may be replacing at this moment, during which the system refuses it.
void openForReading(const std::wstring& path, ScopedHandle& file)
{
    const ULONGLONG start = GetTickCount64();
    while (true) {
        // Sharing everything, so as to stand in the way of nobody who replaces the file.
        file.take(CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
            OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
        const DWORD fault = file.open() ? ERROR_SUCCESS : GetLastError();
        const bool mayPass = fault == ERROR_SHARING_VIOLATION || (fault == ERROR_ACCESS_DENIED && !isFolder(path));
        if (!mayPass || GetTickCount64() - start >= readersPatience) {
            SetLastError(fault);
            return;
        }
        Sleep(1);
    }
}

/// Makes a file of a new name beside `path` and gives the name.
std::wstring createBeside(const std::wstring& path, ScopedHandle& file)
{
    static std::atomic<unsigned> count { 0 };
    std::wstring name;
    do {
        name = path + L"~" + std::to_wstring(GetCurrentProcessId()) + L"-" + std::to_wstring(++count);
        file.take(CreateFileW(name.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr));
    } while (!file.open() && GetLastError() == ERROR_FILE_EXISTS);
    return name;
}

bool writeAll(HANDLE file, const std::string& contents)
{
    constexpr std::size_t most = 1U << 30;
    for (std::size_t done = 0; done < contents.size();) {
        DWORD count = 0;
        if (!WriteFile(file, contents.data() + done, static_cast<DWORD>(std::min(contents.size() - done, most)), &count, nullptr)) {
            return false;
        }
        done += count;
    }
    return true;
}

/// Renames a file over another that others may have open, if they share it for deletion; they go on with the old bytes.
/// Windows 10 and later can, on local disks.
bool renameOverOpen(const std::wstring& written, const std::wstring& path)
{
    // As in headers for those systems.
    constexpr auto renameInfoEx = static_cast<FILE_INFO_BY_HANDLE_CLASS>(22);
    constexpr DWORD replaceIfExists = 1;
    constexpr DWORD posixSemantics = 2;
    struct RenameInfoEx
    {
        DWORD flags;
        HANDLE root;
        DWORD nameBytes;
        WCHAR name[1];
    };

    std::wstring target(GetFullPathNameW(path.c_str(), 0, nullptr, nullptr), L'\0');
    target.resize(GetFullPathNameW(path.c_str(), static_cast<DWORD>(target.size()), target.data(), nullptr));
    const ScopedHandle file(CreateFileW(written.c_str(), DELETE | SYNCHRONIZE, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
        nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL | FILE_FLAG_WRITE_THROUGH, nullptr));
    if (!file.open() || target.empty()) {
        return false;
    }
    const std::size_t bytes = target.size() * sizeof(WCHAR);
    const RenameInfoEx head { replaceIfExists | posixSemantics, nullptr, static_cast<DWORD>(bytes), {} };
    std::vector<char> request(sizeof head + bytes); // with a null behind the name
    std::memcpy(request.data(), &head, sizeof head);
    std::memcpy(request.data() + offsetof(RenameInfoEx, name), target.data(), bytes);
    return SetFileInformationByHandle(file.get(), renameInfoEx, request.data(), static_cast<DWORD>(request.size()));
}

/// Renames a file over another. Where that fails as long as anybody has the other one open it waits, since readers have
/// it open for a moment only.
bool putInPlace(const std::wstring& written, const std::wstring& path)
{
    for (int attempt = 1; !renameOverOpen(written, path)
         && !MoveFileExW(written.c_str(), path.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH);
         ++attempt) {
        const DWORD fault = GetLastError();
        if (attempt == patience || (fault != ERROR_SHARING_VIOLATION && fault != ERROR_ACCESS_DENIED)) {
            return false;
        }
        Sleep(10);
    }
    return true;
}

} // namespace

ErrorCode readFile(const std::string& path, std::string& contents)
{
    ScopedHandle file;
    openForReading(wideFromUtf8(path), file);
    if (!file.open()) {
        return GetLastError();
    }
    if (GetFileType(file.get()) != FILE_TYPE_DISK) {
        return error::accessDenied;
    }
    std::string bytes;
    std::string part(1U << 20, '\0');
    DWORD count = 0;
    do {
        if (!ReadFile(file.get(), part.data(), static_cast<DWORD>(part.size()), &count, nullptr)) {
            return GetLastError();
        }
        bytes.append(part, 0, count);
    } while (count != 0);
    contents.swap(bytes);
    return error::none;
}

ErrorCode replaceFile(const std::string& path, const std::string& contents)
{
    const std::wstring target = wideFromUtf8(path);
    const DWORD old = GetFileAttributesW(target.c_str());
    if (old != INVALID_FILE_ATTRIBUTES && (old & (FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_READONLY)) != 0) {
        return error::accessDenied;
    }
    ScopedHandle file;
    const std::wstring written = createBeside(target, file);
    if (!file.open()) {
        return GetLastError();
    }
    bool success = writeAll(file.get(), contents) && FlushFileBuffers(file.get());
    ErrorCode result = success ? error::none : GetLastError();
    file.close();
    if (success) {
        success = (old == INVALID_FILE_ATTRIBUTES || SetFileAttributesW(written.c_str(), old)) && putInPlace(written, target);
        result = success ? error::none : GetLastError();
    }
    if (!success) {
        DeleteFileW(written.c_str());
    }
    return result;
}

struct FileLock::Held
{
    ScopedHandle file;
};

FileLock::FileLock(const std::string& path) : held_(std::make_unique<Held>())
{
    const std::wstring name = wideFromUtf8(path + ".lock");
    // Who has the file open shares it with nobody, and the system removes it when its holder is gone, however that ended.
    // While it is being removed it is denied: only denials that last mean something.
    for (int denials = 0; denials < patience; Sleep(denials == 0 ? 1 : 10)) {
        held_->file.take(CreateFileW(name.c_str(), GENERIC_WRITE | DELETE, 0, nullptr, OPEN_ALWAYS,
            FILE_ATTRIBUTE_TEMPORARY | FILE_FLAG_DELETE_ON_CLOSE, nullptr));
        error_ = held_->file.open() ? error::none : GetLastError();
        if (error_ == ERROR_ACCESS_DENIED) {
            ++denials;
        } else if (error_ != ERROR_SHARING_VIOLATION) {
            return;
        } else {
            denials = 0;
        }
    }
}

FileLock::~FileLock() = default;

} // namespace brvUtils::os
