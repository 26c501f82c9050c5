#include "brvUtils/time/TimerRows_benchmark.h"

#include "brvUtils/ipc/SemaphoreWin32.h"
#include "brvUtils/time/ThreadWin32.h"

#include <algorithm>
#include <chrono>
#include <future>
#include <thread>
#include <vector>

namespace timers {

namespace {

using std::chrono::steady_clock;

/// Tells when it was first done.
class Stamp : public brvUtils::ThreadAction
{
public:
    explicit Stamp(std::promise<steady_clock::time_point>& moment)
        : moment_(moment)
    {
    }
    bool execute() override
    {
        moment_.set_value(steady_clock::now());
        return false;
    }

private:
    std::promise<steady_clock::time_point>& moment_;
};

double microseconds(steady_clock::duration time)
{
    return std::chrono::duration<double, std::micro>(time).count();
}

double ours()
{
    std::promise<steady_clock::time_point> moment;
    brvUtils::ThreadWin32 thread(brvUtils::SemaphoreWin32::New, new Stamp(moment), false);
    const auto start = steady_clock::now();
    thread.start();
    const double time = microseconds(moment.get_future().get() - start);
    while (!thread.stop(1.0)) { }
    return time;
}

double bare()
{
    std::promise<steady_clock::time_point> moment;
    const auto start = steady_clock::now();
    std::thread thread([&] { moment.set_value(steady_clock::now()); });
    const double time = microseconds(moment.get_future().get() - start);
    thread.join();
    return time;
}

/// The thread before is gone for good by then, and takes no processor from the next one.
void rest()
{
    std::this_thread::sleep_for(std::chrono::microseconds(200));
}

double median(std::vector<double> values)
{
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

} // namespace

brvTesting::BenchmarkRow threadStart()
{
    constexpr int rounds = 2000;
    std::vector<double> ourTimes;
    std::vector<double> bareTimes;
    for (int i = 0; i < rounds; ++i) {
        rest();
        ourTimes.push_back(ours());
        rest();
        bareTimes.push_back(bare());
    }
    return {"ThreadWin32, start to first execute, limit is std::thread", "us", median(std::move(ourTimes)), {}, median(std::move(bareTimes))};
}

} // namespace timers
