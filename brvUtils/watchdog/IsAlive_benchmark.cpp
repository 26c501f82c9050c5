#include "brvUtils/ipc/SemaphoreWin32.h"
#include "brvUtils/time/TimerRows_benchmark.h"
#include "brvUtils/watchdog/WatchdogClient.h"
#include "brvUtils/watchdog/WatchdogServer.h"
#include "testing/Interleaved.h"
#include "testing/UniqueName.h"

#include <atomic>
#include <chrono>
#include <memory>
#include <thread>

namespace timers {

using namespace brvTesting;

BenchmarkRow isAlive()
{
    using brvUtils::SemaphoreWin32;
    constexpr double period = 0.01; // seconds
    const std::string name = uniqueName("bench");
    brvUtils::WatchdogServer module(SemaphoreWin32::New, name);
    std::atomic<bool> done{false};
    std::thread work([&] {
        while (!done) {
            module.signal();
            std::this_thread::sleep_for(std::chrono::duration<double>(period));
        }
    });
    // The module signals until the watcher has gone, which otherwise would wait and tell of it.
    auto watcher = std::make_unique<brvUtils::WatchdogClient>(SemaphoreWin32::New, name, 1.0, period, 0.5);
    watcher->startMonitoring();
    const std::vector<double> times = medianPerIteration({{"ours", [&](std::uint64_t iterations) {
        return nanosecondsOf([&] {
            for (std::uint64_t i = 0; i < iterations; ++i) {
                watcher->isAlive();
            }
        });
    }}});
    watcher.reset();
    done = true;
    work.join();
    return {"WatchdogClient, one isAlive()", "us", times[0] / 1000};
}

} // namespace timers
