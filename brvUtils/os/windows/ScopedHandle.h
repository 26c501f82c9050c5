#pragma once

#include <windows.h>

namespace brvUtils::os {

/// Owns a kernel handle. Null when it owns none; the other value by which functions say "none" is taken as null.
class ScopedHandle
{
public:
    explicit ScopedHandle(HANDLE handle = nullptr) { take(handle); }
    ~ScopedHandle() { close(); }
    ScopedHandle(const ScopedHandle&) = delete;
    ScopedHandle& operator=(const ScopedHandle&) = delete;

    HANDLE get() const { return handle_; }
    bool open() const { return handle_ != nullptr; }
    void take(HANDLE handle)
    {
        close();
        handle_ = handle == INVALID_HANDLE_VALUE ? nullptr : handle;
    }
    void close()
    {
        if (open()) {
            CloseHandle(handle_);
            handle_ = nullptr;
        }
    }

private:
    HANDLE handle_ = nullptr;
};

} // namespace brvUtils::os
