#include "brvUtils/ipc/SemaphoreWin32.h"
#include "brvUtils/watchdog/WatchedModule_test.h"
#include "testing/CapturedOutput.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace {

using namespace brvUtils;
using namespace brvTesting;

void sendSignal(const std::string& signal, const Child& child)
{
    EXPECT_EQ(std::system(("kill -" + signal + " " + std::to_string(child.id())).c_str()), 0);
}

TEST(WatchdogClient, SeesAProcessStopAndGoOn)
{
    const std::string name = uniqueName();
    const CapturedOutput captured; // of the waits in vain
    WatchdogClient client(SemaphoreWin32::New, name, 0.5, WatchedModule::period, WatchedModule::tolerance);
    const WatchedModule module(name);
    client.startMonitoring();
    EXPECT_TRUE(becomes(true, client));
    sendSignal("STOP", module);
    EXPECT_TRUE(becomes(false, client));
    sendSignal("CONT", module);
    EXPECT_TRUE(becomes(true, client));
}

} // namespace
