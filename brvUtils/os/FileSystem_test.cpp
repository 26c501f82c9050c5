#include "brvUtils/os/FileSystem.h"

#include "testing/Child.h"
#include "testing/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <atomic>
#include <filesystem>
#include <thread>

namespace brvUtils::os {
namespace {

using brvTesting::Child;
using brvTesting::childHear;
using brvTesting::childSay;
using brvTesting::TemporaryFolder;
using testing::ElementsAre;
using testing::UnorderedElementsAre;
namespace fs = std::filesystem;

std::vector<std::string> namesIn(const std::string& folder)
{
    std::vector<FolderEntry> entries;
    EXPECT_EQ(listFolder(folder, entries), error::none);
    std::vector<std::string> names;
    for (const FolderEntry& entry : entries) {
        names.push_back(entry.name + (entry.isFolder ? "/" : ""));
    }
    return names;
}

TEST(FileReplacement, PutsNewBytesInPlaceOfOldOnesOrNone)
{
    const TemporaryFolder folder;
    const std::string path = folder.file(u8"é\u4E00 a.cfg");
    const std::string large(3'000'000, 'x');
    for (const std::string& contents : { std::string("first\r\n\0second", 14), large, std::string() }) {
        ASSERT_EQ(replaceFile(path, contents), error::none);
        std::string read = "before";
        EXPECT_EQ(readFile(path, read), error::none);
        EXPECT_TRUE(read == contents);
    }
    EXPECT_THAT(namesIn(folder.file()), ElementsAre(u8"é\u4E00 a.cfg"));
}

TEST(FileReplacement, LeavesNothingBehindWhenItFails)
{
    const TemporaryFolder folder;
    fs::create_directory(fs::u8path(folder.file("taken")));
    EXPECT_EQ(replaceFile(folder.file("taken"), "x"), error::accessDenied);
    EXPECT_NE(replaceFile(folder.file("missing/file"), "x"), error::none);
    EXPECT_THAT(namesIn(folder.file()), ElementsAre("taken/"));
    std::string contents = "kept";
    EXPECT_NE(readFile(folder.file("missing"), contents), error::none);
    EXPECT_NE(readFile(folder.file("taken"), contents), error::none);
    EXPECT_EQ(contents, "kept");
}

TEST(FileReplacement, ReadersSeeOneVersionOrTheOther)
{
    const TemporaryFolder folder;
    const std::string path = folder.write("file", std::string(100'000, 'a'));
    std::atomic<bool> done { false };
    std::thread reader([&] { // one: several always have the file open, which Wine does not replace then
        while (!done) {
            std::string contents;
            EXPECT_EQ(readFile(path, contents), error::none);
            EXPECT_TRUE(contents == std::string(100'000, contents[0]));
        }
    });
    for (int i = 0; i < 20; ++i) {
        EXPECT_EQ(replaceFile(path, std::string(100'000, i % 2 == 0 ? 'b' : 'a')), error::none);
    }
    done = true;
    reader.join();
}

BRV_CHILD(countsUp)
{
    const std::string& path = arguments[0];
    for (int i = 0; i < std::stoi(arguments[1]); ++i) {
        const FileLock lock(path);
        std::string contents;
        if (lock.error() != error::none || readFile(path, contents) != error::none
            || replaceFile(path, std::to_string(std::stoi(contents) + 1)) != error::none) {
            return 1;
        }
    }
    return 0;
}

TEST(FileLock, MakesChangesOfSeveralProcessesFollowEachOther)
{
    const TemporaryFolder folder;
    const std::string path = folder.write("count", "0");
    Child first("countsUp", { path, "30" });
    Child second("countsUp", { path, "30" });
    Child third("countsUp", { path, "30" });
    first.expectExit(0);
    second.expectExit(0);
    third.expectExit(0);
    EXPECT_EQ(folder.read("count"), "90");
    EXPECT_THAT(namesIn(folder.file()), ElementsAre("count"));
}

BRV_CHILD(locks)
{
    const FileLock lock(arguments[0]);
    childSay(lock.error() == error::none ? "locked" : "failed");
    childHear();
    return 0;
}

TEST(FileLock, IsFreedByAHolderThatIsKilled)
{
    const TemporaryFolder folder;
    const std::string path = folder.write("file", "");
    Child holder("locks", { path });
    holder.expectLine("locked");
    Child waiter("locks", { path });
    holder.kill();
    waiter.expectLine("locked");
    waiter.kill();
    EXPECT_EQ(FileLock(path).error(), error::none);
    EXPECT_THAT(namesIn(folder.file()), ElementsAre("file"));
}

TEST(FileLock, ExcludesThreadsAndLeavesNoFileThatWasNotThere)
{
    const TemporaryFolder folder;
    const std::string path = folder.file("new");
    std::atomic<bool> taken { false };
    const auto takeTurns = [&] {
        for (int i = 0; i < 50; ++i) {
            const FileLock lock(path);
            ASSERT_EQ(lock.error(), error::none);
            ASSERT_FALSE(taken.exchange(true));
            taken = false;
        }
    };
    std::thread other(takeTurns);
    takeTurns();
    other.join();
    EXPECT_TRUE(namesIn(folder.file()).empty());
    EXPECT_NE(FileLock(folder.file("missing/file")).error(), error::none);
}

TEST(FileSystem, ListsAndDeletesByEitherSeparator)
{
    const TemporaryFolder folder;
    folder.write(u8"sub/é.txt", "abc");
    ASSERT_EQ(makeFolder(folder.file() + "\\sub\\inner"), error::none);
    EXPECT_EQ(makeFolder(folder.file("sub/inner")), error::alreadyExists);
    EXPECT_NE(makeFolder(folder.file("a/b")), error::none);
    EXPECT_THAT(namesIn(folder.file() + "\\sub"), UnorderedElementsAre(u8"é.txt", "inner/"));
    EXPECT_EQ(deleteFile(folder.file() + u8"\\sub/é.txt"), error::none);
    EXPECT_NE(deleteFile(folder.file("sub/inner")), error::none);
    EXPECT_THAT(namesIn(folder.file("sub")), ElementsAre("inner/"));
    std::vector<FolderEntry> entries;
    EXPECT_NE(listFolder(folder.file("missing"), entries), error::none);
    FileStatus status;
    EXPECT_EQ(fileStatus(folder.file("sub"), status), error::none);
    EXPECT_TRUE(status.isFolder && status.size == 0);
}

} // namespace
} // namespace brvUtils::os
