#include "testing/Child.h"
#include "testing/Deadline.h"
#include "testing/EnvironmentGuard.h"
#include "testing/TemporaryFolder.h"
#include "testing/UniqueName.h"

#include <gtest/gtest.h>

#include <cstdlib>

using namespace brvTesting;

BRV_CHILD(hangsUnderDeadline)
{
    Deadline deadline("reading", std::chrono::milliseconds(std::stoi(arguments[0])));
    childHear();
    return 0;
}

BRV_CHILD(saysUniqueName)
{
    childSay(uniqueName());
    return 0;
}

BRV_CHILD(saysGuarded)
{
    const char* value = std::getenv("BRV_TESTING_GUARDED");
    childSay(value != nullptr ? value : "(none)");
    return 0;
}

TEST(Deadline, AbortsWithTheNameOfTheBlockThatHangs)
{
    Child child("hangsUnderDeadline", {"50"});
    child.expectAbort();
    EXPECT_NE(child.err().find("\"reading\" did not end within 50 ms"), std::string::npos) << child.err();
}

TEST(Deadline, LeavesTheBlockThatEndsAlone)
{
    Child child("hangsUnderDeadline", {"60000"});
    child.closeInput();
    child.expectExit(0);
}

TEST(EnvironmentGuard, IsSeenHereAndByChildrenAndUndone)
{
    const EnvironmentGuard outer("BRV_TESTING_GUARDED", "outer");
    {
        const EnvironmentGuard inner("BRV_TESTING_GUARDED", "in ner");
        EXPECT_STREQ(std::getenv("BRV_TESTING_GUARDED"), "in ner");
        Child("saysGuarded").expectLine("in ner");
        const EnvironmentGuard none("BRV_TESTING_GUARDED");
        EXPECT_EQ(std::getenv("BRV_TESTING_GUARDED"), nullptr);
        Child("saysGuarded").expectLine("(none)");
    }
    EXPECT_STREQ(std::getenv("BRV_TESTING_GUARDED"), "outer");
}

TEST(TemporaryFolder, GoesWithAllItHolds)
{
    std::filesystem::path path;
    {
        const TemporaryFolder folder;
        const TemporaryFolder other;
        EXPECT_NE(folder.path(), other.path());
        path = folder.path();
        folder.write("below/\xC3\xA4.txt", "a\r\nb\n");
        EXPECT_EQ(folder.read("below/\xC3\xA4.txt"), "a\r\nb\n");
    }
    EXPECT_FALSE(std::filesystem::exists(path));
}

TEST(UniqueName, DiffersBetweenCallsAndProcesses)
{
    Child one("saysUniqueName");
    Child two("saysUniqueName");
    EXPECT_NE(one.readLine(), two.readLine());
    EXPECT_NE(uniqueName(), uniqueName());
}
