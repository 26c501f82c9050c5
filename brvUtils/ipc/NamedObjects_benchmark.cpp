// What a look at a suite's named objects costs, and what it costs the modules that are looked at: one takes and frees its lock,
// or opens and closes an object, while another process looks a thousand times a second. The limit is the same while nobody
// looks. That is processor time of the module, so that the looker's own does not count.
#include "brvUtils/ipc/NamedObjects.h"
#include "brvUtils/ipc/SemaphoreWin32.h"
#include "testing/BenchmarkTable.h"
#include "testing/Child.h"
#include "testing/EnvironmentGuard.h"
#include "testing/Interleaved.h"
#include "testing/TemporaryFolder.h"

#include <chrono>
#include <ctime>
#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace {

using namespace brvTesting;
using brvUtils::SemaphoreWin32;

class Objects
{
public:
    explicit Objects(int count)
    {
        for (int i = 0; i < count; ++i) {
            objects_.push_back(std::make_unique<SemaphoreWin32>(("looked at " + std::to_string(i)).c_str(), true, false));
        }
    }

private:
    std::vector<std::unique_ptr<SemaphoreWin32>> objects_;
};

/// Looks once per millisecond.
BRV_CHILD(looker)
{
    childSay("ready");
    for (auto next = std::chrono::steady_clock::now();; next += std::chrono::milliseconds(1)) {
        brvUtils::lookAtNamedObjects();
        std::this_thread::sleep_until(next);
    }
}

/// In nanoseconds.
double processorTimeOf(std::uint64_t iterations, const std::function<void()>& work)
{
    const std::clock_t start = std::clock();
    for (std::uint64_t i = 0; i < iterations; ++i) {
        work();
    }
    return static_cast<double>(std::clock() - start) * 1e9 / CLOCKS_PER_SEC;
}

BenchmarkRow lookRow(int count)
{
    const Objects objects(count);
    const auto times = medianPerIteration({{"ours", [](std::uint64_t n) { return processorTimeOf(n, [] { brvUtils::lookAtNamedObjects(); }); }}});
    return {"look at " + std::to_string(count) + " objects", "us", times[0] / 1e3};
}

BenchmarkRow besideRow(const std::string& what, const std::string& unit, double perUnit, const std::function<void()>& work)
{
    const auto times = medianPerIteration({
        {"beside a looker", [&](std::uint64_t n) {
             Child looker("looker");
             looker.expectLine("ready");
             return processorTimeOf(n, work);
         }},
        {"alone", [&](std::uint64_t n) { return processorTimeOf(n, work); }},
    });
    return {what + " beside a looker at 1 kHz", unit, times[0] / perUnit, {}, times[1] / perUnit};
}

} // namespace

int main(int argc, char** argv)
{
    if (const auto exitCode = runAsChild(argc, argv)) {
        return *exitCode;
    }
    BenchmarkTable table(argc, argv);
    const TemporaryFolder folder;
    const EnvironmentGuard nameSpace("STUDIO_IPC_NAMESPACE", folder.file("objects"));
    for (const int count : {10, 100, 1000}) {
        table.add(lookRow(count));
    }
    const Objects objects(50);
    SemaphoreWin32 lock("taken and freed", true, false);
    table.add(besideRow("take and free", "ns", 1, [&] {
        lock.ask(0);
        lock.free();
    }));
    table.add(besideRow("open and close", "us", 1e3, [] { const SemaphoreWin32 opened("opened and closed", true, false); }));
    return table.finish();
}
