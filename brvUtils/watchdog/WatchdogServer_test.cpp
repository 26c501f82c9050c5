#include "brvUtils/watchdog/WatchdogServer.h"

#include "brvUtils/ipc/SemaphoreWin32.h"
#include "brvUtils/watchdog/WatchdogClient.h"
#include "brvUtils/watchdog/WatchdogInfo.h"
#include "brvUtils/watchdog/WatchedModule_test.h"
#include "testing/CapturedOutput.h"

#include <gtest/gtest.h>

namespace {

using namespace brvUtils;
using namespace brvTesting;

TEST(WatchdogServer, FreesItsSemaphore)
{
    const std::string name = uniqueName();
    WatchdogServer server(SemaphoreWin32::New, name);
    SemaphoreWin32 semaphore(name.c_str(), false, true);
    EXPECT_TRUE(semaphore.ask(0.0)) << "the server makes it free";
    server.signal();
    server.signal();
    EXPECT_TRUE(semaphore.ask(0.0));
    EXPECT_FALSE(semaphore.ask(0.0)) << "two signals before the first was taken are one";
}

TEST(WatchdogServer, WithoutASemaphoreSignalsInVain)
{
    WatchdogServer(+[](char const*, bool, bool) -> ISemaphore* { return nullptr; }, "module").signal();
    const CapturedOutput captured; // of the line about a name that is too long
    WatchdogServer(SemaphoreWin32::New, std::string(300, 'n')).signal();
}

TEST(WatchdogServer, IsSeenToDieAndToComeBack)
{
    const std::string name = uniqueName();
    const WatchdogInfo info(name.c_str(), 0.5, WatchedModule::period, WatchedModule::tolerance, "a process");
    const CapturedOutput captured;
    WatchdogClient client(SemaphoreWin32::New, info.name, info.timeout, info.period, info.tolerance);
    client.startMonitoring(); // before there is a server
    {
        WatchedModule module(name);
        EXPECT_TRUE(becomes(true, client));
        module.kill();
        EXPECT_TRUE(becomes(false, client));
    }
    EXPECT_NE(captured.err().find("Error waiting semaphore " + name + ": WAIT_TIMEOUT\n"), std::string::npos);
    WatchedModule module(name);
    EXPECT_TRUE(becomes(true, client));
}

} // namespace
