#include "brvUtils/os/FileSystem.h"

#include "brvUtils/os/linux/Descriptor.h"
#include "brvUtils/os/linux/RecordLock.h"

#include "testing/Child.h"
#include "testing/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace brvUtils::os {
namespace {

namespace fs = std::filesystem;

TEST(FileReplacement, KeepsTheModeAndTheLink)
{
    const brvTesting::TemporaryFolder folder;
    const std::string target = folder.write("real/file", "old");
    fs::create_symlink("real/file", folder.path() / "link");
    chmod(target.c_str(), 0640);
    ASSERT_EQ(replaceFile(folder.file("link"), "new"), error::none);
    EXPECT_TRUE(fs::is_symlink(folder.path() / "link"));
    EXPECT_EQ(folder.read("real/file"), "new");
    struct stat status {};
    stat(target.c_str(), &status);
    EXPECT_EQ(status.st_mode & 0777, 0640U);
}

BRV_CHILD(writesOnAFullDisk)
{
    signal(SIGXFSZ, SIG_IGN);
    const rlimit limit { 1000, 1000 };
    setrlimit(RLIMIT_FSIZE, &limit);
    return replaceFile(arguments[0], std::string(2000, 'x')) == error::diskFull ? 0 : 1;
}

TEST(FileReplacement, LeavesTheOldFileWhereTheDiskIsFull)
{
    const brvTesting::TemporaryFolder folder;
    brvTesting::Child child("writesOnAFullDisk", { folder.write("file", "old") });
    child.expectExit(0);
    EXPECT_EQ(folder.read("file"), "old");
    EXPECT_EQ(std::distance(fs::directory_iterator(folder.path()), fs::directory_iterator()), 1);
}

TEST(FileLock, IsNotKeptByAForkedChild)
{
    const brvTesting::TemporaryFolder folder;
    const std::string path = folder.write("file", "");
    pid_t child = 0;
    {
        const FileLock lock(path);
        child = fork();
        if (child == 0) {
            pause();
            _exit(0);
        }
    }
    Descriptor file;
    file.take(::open(path.c_str(), O_RDWR | O_CLOEXEC));
    EXPECT_EQ(setRecordLock(file.get(), F_WRLCK, 0), 0);
    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
}

TEST(FileSystem, ListsNoNameThatWouldLeadElsewhere)
{
    const brvTesting::TemporaryFolder folder;
    folder.write("plain", "");
    folder.write("..\\outside", "");
    fs::create_directory_symlink(".", folder.path() / "again");
    std::vector<FolderEntry> entries;
    ASSERT_EQ(listFolder(folder.file(), entries), error::none);
    ASSERT_EQ(entries.size(), 2U);
    EXPECT_FALSE(entries[0].isFolder || entries[1].isFolder) << "a link to a folder counts as none";
}

} // namespace
} // namespace brvUtils::os
