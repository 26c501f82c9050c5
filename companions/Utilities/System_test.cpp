#include "Utilities/System.h"

#include "testing/Child.h"

#include <gtest/gtest.h>

namespace {

BRV_CHILD(tellUser)
{
    brvTesting::childSay(Utilities::System::GetEffectiveUserName());
    return 0;
}

TEST(System, NamesTheSameUserInEveryProcessWhateverTheEnvironment)
{
    const std::string user = Utilities::System::GetEffectiveUserName();
    EXPECT_FALSE(user.empty());
    brvTesting::Child child("tellUser", {}, { { "USER", "somebody" }, { "USERNAME", "somebody" }, { "LOGNAME", "somebody" } });
    child.expectLine(user);
    child.expectExit(0);
}

} // namespace
