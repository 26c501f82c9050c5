#include "brvUtils/ipc/ConfigurationPortManager_test.h"

#include "brvUtils/os/ProcessLife.h"
#include "brvUtils/os/Semaphore.h"
#include "testing/Child.h"
#include "testing/UniqueName.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <memory>
#include <random>
#include <string>
#include <thread>
#include <vector>

// Twenty processes take ports and give them back as fast as they can, while some of them are killed. Whoever has a port
// also writes its number to a list of the test, so that two who have the same one find each other.

namespace portTests {
namespace {

using namespace brvTesting;
using brvUtils::os::currentProcessId;

class Claims
{
public:
    explicit Claims(const std::string& name)
        : segment_(name.c_str(), portCount * 4, 0, false)
        , owners_(static_cast<std::atomic<std::uint32_t>*>(segment_.getPtr()))
    {
    }

    /// False when somebody has one of them who lives.
    bool take(const Ports& ports)
    {
        return std::all_of(ports.begin(), ports.end(), [&](unsigned short port) {
            std::uint32_t owner = 0;
            return owners_[port - 25099].compare_exchange_strong(owner, currentProcessId())
                || (!brvUtils::os::processIsAlive(owner) && owners_[port - 25099].compare_exchange_strong(owner, currentProcessId()));
        });
    }

    /// False when they are not this process's.
    bool giveBack(const Ports& ports)
    {
        return std::all_of(ports.begin(), ports.end(), [&](unsigned short port) {
            return owners_[port - 25099].exchange(0) == currentProcessId();
        });
    }

private:
    brvUtils::ShmWin32 segment_;
    std::atomic<std::uint32_t>* owners_;
};

/// Up to ten ports, so that there are enough for twenty.
Ports takeSome(brvUtils::ConfigurationPortManager& manager, std::minstd_rand& random)
{
    Ports ports;
    const size_t count = 1 + random() % 10;
    return manager.allocate(count, ports) && ports.size() == count ? ports : Ports();
}

BRV_CHILD(oneOfACrowd)
{
    Claims claims(arguments[0]);
    std::minstd_rand random(static_cast<unsigned>(std::stoul(arguments[1])));
    brvUtils::ConfigurationPortManager* manager = brvUtils::ConfigurationPortManager::getInstance();
    std::atomic<bool> told{false};
    childSay(manager != nullptr ? "working" : "no manager");
    std::thread listener([&] {
        childHear();
        told = true;
    });
    Ports ports;
    bool right = true;
    do {
        right = claims.giveBack(ports) && manager->release();
        ports = takeSome(*manager, random);
        right = right && !ports.empty() && claims.take(ports);
    } while (right && !told);
    listener.join();
    childSay(right ? std::to_string(ports.size()) : "failed");
    childHear();
    return 0; // with its ports
}

/// How many ports one who was told to stop has kept.
size_t portsOf(Child& child)
{
    const std::string count = child.readLine();
    const bool right = !count.empty() && count.find_first_not_of("0123456789") == std::string::npos;
    EXPECT_TRUE(right) << count;
    return right ? std::stoul(count) : 0;
}

TEST_F(ConfigurationPortManager, GivesNoPortTwiceAndLosesNoneInACrowd)
{
    constexpr int crowd = 20;
    constexpr int victims = 5;
    const std::string name = uniqueName();
    const Claims claims(name);
    std::mt19937 random(20'250'099);
    std::vector<std::unique_ptr<Child>> children;
    for (int i = 0; i < crowd; ++i) {
        children.push_back(std::make_unique<Child>("oneOfACrowd", Arguments{name, std::to_string(random())}));
    }
    for (const auto& child : children) {
        child->awaitLine("working");
    }
    for (int i = 0; i < victims; ++i) {
        Child& victim = *children.back();
        if (brvUtils::os::deadTakersAreKnown()) {
            std::this_thread::sleep_for(std::chrono::microseconds(random() % 3000));
        } else { // one that has the guard would stop everybody
            victim.send("stop");
            EXPECT_GT(portsOf(victim), 0u);
        }
        victim.kill();
        children.pop_back();
    }
    size_t had = 0;
    for (const auto& child : children) {
        child->send("stop");
    }
    for (const auto& child : children) {
        had += portsOf(*child);
    }
    EXPECT_EQ(allocate(portCount - had).size(), portCount - had);
    EXPECT_TRUE(allocate(1).empty());
    for (const auto& child : children) {
        child->closeInput();
        child->expectExit(0);
    }
    EXPECT_EQ(allocate(had).size(), had);
}

} // namespace
} // namespace portTests
