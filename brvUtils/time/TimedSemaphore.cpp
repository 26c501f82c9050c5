#include "brvUtils/time/TimedSemaphore.h"

#include "Utilities/HpTimeLog.h"
#include "brvUtils/ipc/SemaphoreWin32.h"
#include "brvUtils/os/Thread.h"
#include "brvUtils/time/TimerWin32.h"

#include <iostream>

namespace brvUtils {
namespace {

constexpr double shortestOfTimer = 0.001; // seconds
constexpr unsigned long timerMode = 3; // the system's timer, or a yielding poller where that cannot be set

} // namespace

TimedSemaphore::TimedSemaphore(double period, bool paused, TimerMode mode)
    : mode_(mode == MODE_TIMER && period < shortestOfTimer ? MODE_YIELD : mode)
    , period_(period)
{
    if (mode_ == MODE_TIMER) {
        semaphore_ = std::make_unique<SemaphoreWin32>(nullptr, true, true);
        timer_ = std::make_unique<TimerWin32>(period, Callback, this, timerMode);
    }
    if (!paused) {
        run();
    }
}

TimedSemaphore::~TimedSemaphore()
{
    pause();
}

void TimedSemaphore::run()
{
    if (mode_ == MODE_TIMER) {
        timer_->run();
        return;
    }
    clock_.init();
    nextDeadline_ = 0.0;
}

void TimedSemaphore::pause()
{
    if (mode_ == MODE_TIMER && !timer_->pause()) {
        std::cerr << "Error while stopping timer" << std::endl;
    }
}

bool TimedSemaphore::ask(double timeout)
{
    switch (mode_) {
    case MODE_TIMER:
        return semaphore_->ask(timeout);
    case MODE_YIELD:
    case MODE_SPIN:
        while (clock_.run() < nextDeadline_) {
            if (mode_ == MODE_YIELD) {
                os::yieldThread();
            }
        }
        nextDeadline_ += period_;
        return true;
    }
    return false;
}

void TimedSemaphore::setTimeLogger(HpTimeLog* logger)
{
    timeLogger_ = logger;
}

bool TimedSemaphore::free()
{
    if (HpTimeLog* const logger = timeLogger_; logger != nullptr && logger->isEnabled()) {
        logger->record();
    }
    return mode_ != MODE_TIMER || semaphore_->free();
}

void TimedSemaphore::Callback(void* self)
{
    static_cast<TimedSemaphore*>(self)->free();
}

} // namespace brvUtils
