#pragma once

#include <windows.h>

#include <winternl.h>

namespace brvUtils::os {

/// What the system's lowest library tells of named objects. Its functions are in no import library, so that they are looked
/// for at run time; their structures stand here as it documents them.

struct DirectoryEntry
{
    UNICODE_STRING name;
    UNICODE_STRING type;
};

struct SemaphoreState
{
    LONG count;
    LONG maximum;
};

struct EventStateRead
{
    LONG type; ///< 0 for one that is reset by hand.
    LONG state;
};

struct SectionState
{
    void* base;
    ULONG attributes;
    LARGE_INTEGER size;
};

class ObjectQueries
{
public:
    static constexpr ACCESS_MASK queryState = 1;
    static constexpr ACCESS_MASK queryDirectory = 1;

    ObjectQueries()
    {
        const HMODULE library = GetModuleHandleW(L"ntdll.dll"); // in each process from its start
        find(library, "NtOpenDirectoryObject", openDirectory);
        find(library, "NtQueryDirectoryObject", readDirectory);
        find(library, "NtQuerySemaphore", querySemaphore);
        find(library, "NtQueryEvent", queryEvent);
        find(library, "NtQuerySection", querySection);
    }

    bool complete() const
    {
        return openDirectory != nullptr && readDirectory != nullptr && querySemaphore != nullptr && queryEvent != nullptr
            && querySection != nullptr;
    }

    using Query = NTSTATUS WINAPI(HANDLE object, int kind, void* result, ULONG size, ULONG* length);

    NTSTATUS(WINAPI* openDirectory)(HANDLE* directory, ACCESS_MASK access, OBJECT_ATTRIBUTES* attributes) = nullptr;
    NTSTATUS(WINAPI* readDirectory)(HANDLE directory, void* buffer, ULONG size, BOOLEAN single, BOOLEAN restart, ULONG* context, ULONG* length) = nullptr;
    Query* querySemaphore = nullptr;
    Query* queryEvent = nullptr;
    NTSTATUS(WINAPI* querySection)(HANDLE object, int kind, void* result, SIZE_T size, SIZE_T* length) = nullptr;

private:
    template <typename Function>
    static void find(HMODULE library, const char* name, Function*& function)
    {
        function = reinterpret_cast<Function*>(reinterpret_cast<void*>(GetProcAddress(library, name)));
    }
};

} // namespace brvUtils::os
