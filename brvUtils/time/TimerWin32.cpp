#include "brvUtils/time/TimerWin32.h"

#include "brvUtils/os/PeriodicTimer.h"
#include "brvUtils/time/internal/Poller.h"

#include <algorithm>
#include <cstdint>
#include <iostream>

namespace brvUtils {
namespace {

constexpr double shortestOfSystem = 0.001; // seconds
constexpr double longest = 4294967.0; // seconds: what 32 bits hold in milliseconds
constexpr unsigned long firstModeWithPoller = 4;
constexpr unsigned long spinningMode = 6;

std::uint32_t wholeMilliseconds(double milliseconds)
{
    return static_cast<std::uint32_t>(std::min(milliseconds, 4294967295.0));
}

} // namespace

TimerWin32::TimerWin32(double period, void (*callback)(void*), void* context, unsigned long mode)
    : period_(period)
    , callback_(callback)
    , context_(context)
    , mode_(mode)
{
    if (!isInert() && (period_ < shortestOfSystem || mode_ >= firstModeWithPoller)) {
        poller_ = makePoller();
    }
}

TimerWin32::~TimerWin32()
{
    if (timer_ != nullptr) {
        TimerWin32::pause();
    }
}

bool TimerWin32::isInert() const
{
    return callback_ == nullptr || !(period_ > 0 && period_ <= longest); // not a number is not above 0 either
}

bool TimerWin32::run()
{
    const bool systemTimerBeats = timer_ != nullptr;
    pause();
    if (systemTimerBeats) {
        pausePoller(); // which pause() leaves running beside it
    }
    if (callback_ == nullptr) {
        return false;
    }
    if (isInert()) {
        return true;
    }
    // The poller first: should it be refused, nothing beats. Its gate and the start of the system's timer come last, since
    // their first call may come, and may destroy this, before run() has returned.
    const bool bySystem = period_ >= shortestOfSystem && mode_ < spinningMode;
    Poller::Gate gate = poller_ != nullptr ? startPoller() : nullptr;
    if (bySystem && !startSystemTimer() && gate == nullptr) {
        std::cerr << "Error: Unable to set timer function. Use High performance timer instead (CPU consummer)." << std::endl;
        poller_ = makePoller();
        gate = startPoller();
    }
    if (gate != nullptr) {
        *gate = true;
    }
    return true;
}

bool TimerWin32::pause()
{
    if (timer_ == nullptr) {
        return pausePoller();
    }
    os::stopPeriodicTimer(timer_);
    timer_ = nullptr;
    os::endTimerResolution(wholeMilliseconds(period_ * 1000.0 + 0.5));
    return true;
}

bool TimerWin32::pausePoller()
{
    return poller_ != nullptr && poller_->stop(IThread::defaultTimeOut);
}

unsigned long long TimerWin32::getMissedBeats() const
{
    return os::missedBeats(timer_);
}

std::unique_ptr<Poller> TimerWin32::makePoller() const
{
    return std::make_unique<Poller>(period_, callback_, context_, mode_ == spinningMode ? Poller::Pause::spins : Poller::Pause::yields);
}

bool TimerWin32::startSystemTimer()
{
    // Kept for callers: this factor, which is not the rounding of pause().
    const std::uint32_t milliseconds = wholeMilliseconds(period_ * 1000.5);
    os::beginTimerResolution(milliseconds);
    return os::startPeriodicTimer(timer_, milliseconds, callback_, context_) == os::error::none;
}

std::shared_ptr<std::atomic<bool>> TimerWin32::startPoller()
{
    const auto hasEnded = [](const auto& poller) { return poller->stop(0.0); };
    stopped_.erase(std::remove_if(stopped_.begin(), stopped_.end(), hasEnded), stopped_.end());
    // A stop is final: what was started before makes room for a new one, and is kept while it may be in its last call.
    if (poller_->started()) {
        if (poller_->running()) {
            stopped_.push_back(std::move(poller_));
        }
        poller_ = makePoller();
    }
    return poller_->start();
}

} // namespace brvUtils
