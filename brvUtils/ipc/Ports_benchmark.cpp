#include "brvUtils/ipc/Ports_benchmark.h"

#include "brvUtils/ipc/ConfigurationPortManager.h"
#include "brvUtils/os/linux/BareProbe.h"
#include "testing/CapturedOutput.h"
#include "testing/Child.h"
#include "testing/EnvironmentGuard.h"
#include "testing/Interleaved.h"
#include "testing/TemporaryFolder.h"

#include <memory>
#include <stdexcept>
#include <vector>

namespace {

using namespace brvTesting;
using brvUtils::ConfigurationPortManager;

constexpr int holders = 100;

using Ports = std::vector<unsigned short>;

BRV_CHILD(holderOfAPort)
{
    Ports ports;
    ConfigurationPortManager* manager = ConfigurationPortManager::getInstance();
    childSay(manager != nullptr && manager->allocate(1, ports) ? "holding" : "failed");
    childHear();
    return 0;
}

} // namespace

void addPortRows(BenchmarkTable& table)
{
    const TemporaryFolder folder;
    const EnvironmentGuard nameSpace("STUDIO_IPC_NAMESPACE", (folder.path() / "objects").string());
    const CapturedOutput quiet; // the library tells of the table
    std::vector<std::unique_ptr<Child>> children;
    for (int i = 0; i < holders; ++i) {
        children.push_back(std::make_unique<Child>("holderOfAPort"));
        children.back()->awaitLine("holding");
    }
    const std::unique_ptr<ConfigurationPortManager> manager(ConfigurationPortManager::getInstance());
    Ports ports;
    if (manager == nullptr || !manager->allocate(1, ports) || ports.front() != 25099 + holders) {
        throw std::runtime_error("the ports are not held as they should be");
    }
    manager->release();

    const auto probeAll = [&] {
        for (const auto& child : children) {
            brvUtils::os::bareProbe(child->id());
        }
    };
    const std::vector<double> times = medianPerIteration({
        {"allocate", [&](std::uint64_t iterations) {
             double sum = 0;
             for (std::uint64_t i = 0; i < iterations; ++i) {
                 sum += nanosecondsOf([&] { manager->allocate(1, ports); });
                 manager->release();
             }
             return sum;
         }},
        {"both", [&](std::uint64_t iterations) {
             return nanosecondsOf([&] {
                 for (std::uint64_t i = 0; i < iterations; ++i) {
                     manager->allocate(1, ports);
                     manager->release();
                 }
             });
         }},
        {"probes", [&](std::uint64_t iterations) {
             return nanosecondsOf([&] {
                 for (std::uint64_t i = 0; i < iterations; ++i) {
                     probeAll();
                 }
             });
         }},
    });
    // Each of the two looks at all processes.
    table.add({"allocate(1), 100 processes with a port", "us", times[0] / 1e3, {}, times[2] / 1e3});
    table.add({"allocate(1) + release, the same", "us", times[1] / 1e3, {}, 2 * times[2] / 1e3});
}
