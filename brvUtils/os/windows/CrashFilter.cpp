#include "brvUtils/os/CrashFilter.h"

#include "brvUtils/os/windows/CrashRecord.h"
#include "brvUtils/os/windows/CrashThread.h"

#include <atomic>
#include <csignal>
#include <cstddef>

namespace brvUtils::os {
namespace {

constexpr ULONG filterStack = 64 * 1024; // bytes
constexpr DWORD abortExitCode = 3; // of the C library

std::atomic<CrashFilter> installed { nullptr };
SRWLOCK oneCrash = SRWLOCK_INIT;

struct Call
{
    CrashFilter filter;
    EXCEPTION_POINTERS* exception;
    long verdict;
};

void runCall(void* argument)
{
    Call& call = *static_cast<Call*>(argument);
    call.verdict = call.filter(call.exception);
}

/// The lowest address of the calling thread's stack. \param left set to the bytes of it that are free.
char* stackBottom(std::size_t& left) noexcept
{
    MEMORY_BASIC_INFORMATION region {};
    VirtualQuery(&region, &region, sizeof region);
    left = static_cast<std::size_t>(reinterpret_cast<char*>(&region) - static_cast<char*>(region.AllocationBase));
    return static_cast<char*>(region.AllocationBase);
}

/// Whether there is stack for writing a dump.
bool hasStack() noexcept
{
    constexpr std::size_t enough = 256 * 1024;
    std::size_t left = 0;
    stackBottom(left);
    return left >= enough;
}

/// The first of several threads runs the filter, on the thread that crashed where its stack allows it: the locks that it
/// holds, as that of the heap, are open to itself only. Others get their turn when the first goes on, else wait for ever.
long runFilter(EXCEPTION_POINTERS* exception) noexcept
{
    if (worksOnCrash()) {
        TerminateProcess(GetCurrentProcess(), 0);
    }
    AcquireSRWLockExclusive(&oneCrash);
    Call call { installed, exception, crashGoesToSystem };
    if (call.filter != nullptr) {
        beginCrash(exception);
        if (hasStack()) {
            runCall(&call);
        } else if (!runOnCrashThread(runCall, &call)) {
            TerminateProcess(GetCurrentProcess(), 0);
        }
    }
    if (call.filter == nullptr || call.verdict == crashGoesOn) {
        endCrash();
        ReleaseSRWLockExclusive(&oneCrash);
    }
    return call.verdict;
}

LONG WINAPI onException(EXCEPTION_POINTERS* exception) noexcept
{
    return runFilter(exception);
}

/// The system asks no filter about a heap that it has found damaged.
LONG WINAPI onDamagedHeap(EXCEPTION_POINTERS* exception) noexcept
{
    constexpr DWORD heapCorruption = 0xC0000374;
    if (exception->ExceptionRecord->ExceptionCode != heapCorruption) {
        return EXCEPTION_CONTINUE_SEARCH;
    }
    const long verdict = runFilter(exception);
    if (verdict == crashEndsProcess) {
        TerminateProcess(GetCurrentProcess(), heapCorruption);
    }
    return verdict;
}

/// Called by `abort`, and so by `std::terminate`. Calls the filter itself: an exception could find a handler on its way.
void onAbort(int) noexcept
{
    // As the system reports programs that abort.
    constexpr DWORD failFast = 0xC0000409;
    constexpr ULONG_PTR fatalExit = 7;
    CrashRecord record(failFast, &fatalExit);
    const long verdict = runFilter(record.pointers());
    if (verdict == crashEndsProcess) {
        TerminateProcess(GetCurrentProcess(), abortExitCode);
    }
    if (verdict == crashGoesOn) {
        std::signal(SIGABRT, onAbort); // a handler is for one signal only
    }
}

/// Once for the life of the process. The system keeps addresses in this module, which therefore has to stay.
void prepareProcess() noexcept
{
    prepareCrashThreads();
    HMODULE self = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_PIN,
        reinterpret_cast<LPCWSTR>(&onException), &self);
    AddVectoredExceptionHandler(TRUE, onDamagedHeap);
}

} // namespace

CrashFilter setCrashFilter(CrashFilter filter) noexcept
{
    const CrashFilter before = installed.exchange(filter);
    if (filter != nullptr) {
        static const bool prepared = (prepareProcess(), true);
        static_cast<void>(prepared);
        prepareThreadForCrash();
        SetUnhandledExceptionFilter(onException);
        std::signal(SIGABRT, onAbort);
    } else if (before != nullptr) {
        SetUnhandledExceptionFilter(nullptr);
        std::signal(SIGABRT, SIG_DFL);
    }
    return before;
}

void prepareThreadForCrash() noexcept
{
    ULONG size = filterStack;
    if (!SetThreadStackGuarantee(&size)) {
        return;
    }
    // Wine has the whole stack in place, with its guard at the very end; it belongs above what was asked for.
    SYSTEM_INFO system;
    GetSystemInfo(&system);
    std::size_t left = 0;
    char* const guard = stackBottom(left) + system.dwPageSize + filterStack;
    MEMORY_BASIC_INFORMATION region {};
    if (left > 3 * filterStack && VirtualQuery(guard, &region, sizeof region) != 0 && region.State == MEM_COMMIT
        && region.Protect == PAGE_READWRITE) {
        DWORD protection = 0;
        VirtualProtect(guard, system.dwPageSize, PAGE_READWRITE | PAGE_GUARD, &protection);
    }
}

} // namespace brvUtils::os
