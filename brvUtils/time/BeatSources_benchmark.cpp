#include "brvUtils/time/BeatSources_benchmark.h"

#include "brvUtils/os/linux/BareBeats.h"
#include "brvUtils/time/TimedSemaphore.h"
#include "brvUtils/time/TimerWin32.h"

#include <boost/asio/io_context.hpp>
#include <boost/asio/steady_timer.hpp>

#include <algorithm>
#include <chrono>
#include <functional>
#include <stdexcept>
#include <string>
#include <thread>

namespace timers {

namespace {

using brvUtils::TimedSemaphore;

// Code that runs for the first time is fetched first, which would count as lateness of the whole grid: the library's is
// started once before.

void warmUp(double seconds)
{
    brvUtils::TimerWin32 timer(seconds, [](void*) {}, nullptr, 0);
    timer.run();
}

void timerWin32(BeatLog& log)
{
    const auto call = [](void* context) { static_cast<BeatLog*>(context)->beat(); };
    brvUtils::TimerWin32 timer(log.seconds(), call, &log, 0);
    warmUp(log.seconds());
    log.start();
    timer.run();
    if (log.started()) {
        log.waitUntilFull();
    }
}

template <TimedSemaphore::TimerMode mode>
void timedSemaphore(BeatLog& log)
{
    TimedSemaphore beats(log.seconds(), true, mode);
    beats.run();
    beats.pause();
    log.start();
    beats.run();
    for (const bool fair = log.started(); fair && !log.full();) {
        beats.ask(-1.0);
        log.beat();
    }
}

void sleep(BeatLog& log)
{
    log.start();
    for (std::size_t i = 1; !log.full(); ++i) {
        brvUtils::os::bareSleepUntil(log.due(i));
        log.beat();
    }
}

void sleepWithoutSlack(BeatLog& log)
{
    brvUtils::os::setTimerSlack(1);
    sleep(log);
}

void timerFile(BeatLog& log)
{
    log.start();
    brvUtils::os::BareTimerFile timer(log.due(1), log.period());
    while (!log.full() && timer.wait() > 0) {
        log.beat();
    }
}

void asio(BeatLog& log)
{
    using Moment = std::chrono::steady_clock::time_point;
    boost::asio::io_context context(1);
    boost::asio::steady_timer timer(context);
    std::size_t next = 1;
    std::function<void()> wait = [&] {
        timer.expires_at(Moment(std::chrono::nanoseconds(log.due(next++))));
        timer.async_wait([&](const boost::system::error_code&) {
            log.beat();
            if (!log.full()) {
                wait();
            }
        });
    };
    log.start();
    wait();
    context.run();
}

} // namespace

const std::vector<BeatSource>& ourSources()
{
    static const std::vector<BeatSource> sources{
        {"TimerWin32", timerWin32},
        {"MODE_TIMER", timedSemaphore<TimedSemaphore::MODE_TIMER>},
        {"MODE_YIELD", timedSemaphore<TimedSemaphore::MODE_YIELD>},
        {"MODE_SPIN", timedSemaphore<TimedSemaphore::MODE_SPIN>},
    };
    return sources;
}

const std::vector<BeatSource>& peerSources()
{
    static const std::vector<BeatSource> sources{{"nanosleep", sleep}, {"timerfd", timerFile}, {"asio", asio}};
    return sources;
}

BeatSource limitSource()
{
    return {"nanosleep without slack", sleepWithoutSlack};
}

Lateness measure(const BeatSource& source, std::int64_t period, double seconds)
{
    const double count = seconds * 1e9 / static_cast<double>(period);
    for (int attempt = 0; attempt < 50; ++attempt) {
        BeatLog log(period, std::max(static_cast<std::size_t>(count), std::size_t{10}));
        std::thread(source.beat, std::ref(log)).join();
        if (log.full()) {
            return log.result();
        }
    }
    throw std::runtime_error(std::string(source.name) + " does not beat, or never starts undisturbed");
}

} // namespace timers
