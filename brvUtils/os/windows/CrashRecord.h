#pragma once

#include <windows.h>

namespace brvUtils::os {

/// What an exception would tell that had been raised where this library was called. Only valid where it was made.
class CrashRecord
{
public:
    /// \param parameter when there is one, the first parameter of the exception.
    explicit CrashRecord(DWORD code, const ULONG_PTR* parameter = nullptr) noexcept;
    CrashRecord(const CrashRecord&) = delete;
    CrashRecord& operator=(const CrashRecord&) = delete;

    EXCEPTION_POINTERS* pointers() { return &pointers_; }

private:
    EXCEPTION_RECORD record_ {};
    CONTEXT context_ {};
    EXCEPTION_POINTERS pointers_ { &record_, &context_ };
};

} // namespace brvUtils::os
