#include "brvUtils/os/windows/ChildPipe.h"

#include <atomic>

namespace brvUtils::os {

namespace {

constexpr DWORD pipeSize = 65536;

std::wstring uniquePipeName()
{
    static std::atomic<unsigned> count{0};
    LARGE_INTEGER ticks;
    QueryPerformanceCounter(&ticks);
    return L"\\\\.\\pipe\\brv-child-" + std::to_wstring(GetCurrentProcessId()) + L"-" + std::to_wstring(ticks.QuadPart) + L"-"
        + std::to_wstring(++count);
}

} // namespace

ErrorCode ChildPipe::create(Direction direction, ScopedHandle& childEnd)
{
    const std::wstring name = uniquePipeName();
    const bool reads = direction == Direction::fromChild;
    event_.take(CreateEventW(nullptr, TRUE, FALSE, nullptr));
    pipe_.take(CreateNamedPipeW(name.c_str(),
        (reads ? PIPE_ACCESS_INBOUND : PIPE_ACCESS_OUTBOUND) | FILE_FLAG_OVERLAPPED | FILE_FLAG_FIRST_PIPE_INSTANCE,
        PIPE_TYPE_BYTE | PIPE_WAIT | PIPE_REJECT_REMOTE_CLIENTS, 1, pipeSize, pipeSize, 0, nullptr));
    if (!event_.open() || !pipe_.open()) {
        return GetLastError();
    }
    SECURITY_ATTRIBUTES inheritable{sizeof inheritable, nullptr, TRUE};
    childEnd.take(CreateFileW(
        name.c_str(), reads ? GENERIC_WRITE : GENERIC_READ, 0, &inheritable, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!childEnd.open()) {
        return GetLastError();
    }
    overlapped_.hEvent = event_.get();
    return error::none;
}

void ChildPipe::close()
{
    if (!open()) {
        return;
    }
    // The system writes to this object until the operation has ended.
    if (CancelIoEx(pipe_.get(), &overlapped_) || GetLastError() != ERROR_NOT_FOUND) {
        DWORD size;
        GetOverlappedResult(pipe_.get(), &overlapped_, &size, TRUE);
    }
    pipe_.close();
    event_.close();
}

void ChildPipe::beginReading()
{
    buffer_.resize(4096);
    if (!ReadFile(pipe_.get(), buffer_.data(), static_cast<DWORD>(buffer_.size()), nullptr, &overlapped_)
        && GetLastError() != ERROR_IO_PENDING) {
        close();
    }
}

void ChildPipe::takeIn(std::string& text)
{
    DWORD size = 0;
    if (GetOverlappedResult(pipe_.get(), &overlapped_, &size, FALSE)) {
        text.append(buffer_, 0, size);
        beginReading();
    } else if (GetLastError() != ERROR_IO_INCOMPLETE) {
        close();
    }
}

bool ChildPipe::write(std::string& text)
{
    if (!open()) {
        return false;
    }
    if (!writing_) {
        buffer_ = text;
        writing_ = WriteFile(pipe_.get(), buffer_.data(), static_cast<DWORD>(buffer_.size()), nullptr, &overlapped_)
            || GetLastError() == ERROR_IO_PENDING;
        if (!writing_) {
            return false;
        }
    }
    DWORD size = 0;
    if (GetOverlappedResult(pipe_.get(), &overlapped_, &size, FALSE)) {
        text.erase(0, size);
        writing_ = false;
        return true;
    }
    return GetLastError() == ERROR_IO_INCOMPLETE;
}

} // namespace brvUtils::os
