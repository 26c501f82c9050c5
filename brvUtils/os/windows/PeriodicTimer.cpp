#include "brvUtils/os/PeriodicTimer.h"

#include "brvUtils/os/CrashFilter.h"

#include <atomic>
#include <new>
#include <windows.h>

#include <mmsystem.h> // needs the one before

namespace brvUtils::os {

struct PeriodicTimer
{
    PeriodicTimer(void (*function)(void*), void* with)
        : call(function)
        , context(with)
    {
    }

    void (*const call)(void*);
    void* const context;
    UINT id = 0;
    bool beaten = false;
    std::atomic<bool> known{false}; ///< To whoever started it, who does not touch it any more.
};

namespace {

void CALLBACK beat(UINT, UINT, DWORD_PTR user, DWORD_PTR, DWORD_PTR) noexcept
{
    auto* timer = reinterpret_cast<PeriodicTimer*>(user);
    while (!timer->known) {
        Sleep(1); // not 0, which would not let a less urgent thread run
    }
    if (!timer->beaten) { // the system makes its thread and does not say when
        timer->beaten = true;
        prepareThreadForCrash();
    }
    timer->call(timer->context); // which may stop the timer: it is not to be looked at again
}

} // namespace

ErrorCode startPeriodicTimer(PeriodicTimer*& timer, std::uint32_t milliseconds, void (*call)(void*), void* context) noexcept
{
    timer = nullptr;
    if (milliseconds == 0 || call == nullptr) {
        return error::invalidParameter;
    }
    auto* made = new (std::nothrow) PeriodicTimer(call, context);
    if (made == nullptr) {
        return error::notEnoughMemory;
    }
    made->id = timeSetEvent(milliseconds, 0, beat, reinterpret_cast<DWORD_PTR>(made), TIME_PERIODIC | TIME_KILL_SYNCHRONOUS);
    if (made->id == 0) {
        delete made;
        return error::invalidParameter;
    }
    timer = made;
    made->known = true;
    return error::none;
}

void stopPeriodicTimer(PeriodicTimer* timer) noexcept
{
    if (timer != nullptr) {
        timeKillEvent(timer->id);
        delete timer;
    }
}

std::uint64_t missedBeats(const PeriodicTimer*) noexcept
{
    return 0;
}

void beginTimerResolution(std::uint32_t milliseconds) noexcept
{
    timeBeginPeriod(milliseconds);
}

void endTimerResolution(std::uint32_t milliseconds) noexcept
{
    timeEndPeriod(milliseconds);
}

} // namespace brvUtils::os
