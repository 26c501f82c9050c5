#include "brvUtils/os/DumpFile.h"

#include "brvUtils/os/windows/CrashRecord.h"
#include "brvUtils/os/windows/WideText.h"
#include "brvUtils/os/windows/CrashThread.h"
#include "brvUtils/os/windows/ScopedHandle.h"

#include <windows.h>

#include <atomic>

#include <dbghelp.h>

namespace brvUtils::os {
namespace {

constexpr ULONG32 signature = 0x504D444D; // "MDMP"
constexpr DWORD patience = 20'000; // ms
constexpr DWORD patienceForAllMemory = 300'000;

SRWLOCK oneDump = SRWLOCK_INIT; // as dbghelp demands
std::atomic<DWORD> writer { 0 };

/// Leaves out the guard, which has nothing to do with the crash: threads in a dump are halted while it is written.
BOOL CALLBACK choose(void*, MINIDUMP_CALLBACK_INPUT* input, MINIDUMP_CALLBACK_OUTPUT*)
{
    switch (input->CallbackType) {
    case IncludeThreadCallback: return input->IncludeThread.ThreadId != crashGuard();
    case IncludeModuleCallback:
    case ModuleCallback:
    case ThreadCallback:
    case ThreadExCallback: return TRUE;
    default: return FALSE; // no wishes
    }
}

/// Reads a part of a file. \return whether all of it is there.
bool readAt(HANDLE file, ULONGLONG offset, void* bytes, DWORD size) noexcept
{
    LARGE_INTEGER position;
    position.QuadPart = static_cast<LONGLONG>(offset);
    DWORD count = 0;
    return SetFilePointerEx(file, position, nullptr, FILE_BEGIN) && ReadFile(file, bytes, size, &count, nullptr) && count == size;
}

/// Where a stream ends, with the memory that one of them has outside; 0 when it cannot be read.
ULONGLONG endOfStream(HANDLE file, const MINIDUMP_DIRECTORY& stream) noexcept
{
    const ULONGLONG end = ULONGLONG { stream.Location.Rva } + stream.Location.DataSize;
    if (stream.StreamType != Memory64ListStream) {
        return end;
    }
    ULONG64 head[2] = {}; // count of ranges, offset of the first one's bytes
    if (!readAt(file, stream.Location.Rva, head, sizeof head)) {
        return 0;
    }
    ULONGLONG memory = head[1];
    for (ULONG64 i = 0; i < head[0]; ++i) {
        MINIDUMP_MEMORY_DESCRIPTOR64 range {};
        if (!readAt(file, stream.Location.Rva + sizeof head + i * sizeof range, &range, sizeof range)) {
            return 0;
        }
        memory += range.DataSize;
    }
    return memory > end ? memory : end;
}

/// Whether all streams lie within the file. Not every system's writer tells when the disk is full.
bool isWhole(HANDLE file) noexcept
{
    LARGE_INTEGER size {};
    MINIDUMP_HEADER header {};
    if (!GetFileSizeEx(file, &size) || !readAt(file, 0, &header, sizeof header) || header.Signature != signature) {
        return false;
    }
    for (DWORD i = 0; i < header.NumberOfStreams; ++i) {
        MINIDUMP_DIRECTORY stream {};
        if (!readAt(file, header.StreamDirectoryRva + ULONGLONG { i } * sizeof stream, &stream, sizeof stream)) {
            return false;
        }
        const ULONGLONG end = endOfStream(file, stream);
        if ((end == 0 && stream.StreamType != UnusedStream) || end > static_cast<ULONGLONG>(size.QuadPart)) {
            return false;
        }
    }
    return header.NumberOfStreams != 0;
}

/// Whether the file goes with its last handle, whatever becomes of this process.
bool setTemporary(HANDLE file, bool temporary) noexcept
{
    FILE_DISPOSITION_INFO disposition { temporary };
    return SetFileInformationByHandle(file, FileDispositionInfo, &disposition, sizeof disposition) != FALSE;
}

bool writeDump(const wchar_t* path, MINIDUMP_TYPE type, EXCEPTION_POINTERS* exception, DWORD thread) noexcept
{
    ScopedHandle file(CreateFileW(path, GENERIC_READ | GENERIC_WRITE | DELETE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!file.open()) {
        return false;
    }
    const bool temporary = setTemporary(file.get(), true);
    MINIDUMP_EXCEPTION_INFORMATION information { thread, exception, TRUE };
    MINIDUMP_CALLBACK_INFORMATION choice { choose, nullptr };
    // Without symbols: Wine, which finds that nobody has begun, would read those of all modules, for seconds, and add what
    // unwinds each of their functions. Windows does not look at them.
    const bool begun = SymInitialize(GetCurrentProcess(), "", FALSE);
    const bool written = MiniDumpWriteDump(GetCurrentProcess(), GetCurrentProcessId(), file.get(), type, &information, nullptr, &choice)
        && isWhole(file.get()) && (!temporary || setTemporary(file.get(), false));
    if (begun) {
        SymCleanup(GetCurrentProcess()); // the program may want to begin itself
    }
    file.close();
    if (!written) {
        DeleteFileW(path);
    }
    return written;
}

} // namespace

bool writeDumpFile(const char* file, DumpContents contents, EXCEPTION_POINTERS* exception) noexcept
{
    if (exception == nullptr) {
        constexpr DWORD simulated = 0x0517A7ED; // as readers of dumps know it
        CrashRecord record(simulated);
        return writeDumpFile(file, contents, record.pointers());
    }
    WidePath path;
    const DWORD self = GetCurrentThreadId();
    if (!path.set(file) || writer == self) {
        return false; // by a crash within the writer
    }
    const bool full = contents == DumpContents::full;
    const CrashDeadline deadline(full ? patienceForAllMemory : patience);
    AcquireSRWLockExclusive(&oneDump);
    writer = self;
    const bool written = writeDump(path.text(), full ? static_cast<MINIDUMP_TYPE>(MiniDumpWithFullMemory | MiniDumpWithHandleData) : MiniDumpNormal,
        exception, crashedThread(exception));
    writer = 0;
    ReleaseSRWLockExclusive(&oneDump);
    return written;
}

} // namespace brvUtils::os
