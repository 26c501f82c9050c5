#include "Utilities/System.h"

#include "testing/Child.h"
#include "testing/EnvironmentGuard.h"

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

using Utilities::System::DaemonVariableMatchingPattern;
using Utilities::System::ExpandLocalEnvironmentVariables;
using Variables = std::map<std::string, std::string>;

TEST(ExpandLocalEnvironmentVariables, TakesTheMapBeforeTheEnvironmentAndLooksIntoValues)
{
    const brvTesting::EnvironmentGuard both("BRV_TEST_BOTH", "environment");
    const brvTesting::EnvironmentGuard path("BRV_TEST_PATH", "C:/${BRV_TEST_BOTH}");
    const Variables variables = {{"BRV_TEST_BOTH", "map"}, {"empty", ""}, {"d\xC3\xA9j\xC3\xA0 vu", "$ {}"}};

    std::string text = "a${BRV_TEST_PATH}/${BRV_TEST_BOTH}${empty}/${d\xC3\xA9j\xC3\xA0 vu}z";
    EXPECT_TRUE(ExpandLocalEnvironmentVariables(text, text, DaemonVariableMatchingPattern, variables));
    EXPECT_EQ(text, "aC:/map/map/$ {}z");
    EXPECT_TRUE(ExpandLocalEnvironmentVariables("%BRV_TEST_BOTH%/${BRV_TEST_BOTH}", text, "%*%", {}));
    EXPECT_EQ(text, "environment/${BRV_TEST_BOTH}");
}

TEST(ExpandLocalEnvironmentVariables, LeavesWhatItDoesNotKnow)
{
    const Variables variables = {{"A", "a"}};
    std::string result;
    const std::string unknown = "${A}${BRV_TEST_NONE${A}}${}${A}";
    EXPECT_FALSE(ExpandLocalEnvironmentVariables(unknown, result, DaemonVariableMatchingPattern, variables));
    EXPECT_EQ(result, "a${BRV_TEST_NONEa}${}a");
    for (const std::string text : {"", "plain", "$A {A}", "${A", "a${"}) {
        EXPECT_TRUE(ExpandLocalEnvironmentVariables(text, result, DaemonVariableMatchingPattern, variables));
        EXPECT_EQ(result, text);
    }
    for (const std::string pattern : {"", "*", "${", "${*", "*}"}) {
        EXPECT_TRUE(ExpandLocalEnvironmentVariables("${A}", result, pattern, variables));
        EXPECT_EQ(result, "${A}");
    }
}

TEST(ExpandLocalEnvironmentVariables, EndsWhereValuesDoNot)
{
    Variables variables = {{"self", "${self}"}, {"grows", "${grows}x"}, {"a", "${b}"}, {"b", "${a}"},
        {"large", std::string(100'000, 'x') + "${large}"}, {"doubles0", ""}};
    for (int i = 1; i < 100; ++i) {
        const std::string before = "${doubles" + std::to_string(i - 1) + "}";
        variables["doubles" + std::to_string(i)] = before + before;
    }
    for (const std::string text : {"${self}", "${grows}", "${a}/${b}", "${large}", "${doubles99}"}) {
        std::string result;
        EXPECT_FALSE(ExpandLocalEnvironmentVariables(text, result, DaemonVariableMatchingPattern, variables));
        EXPECT_EQ(result, text);
    }
}

} // namespace
