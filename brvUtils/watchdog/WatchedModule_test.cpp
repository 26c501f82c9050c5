#include "brvUtils/watchdog/WatchedModule_test.h"

#include "brvUtils/ipc/SemaphoreWin32.h"
#include "brvUtils/watchdog/WatchdogServer.h"

namespace {

BRV_CHILD(watchedModule)
{
    brvUtils::WatchdogServer server(brvUtils::SemaphoreWin32::New, arguments[0]);
    brvTesting::childSay("started");
    for (;;) {
        std::this_thread::sleep_for(std::chrono::duration<double>(brvUtils::WatchedModule::period));
        server.signal();
    }
}

} // namespace

brvUtils::WatchedModule::WatchedModule(const std::string& name)
    : Child("watchedModule", {name})
{
    expectLine("started");
}
