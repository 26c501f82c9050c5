#include "brvUtils/watchdog/WatchdogClient.h"

#include "brvUtils/core/Errors.h"
#include "brvUtils/ipc/CriticalSection.h"
#include "brvUtils/time/ThreadAction.h"
#include "brvUtils/time/ThreadWin32.h"

#include <algorithm>
#include <chrono>
#include <iostream>
#include <numeric>
#include <thread>

namespace brvUtils {

namespace {

constexpr double patience = 10.0; // seconds; the verdict is locked for an instant only
constexpr double shortestVain = 0.1; // seconds

} // namespace

WatchdogClient::WatchdogClient(SemaphoreFactory semaphoreFactory, const std::string& name, double timeout, double period,
    double tolerance)
    : timeout_(timeout)
    , period_(period)
    , tolerance_(tolerance)
    , name_(name)
    , semaphore_(semaphoreFactory(name_.c_str(), true, true))
    , thread_(new ThreadWin32(semaphoreFactory, new ThreadMemberFunction<WatchdogClient>(this, &WatchdogClient::runInThread), false))
{
    intervals_.fill(period);
    broken_ = semaphore_ == nullptr || thread_->getProtectionObject() == nullptr;
}

WatchdogClient::~WatchdogClient()
{
    if (!monitoring_) {
        return;
    }
    const bool endless = timeout_ < 0;
    bool ended = thread_->stop(endless ? 0.0 : IThread::defaultTimeOut);
    while (!ended) {
        if (endless) {
            semaphore_->free();
        }
        ended = thread_->stop(IThread::defaultTimeOut);
    }
}

void WatchdogClient::startMonitoring()
{
    if (monitoring_ || semaphore_ == nullptr || thread_->getProtectionObject() == nullptr) {
        return;
    }
    thread_->start();
    monitoring_ = true;
}

bool WatchdogClient::runInThread()
{
    try {
        watch();
    } catch (...) {
        broken_ = true;
        std::cerr << "Serious error in watchdog system" << std::endl;
        throw;
    }
    return true;
}

void WatchdogClient::watch()
{
    clock_.init();
    const bool got = semaphore_->ask(timeout_);
    const double interval = clock_.run();
    intervals_[next_] = interval;
    next_ = (next_ + 1) % intervals_.size();
    {
        const CriticalSection guard(thread_->getProtectionObject(), "Watchdog : Cannot update the state of the process", patience);
        if (!got || !isRegular()) {
            alive_ = false;
        } else if (asked_) {
            alive_ = true;
        }
    }
    // A semaphore that fails at once is not asked, and does not complain, all the time.
    const double rest = (timeout_ > 0 ? std::min(timeout_, shortestVain) : shortestVain) - interval;
    if (!got && rest > 0) {
        std::this_thread::sleep_for(std::chrono::duration<double>(rest));
    }
}

bool WatchdogClient::isRegular() const
{
    const double mean = std::accumulate(intervals_.begin(), intervals_.end(), 0.0) / 10.0;
    // Also false for settings that are not numbers.
    return mean <= (1.0 + tolerance_) * period_ && mean >= (1.0 - tolerance_) * period_;
}

bool WatchdogClient::isAlive() const
{
    if (broken_) {
        return false;
    }
    try {
        const CriticalSection guard(thread_->getProtectionObject(), "Watchdog : Cannot access the state of one process, dead assumed",
            patience);
        asked_ = true;
        return alive_;
    } catch (const SemaphoreSynchroError& error) {
        broken_ = true;
        std::cerr << error.what() << std::endl;
        return false;
    }
}

} // namespace brvUtils
