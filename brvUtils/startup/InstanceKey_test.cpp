#include "brvUtils/startup/InstanceKey.h"

#include "testing/Child.h"

#include <gtest/gtest.h>

namespace {

BRV_CHILD(tellInstance)
{
    brvTesting::childSay("instance " + std::string(brvUtils::getInstanceKey()));
    brvTesting::childSay(brvUtils::buildKeyWithInstance("SHM_X"));
    return 0;
}

TEST(InstanceKey, PrefixesNamesWithTheInstance)
{
    brvTesting::Child child("tellInstance", {}, { { "STUDIO_INSTANCE", "I2" } });
    child.expectLine("instance I2");
    child.expectLine("I2SHM_X");
    child.expectExit(0);
}

TEST(InstanceKey, ChangesNothingForTheEmptyInstance)
{
    brvTesting::Child child("tellInstance", {}, { { "STUDIO_INSTANCE", "" } });
    child.expectLine("instance ");
    child.expectLine("SHM_X");
    child.expectExit(0);
}

} // namespace
