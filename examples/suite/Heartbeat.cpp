#include "Heartbeat.h"

#include "Module.h"
#include "Process.h"
#include "VehicleState.h"

#include <algorithm>

namespace suite {

namespace {

constexpr double nanoseconds = 1e9; // in a second
constexpr auto signalInterval = static_cast<std::int64_t>(ModuleLinks::signalPeriod * nanoseconds);
constexpr std::int64_t tellInterval = 5 * signalInterval;
constexpr std::size_t window = 1000; // intervals that the jitter is taken from

/// The next of moments in even distances, or from now on when some were missed.
std::int64_t following(std::int64_t moment, std::int64_t interval, std::int64_t now)
{
    return now - moment < interval ? moment + interval : now + interval;
}

} // namespace

Heartbeat::Heartbeat(const std::string& module, double period)
    : halfBeat_(static_cast<std::int64_t>(period * nanoseconds / 2.0))
    , log_(2 * window)
    , semaphore_(period, true, brvUtils::TimedSemaphore::MODE_TIMER)
    , watchdog_(brvUtils::SemaphoreWin32::New, ModuleLinks::watchdog(module))
    , stop_(ModuleLinks::stopEvent(module).c_str(), true, false)
    , shm_(module)
    , nextSignal_(clockNow())
    , nextTelling_(nextSignal_ + tellInterval)
    , lastTelling_(nextSignal_)
{
    beat_.process = ownProcess();
    shm_.tell(beat_);
    semaphore_.ask(0.0); // it starts free, which is no beat
    semaphore_.setTimeLogger(&log_);
    semaphore_.run();
}

Heartbeat::~Heartbeat()
{
    beat_.ended = 1;
    shm_.tell(beat_);
}

bool Heartbeat::wait()
{
    semaphore_.ask(-1.0);
    ++beat_.beats;
    const std::int64_t now = clockNow();
    // A beat is a little early or late; the one nearest to the moment counts.
    if (now + halfBeat_ >= nextSignal_) {
        signal(now);
    }
    return !StopRequest::received();
}

void Heartbeat::signal(std::int64_t now)
{
    watchdog_.signal();
    nextSignal_ = following(nextSignal_, signalInterval, now);
    if (stop_.ask(0.0)) {
        StopRequest::make();
    }
    if (now + halfBeat_ >= nextTelling_) {
        tell(now);
        nextTelling_ = following(nextTelling_, tellInterval, now);
    }
}

void Heartbeat::tell(std::int64_t now)
{
    beat_.rate = static_cast<double>(beat_.beats - beatsTold_) / (static_cast<double>(now - lastTelling_) / nanoseconds);
    beat_.lastInterval = log_.getIntervals(1).maximum();
    const Utilities::TimeIntervals intervals = log_.getIntervals(window);
    beat_.jitterMedian = intervals.jitter(50.0);
    beat_.jitter99 = intervals.jitter(99.0);
    beat_.jitterMax = intervals.jitter(100.0);
    // Whoever died while it looked makes one telling fail: the next one comes soon.
    shm_.tell(beat_);
    lastTelling_ = now;
    beatsTold_ = beat_.beats;
}

} // namespace suite
