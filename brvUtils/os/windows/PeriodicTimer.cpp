#include "brvUtils/os/PeriodicTimer.h"

#include <new>
#include <windows.h>

#include <mmsystem.h> // needs the one before

namespace brvUtils::os {

struct PeriodicTimer
{
    void (*call)(void*);
    void* context;
    UINT id;
};

namespace {

void CALLBACK beat(UINT, UINT, DWORD_PTR user, DWORD_PTR, DWORD_PTR) noexcept
{
    const auto* timer = reinterpret_cast<const PeriodicTimer*>(user);
    timer->call(timer->context); // which may stop the timer: it is not to be looked at again
}

} // namespace

PeriodicTimerStart startPeriodicTimer(std::uint32_t milliseconds, void (*call)(void*), void* context) noexcept
{
    if (milliseconds == 0 || call == nullptr) {
        return {nullptr, error::invalidParameter};
    }
    auto* timer = new (std::nothrow) PeriodicTimer{call, context, 0};
    if (timer == nullptr) {
        return {nullptr, error::notEnoughMemory};
    }
    timer->id = timeSetEvent(milliseconds, 0, beat, reinterpret_cast<DWORD_PTR>(timer), TIME_PERIODIC | TIME_KILL_SYNCHRONOUS);
    if (timer->id == 0) {
        delete timer;
        return {nullptr, error::invalidParameter};
    }
    return {timer, error::none};
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
