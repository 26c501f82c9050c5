#include "brvUtils/time/FrameTimer.h"

#include "Scheduling/ExecutionClock.h"
#include "Scheduling/Synchronization.h"
#include "brvUtils/core/Errors.h"
#include "brvUtils/time/internal/Ticks.h"

#include <stdexcept>

namespace brvUtils {

FrameTimer::FrameTimer()
    : FrameTimer(0.05, 0.0, nullptr)
{
}

FrameTimer::FrameTimer(double nominalDelta, double initTime, ExecutionClock* executionClock)
    : executionClock_(executionClock)
    , initTime_(initTime)
    , nominalDelta_(nominalDelta)
    , currentTime_(initTime)
    , deltaTime_(nominalDelta)
{
}

FrameTimer::FrameTimer(double nominalDelta, double initTime, Synchronization* synchronization)
    : FrameTimer(nominalDelta, initTime, synchronization != nullptr ? synchronization->getExecutionClock() : nullptr)
{
}

FrameTimer::FrameTimer(double nominalDelta, double initTime, std::nullptr_t)
    : FrameTimer(nominalDelta, initTime, static_cast<ExecutionClock*>(nullptr))
{
}

FrameTimer::~FrameTimer() = default;

void FrameTimer::init()
{
    if (executionClock_ != nullptr) {
        rawCount_ = executionClock_->getCount();
    } else {
        clock_.init();
    }
    isStopped_ = false;
    firstStep_ = true;
    currentTime_ = initTime_;
    deltaTime_ = nominalDelta_;
}

void FrameTimer::run()
{
    if (isStopped_) {
        init();
    } else if (executionClock_ != nullptr) {
        runOnExecutionClock();
    } else {
        runOnComputerClock();
    }
}

void FrameTimer::runOnComputerClock()
{
    const double time = clock_.run() + initTime_;
    deltaTime_ = firstStep_ ? nominalDelta_ : time - currentTime_;
    currentTime_ = time;
    firstStep_ = false;
}

void FrameTimer::runOnExecutionClock()
{
    const long long raw = executionClock_->getCount();
    if (raw == rawCount_) {
        return;
    }
    // The extra tick of a step back is kept for callers.
    deltaCount_ = internal::addTicks(internal::subtractTicks(raw, rawCount_), raw < rawCount_ ? -1 : 0);
    rawCount_ = raw;
    simulationCount_ = internal::addTicks(simulationCount_, deltaCount_);
    deltaTime_ = static_cast<double>(deltaCount_) / static_cast<double>(executionClock_->getTicksPerSecond());
    currentTime_ = static_cast<double>(simulationCount_) / static_cast<double>(executionClock_->getTicksPerSecond());
}

void FrameTimer::pause()
{
    if (executionClock_ != nullptr) {
        rawCount_ = executionClock_->getCount();
    } else {
        initTime_ += clock_.run();
        currentTime_ = initTime_;
    }
    isStopped_ = true;
}

bool FrameTimer::stopped() const
{
    return isStopped_;
}

void FrameTimer::setInitTime(double t)
{
    initTime_ = t;
    if (executionClock_ != nullptr) {
        deltaCount_ = 0;
        simulationCount_ = internal::wholeTicks(static_cast<double>(executionClock_->getTicksPerSecond()) * t);
    }
}

double FrameTimer::getCurrentTime() const
{
    return currentTime_;
}

double FrameTimer::getDeltaTime() const
{
    return deltaTime_;
}

long long FrameTimer::getCurrentTime(brv::t_unit unit) const
{
    return convertTime(unit, simulationCount_);
}

long long FrameTimer::getDeltaTime(brv::t_unit unit) const
{
    return convertTime(unit, deltaCount_);
}

long long FrameTimer::getInternalSimulationCount() const
{
    return simulationCount_;
}

long long FrameTimer::getInternalDeltaCount() const
{
    return deltaCount_;
}

long long FrameTimer::getInternalRawCount() const
{
    return rawCount_;
}

long long FrameTimer::convertTime(brv::t_unit unit, long long ticks) const
{
    int unitsPerSecond = 0;
    switch (unit) {
    case brv::second:
        unitsPerSecond = 1;
        break;
    case brv::millisecond:
        unitsPerSecond = 1000;
        break;
    case brv::microsecond:
        unitsPerSecond = 1000000;
        break;
    default:
        throw std::invalid_argument("Unable to convert time to the unit: " + brv::toText(unit));
    }
    const long long rate = executionClock_ != nullptr ? executionClock_->getTicksPerSecond() : 0;
    if (rate == 0) {
        throw ProgrammingError("Time is counted in units only with an execution clock that ticks");
    }
    return internal::convertTicks(ticks, unitsPerSecond, rate);
}

} // namespace brvUtils
