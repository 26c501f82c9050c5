#include "brvUtils/startup/InstanceKey.h"

#include "testing/Child.h"
#include "testing/EnvironmentGuard.h"

#include <gtest/gtest.h>

namespace {

// In a process of its own each time, since the first call fixes the name.
BRV_CHILD(nameObject)
{
    brvTesting::childSay(brvUtils::buildKeyWithInstance("SHM_X"));
    const brvTesting::EnvironmentGuard later("STUDIO_INSTANCE", "later");
    brvTesting::childSay(std::string("key ") + brvUtils::getInstanceKey());
    return 0;
}

void expectNames(const std::string& object, const std::string& key)
{
    brvTesting::Child child("nameObject");
    child.expectLine(object);
    child.expectLine("key " + key);
    child.expectExit(0);
}

TEST(InstanceKey, PrefixesNamesWithTheInstanceThatTheFirstCallFound)
{
    const brvTesting::EnvironmentGuard instance("STUDIO_INSTANCE", "I2");
    expectNames("I2SHM_X", "I2");
}

TEST(InstanceKey, ChangesNothingWithoutAnInstance)
{
    const brvTesting::EnvironmentGuard instance("STUDIO_INSTANCE");
    expectNames("SHM_X", "");
}

} // namespace
