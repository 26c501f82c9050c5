#include "brvUtils/os/StandardStreams.h"

#include <cerrno>
#include <cstdio>

#include <fcntl.h>
#include <io.h>
#include <windows.h>

namespace brvUtils::os {

namespace {

void flushBoth()
{
    std::fflush(stdout);
    std::fflush(stderr);
}

/// What a function of the C library failed with; it need not tell the system's last error.
ErrorCode libraryError()
{
    return errno == EMFILE ? error::tooManyOpenFiles : error::invalidHandle;
}

/// A file without a name that others could meet, gone with its last handle.
ErrorCode openTemporaryFile(std::wstring& name, int& file)
{
    wchar_t folder[MAX_PATH + 1];
    wchar_t path[MAX_PATH];
    if (GetTempPathW(MAX_PATH + 1, folder) == 0 || GetTempFileNameW(folder, L"brv", 0, path) == 0) {
        return GetLastError();
    }
    name = path;
    const HANDLE handle = CreateFileW(path, GENERIC_READ | GENERIC_WRITE | DELETE,
        FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, CREATE_ALWAYS,
        FILE_ATTRIBUTE_TEMPORARY | FILE_FLAG_DELETE_ON_CLOSE, nullptr);
    if (handle == INVALID_HANDLE_VALUE) {
        const ErrorCode code = GetLastError();
        DeleteFileW(path);
        return code;
    }
    file = _open_osfhandle(reinterpret_cast<intptr_t>(handle), _O_TEXT);
    if (file < 0) {
        const ErrorCode code = libraryError();
        CloseHandle(handle);
        return code;
    }
    return error::none;
}

std::string readFile(const std::wstring& name)
{
    const HANDLE file = CreateFileW(name.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
        OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    std::string text;
    char buffer[4096];
    DWORD size = 0;
    while (file != INVALID_HANDLE_VALUE && ReadFile(file, buffer, sizeof buffer, &size, nullptr) && size > 0) {
        text.append(buffer, size);
    }
    CloseHandle(file);
    return text;
}

} // namespace

struct StandardStreamCapture::System
{
    int stream;
    int saved = -1;
    int file = -1;
    bool translated = false; ///< Whether the C library writes line ends of two characters to the stream.
    std::wstring name;
    ErrorCode error = error::none;
};

void useBinaryStandardStreams()
{
    for (const int stream : {0, 1, 2}) {
        _setmode(stream, _O_BINARY);
    }
}

StandardStreamCapture::StandardStreamCapture(StandardStream stream) : system_(new System)
{
    flushBoth();
    system_->stream = static_cast<int>(stream);
    system_->error = openTemporaryFile(system_->name, system_->file);
    if (system_->error != error::none) {
        return;
    }
    system_->saved = _dup(system_->stream);
    if (system_->saved < 0) {
        system_->error = libraryError();
        return;
    }
    const int mode = _setmode(system_->stream, _O_TEXT);
    if (_dup2(system_->file, system_->stream) != 0) {
        system_->error = libraryError();
    }
    system_->translated = mode != _O_BINARY;
    _setmode(system_->stream, mode);
}

StandardStreamCapture::~StandardStreamCapture()
{
    flushBoth();
    if (system_->saved >= 0) {
        _dup2(system_->saved, system_->stream);
        _close(system_->saved);
    }
    if (system_->file >= 0) {
        _close(system_->file);
    }
}

ErrorCode StandardStreamCapture::error() const
{
    return system_->error;
}

std::string StandardStreamCapture::text() const
{
    flushBoth();
    std::string text = readFile(system_->name);
    for (std::size_t at = 0; system_->translated && (at = text.find("\r\n", at)) != std::string::npos; ++at) {
        text.erase(at, 1);
    }
    return text;
}

} // namespace brvUtils::os
