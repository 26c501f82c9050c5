#include "brvUtils/watchdog/WatchdogServer.h"

namespace brvUtils {

WatchdogServer::WatchdogServer(SemaphoreFactory semaphoreFactory, const std::string& name)
    : semaphore_(semaphoreFactory(name.c_str(), true, true))
{
}

WatchdogServer::~WatchdogServer() = default;

void WatchdogServer::signal()
{
    if (semaphore_ != nullptr) {
        semaphore_->free();
    }
}

} // namespace brvUtils
