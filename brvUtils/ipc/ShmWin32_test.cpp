#include "brvUtils/ipc/ShmVersion.h"
#include "brvUtils/ipc/ShmWin32.h"
#include "testing/CapturedOutput.h"
#include "testing/UniqueName.h"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <string>

namespace {

using namespace brvUtils;
using namespace brvTesting;

TEST(ShmWin32, TheSecondSeesWhatTheFirstWrote)
{
    const std::string name = uniqueName();
    const CapturedOutput captured;
    ShmWin32 first(name.c_str(), 100, 0, true);
    char value[100] = "seen by all";
    first.setValue(value);
    const std::unique_ptr<IShm> second(ShmWin32::New(name.c_str(), 50, -1, true));
    EXPECT_TRUE(first.isCreated());
    EXPECT_FALSE(second->isCreated());
    EXPECT_EQ(second->getSize(), 50u);
    EXPECT_EQ(second->getAlignment(), 0u);
    EXPECT_TRUE(second->addPaddingBytes(7));
    EXPECT_TRUE(second->beforeRead(0));
    char seen[50];
    second->getValue(seen);
    EXPECT_STREQ(seen, "seen by all");
    EXPECT_EQ(captured.out(), "Created shared memory \"" + name + "\" successfully\nOpened existing shared memory \"" + name + "\" successfully\n");
}

TEST(ShmWin32, VersionsDoNotMeet)
{
    const std::string name = uniqueName();
    const ShmWin32 third(name.c_str(), 10, 3, true);
    const ShmWin32 fourth(name.c_str(), 10, 4, true);
    EXPECT_EQ(third.getName(), name + "_3");
    EXPECT_TRUE(fourth.isCreated());
}

TEST(ShmWin32, FailuresAreReportedWithTheCode)
{
    const std::string name = uniqueName();
    const CapturedOutput captured;
    const auto report = [](int code, const std::string& segment) {
        return "ERROR code " + std::to_string(code) + " creating shared memory \"" + segment + "\"\nFailed to create shared memory \"" + segment + "\"";
    };
    EXPECT_EQ(ShmWin32::New(name.c_str(), 0, 0, true), nullptr);
    EXPECT_EQ(captured.out(), report(87, name));
    const ShmWin32 huge(name.c_str(), size_t{1} << 32, 0, true);
    EXPECT_EQ(huge.getPtr(), nullptr);
    EXPECT_FALSE(huge.isCreated());
    const std::string longName(300, 'n');
    const ShmWin32 tooLong(longName.c_str(), 10, 0, false);
    EXPECT_EQ(captured.out(), report(87, name) + report(87, name) + report(206, longName));
}

TEST(ShmWin32, SmallerThanAskedForHasNoView)
{
    const std::string name = uniqueName();
    const ShmWin32 small(name.c_str(), 10, 0, true);
    const CapturedOutput captured;
    const ShmWin32 larger(name.c_str(), 10'000, 0, true);
    EXPECT_EQ(larger.getPtr(), nullptr);
    EXPECT_NE(captured.out().find("Failed to create shared memory \"" + name + "\""), std::string::npos);
    EXPECT_NE(small.getPtr(), nullptr);
}

TEST(ShmVersion, IsTwoBytes)
{
    unsigned char bytes[2] = {};
    ShmVersion version(7);
    version.put(bytes);
    EXPECT_EQ(bytes[0], 7);
    EXPECT_EQ(bytes[1], 0);
    bytes[1] = 1;
    version.get(bytes);
    EXPECT_EQ(version.getVersion(), 263);
    EXPECT_EQ(version.getId(), -2);
    EXPECT_EQ(version.getSize(), 2);
}

} // namespace
