#include "brvUtils/core/Network.h"

#include "brvUtils/os/Network.h"

#include <gtest/gtest.h>

namespace brvUtils {
namespace {

bool networkIsUp()
{
    std::uint32_t address = 0;
    return os::lookUpHost("localhost", address);
}

TEST(Network, RunsFromTheFirstStartToTheLastRelease)
{
    releaseNetworkSystem();
    ASSERT_TRUE(initNetworkSystem()) << "a release without a start counts nothing";
    ASSERT_TRUE(initNetworkSystem());
    releaseNetworkSystem();
    EXPECT_TRUE(networkIsUp());
    releaseNetworkSystem();
    releaseNetworkSystem();
    ASSERT_TRUE(initNetworkSystem());
    EXPECT_TRUE(networkIsUp());
    releaseNetworkSystem();
}

} // namespace
} // namespace brvUtils
