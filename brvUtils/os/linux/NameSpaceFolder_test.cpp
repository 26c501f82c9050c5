#include "brvUtils/os/linux/ObjectTable_test.h"

#include "brvUtils/os/Event.h"
#include "brvUtils/os/Segment.h"
#include "brvUtils/os/Semaphore.h"
#include "testing/Child.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using namespace brvUtils::os;
using namespace brvTesting;

// Names and rights of the folder are those of a user; the child becomes one that owns nothing yet.

BRV_CHILD(opensAsSomebody)
{
    const auto somebody = static_cast<uid_t>(std::stoul(arguments[0]));
    if (setresgid(somebody, somebody, somebody) != 0 || setresuid(somebody, somebody, somebody) != 0) {
        return 9;
    }
    const SemaphoreOpening opening = openSemaphore("mine", true);
    childSay(std::to_string(opening.error));
    closeSemaphore(opening.semaphore);
    return 0;
}

void expectForUser(uid_t user, ErrorCode expected)
{
    Child child("opensAsSomebody", {std::to_string(user)});
    child.expectLine(std::to_string(expected));
    child.expectExit(0);
}

TEST(NameSpaceFolder, RefusesAFolderThatIsNotTheUsersOwn)
{
    if (geteuid() != 0) {
        GTEST_SKIP() << "takes the rights of several users, which only root can";
    }
    const uid_t somebody = 1'000'000'000 + static_cast<uid_t>(getpid());
    const std::string foldersOfSomebody = "/dev/shm/brvUtils-" + std::to_string(somebody);
    const auto expectForSomebody = [&](ErrorCode expected) { expectForUser(somebody, expected); };
    expectForSomebody(error::none);
    EXPECT_FALSE(fs::exists(foldersOfSomebody)) << "nothing is left behind";

    fs::create_directory(foldersOfSomebody);
    expectForSomebody(error::accessDenied);
    EXPECT_EQ(chown(foldersOfSomebody.c_str(), somebody, somebody), 0);
    fs::permissions(foldersOfSomebody, fs::perms(0777));
    expectForSomebody(error::accessDenied);
    fs::permissions(foldersOfSomebody, fs::perms(0700));
    expectForSomebody(error::none);

    const fs::path elsewhere = "/dev/shm/" + uniqueName("brv");
    fs::create_directory(elsewhere);
    EXPECT_EQ(chown(elsewhere.c_str(), somebody, somebody), 0);
    fs::permissions(elsewhere, fs::perms(0700));
    fs::create_symlink(elsewhere, foldersOfSomebody);
    expectForSomebody(error::accessDenied);
    fs::remove(foldersOfSomebody);
    fs::remove_all(elsewhere);

    std::ofstream(foldersOfSomebody) << "a file";
    expectForSomebody(error::accessDenied);
    fs::remove(foldersOfSomebody);
}

class SmallFileSystem
{
public:
    SmallFileSystem()
    {
        fs::create_directory(mountPoint_);
        mounted_ = mount("tmpfs", mountPoint_.c_str(), "tmpfs", 0, "size=2m,mode=0700") == 0;
    }
    ~SmallFileSystem()
    {
        if (mounted_) {
            umount(mountPoint_.c_str());
        }
        fs::remove(mountPoint_);
    }
    bool isMounted() const { return mounted_; }
    const fs::path& mountPoint() const { return mountPoint_; }

private:
    fs::path mountPoint_ = "/dev/shm/" + uniqueName("brv");
    bool mounted_ = false;
};

TEST(NameSpaceFolder, TooLittleSpaceFailsTheCreationAlone)
{
    const SmallFileSystem fileSystem;
    if (!fileSystem.isMounted()) {
        GTEST_SKIP() << "needs a small file system, which only root can mount";
    }
    {
        const NameSpace space(fileSystem.mountPoint() / "space");
        Segment* fits = openSegment("fits", 900'000).segment;
        ASSERT_NE(fits, nullptr);
        static_cast<char*>(segmentAddress(fits))[899'999] = 'x';
        const SegmentOpening tooLarge = openSegment("too large", 900'000);
        EXPECT_EQ(tooLarge.error, error::diskFull);
        EXPECT_EQ(static_cast<char*>(segmentAddress(fits))[899'999], 'x');

        std::vector<Semaphore*> semaphores;
        SemaphoreOpening opening{};
        while ((opening = openSemaphore(("s" + std::to_string(semaphores.size())).c_str(), true)).semaphore != nullptr) {
            semaphores.push_back(opening.semaphore);
        }
        EXPECT_EQ(opening.error, error::diskFull) << "after " << semaphores.size();
        EXPECT_EQ(waitSemaphore(semaphores.back(), 0).status, WaitStatus::signalled);
        closeSegment(fits);
        opening = openSemaphore("now", true);
        EXPECT_NE(opening.semaphore, nullptr);
        for (Semaphore* semaphore : semaphores) {
            closeSemaphore(semaphore);
        }
        closeSemaphore(opening.semaphore);
    }
}

} // namespace
