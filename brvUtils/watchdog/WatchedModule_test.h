#pragma once

#include "brvUtils/watchdog/WatchdogClient.h"
#include "testing/Child.h"
#include "testing/UniqueName.h"

#include <chrono>
#include <string>
#include <thread>

namespace brvUtils {

/// A process that signals about once per period until it is killed.
class WatchedModule : public brvTesting::Child
{
public:
    static constexpr double period = 0.05; // seconds
    static constexpr double tolerance = 0.9; // the computer may be busy

    explicit WatchedModule(const std::string& name);
};

/// Asks until the verdict is so; false when that does not come.
inline bool becomes(bool alive, const WatchdogClient& client)
{
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(25);
    while (client.isAlive() != alive) {
        if (std::chrono::steady_clock::now() > end) {
            return false;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    return true;
}

} // namespace brvUtils
