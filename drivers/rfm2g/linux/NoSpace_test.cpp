#include "rfm2g/Driver_test.h"

#include "testing/Child.h"

#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>
#include <sched.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <unistd.h>

namespace {

using namespace cardTest;
using namespace brvTesting;

/// Has a small file system of its own, which ends with it.
bool mountSmall(const std::string& folder)
{
    const bool own = unshare(CLONE_NEWNS) == 0 || unshare(CLONE_NEWUSER | CLONE_NEWNS) == 0;
    return own && mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0
        && mount("none", folder.c_str(), "tmpfs", 0, "size=1m") == 0;
}

BRV_CHILD(writerWithLittleSpace)
{
    if (!mountSmall(std::getenv("RFM2G_FOLDER"))) {
        return 77;
    }
    const OpenNode node(1);
    Offset offset = 0;
    while (offset < 64u << 20 && node.write(offset, offset + 1) == Status::success) {
        offset += 64 * 1024;
    }
    // What was written stays, and what was not is zero.
    bool right = offset > 0 && offset < 1u << 20 && node.write(offset, 1) == Status::writeError && node.word(offset) == 0;
    for (Offset i = 0; i < offset; i += 64 * 1024) {
        right = right && node.word(i) == i + 1 && node.write(i + 65'532, i) == Status::success;
    }
    return right ? 0 : 1;
}

TEST(Space, ThatIsMissingFailsWrites)
{
    const OwnRings rings;
    Child child("writerWithLittleSpace");
    const brvUtils::os::ChildExit end = child.waitForEnd();
    if (end.code == 77) {
        GTEST_SKIP() << "file systems cannot be mounted here";
    }
    EXPECT_EQ(end.code, 0u) << child.err();
}

BRV_CHILD(makerOfLargeFiles)
{
    const rlimit limit{1 << 20, 1 << 20};
    setrlimit(RLIMIT_FSIZE, &limit);
    Handle handle = nullptr;
    const bool refused = driver().open(device("1").data(), &handle) == Status::osError;
    return refused && softwareCard::ringNames(softwareCard::variable("RFM2G_FOLDER")).empty() ? 0 : 1;
}

TEST(Space, ThatIsMissingFailsOpening)
{
    const OwnRings rings;
    Child child("makerOfLargeFiles");
    child.expectExit(0);
    EXPECT_NE(child.err().find("it cannot have its size"), std::string::npos) << child.err();
    const OpenNode node(1);
}

} // namespace
