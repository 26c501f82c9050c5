#include "brvUtils/os/windows/CrashThread.h"

#include <atomic>

namespace brvUtils::os {
namespace {

struct Guard
{
    DWORD slot = TlsAlloc(); // thread_local may take memory from the heap when a thread first uses it
    HANDLE begins = CreateEventW(nullptr, FALSE, FALSE, nullptr);
    HANDLE ends = CreateEventW(nullptr, FALSE, FALSE, nullptr);
    std::atomic<ULONGLONG> deadline { 0 }; ///< Milliseconds since the system started; 0 for none.
    DWORD thread = 0;

    Guard() noexcept
    {
        const HANDLE handle = CreateThread(nullptr, 0, run, this, 0, &thread);
        if (handle != nullptr) {
            CloseHandle(handle);
        }
    }

    static DWORD WINAPI run(void* parameter) noexcept
    {
        auto& self = *static_cast<Guard*>(parameter);
        while (WaitForSingleObject(self.begins, INFINITE) == WAIT_OBJECT_0) {
            while (const ULONGLONG end = self.deadline) {
                const ULONGLONG now = GetTickCount64();
                if (now >= end) {
                    TerminateProcess(GetCurrentProcess(), 0);
                }
                WaitForSingleObject(self.ends, static_cast<DWORD>(end - now));
            }
        }
        return 0;
    }
};

std::atomic<Guard*> guard { nullptr };
std::atomic<DWORD> crashThread { 0 };
std::atomic<const EXCEPTION_POINTERS*> crashException { nullptr };

void setWorksOnCrash(bool works) noexcept
{
    Guard* const self = guard;
    if (self != nullptr) {
        TlsSetValue(self->slot, works ? self : nullptr);
    }
}

struct Work
{
    void (*run)(void*);
    void* argument;
    HANDLE started;
};

// Not on the stack of one who gives up waiting. A thread has its copy before there can be a second one.
Work work;
std::atomic<bool> workTaken { false };

DWORD WINAPI runWork(void*) noexcept
{
    const Work mine = work;
    if (!workTaken.exchange(true)) {
        SetEvent(mine.started);
        setWorksOnCrash(true);
        mine.run(mine.argument);
    }
    return 0;
}

} // namespace

void prepareCrashThreads() noexcept
{
    static Guard instance; // never destroyed: its thread ends with the process
    guard = &instance;
}

void beginCrash(const EXCEPTION_POINTERS* exception) noexcept
{
    crashThread = GetCurrentThreadId();
    crashException = exception;
    setWorksOnCrash(true);
}

void endCrash() noexcept
{
    setWorksOnCrash(false);
    crashException = nullptr;
}

bool worksOnCrash() noexcept
{
    const Guard* const self = guard;
    return self != nullptr && TlsGetValue(self->slot) != nullptr;
}

DWORD crashedThread(const EXCEPTION_POINTERS* exception) noexcept
{
    return exception == crashException ? crashThread.load() : GetCurrentThreadId();
}

DWORD crashGuard() noexcept
{
    const Guard* const self = guard;
    return self != nullptr ? self->thread : 0;
}

bool runOnCrashThread(void (*run)(void*), void* argument) noexcept
{
    work = { run, argument, CreateEventW(nullptr, TRUE, FALSE, nullptr) };
    workTaken = false;
    constexpr SIZE_T stackSize = 1U << 20;
    const HANDLE thread = CreateThread(nullptr, stackSize, runWork, nullptr, STACK_SIZE_PARAM_IS_A_RESERVATION, nullptr);
    if (thread == nullptr) {
        return false;
    }
    // It does not start while somebody who waits for ever holds the lock of the loader.
    constexpr DWORD patience = 5000;
    const HANDLE either[] = { work.started, thread };
    if (WaitForMultipleObjects(2, either, FALSE, patience) == WAIT_TIMEOUT && !workTaken.exchange(true)) {
        return false;
    }
    WaitForSingleObject(thread, INFINITE);
    CloseHandle(thread);
    return true;
}

CrashDeadline::CrashDeadline(DWORD milliseconds) noexcept : counts_(worksOnCrash())
{
    Guard* const self = guard;
    if (counts_) {
        self->deadline = GetTickCount64() + milliseconds;
        SetEvent(self->begins);
    }
}

CrashDeadline::~CrashDeadline()
{
    if (counts_) {
        Guard* const self = guard;
        self->deadline = 0;
        SetEvent(self->ends);
    }
}

} // namespace brvUtils::os
