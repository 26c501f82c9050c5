#include "brvUtils/core/FileSystem.h"

#include "brvUtils/os/FileSystem.h"
#include "testing/EnvironmentGuard.h"
#include "testing/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace brvUtils {
namespace {

using brvTesting::TemporaryFolder;
using Utilities::Encoding::Transcode;
namespace fs = std::filesystem;

constexpr auto utf8 = Utilities::Encoding::Mode::Utf8;

TEST(FileSystem, TellsFilesFromFolders)
{
    const TemporaryFolder folder;
    const std::string file = folder.write(u8"été \u4E00/a b.txt", "12345");
    const std::string sub = folder.file(u8"été \u4E00");
    const std::string missing = folder.file("missing");

    EXPECT_TRUE(fileExist(file, utf8));
    EXPECT_TRUE(fileExist(Transcode(file)));
    EXPECT_FALSE(fileExist(sub, utf8));
    EXPECT_FALSE(fileExist(missing, utf8));
    EXPECT_FALSE(fileExist("", utf8));

    for (const char* end : { "", "/", "\\" }) {
        EXPECT_TRUE(folderExist((sub + end).c_str(), utf8)) << end;
        EXPECT_TRUE(folderExist(Transcode(sub + end).c_str())) << end;
    }
    EXPECT_FALSE(folderExist(file.c_str(), utf8));
    EXPECT_FALSE(folderExist(missing.c_str(), utf8));
    EXPECT_FALSE(folderExist("", utf8));
    EXPECT_FALSE(folderExist(nullptr, utf8));
    EXPECT_FALSE(folderExist(nullptr));
    EXPECT_TRUE(folderExist("/", utf8));
    EXPECT_TRUE(folderExist(L"\\"));
    EXPECT_TRUE(folderExist((fs::current_path().root_path().u8string()).c_str(), utf8)) << "of a drive, too";

    EXPECT_TRUE(fileOrFolderExist(file, utf8));
    EXPECT_TRUE(fileOrFolderExist(Transcode(sub)));
    EXPECT_FALSE(fileOrFolderExist(missing, utf8));
}

TEST(FileSystem, TakesEitherSeparator)
{
    const TemporaryFolder folder;
    folder.write("a/b.txt", "123");
    const std::string path = folder.file() + "\\a\\b.txt";
    EXPECT_TRUE(fileExist(path, utf8));
    EXPECT_EQ(fileSize(path.c_str(), utf8), 3U);
    EXPECT_TRUE(setModificationTime(path.c_str(), 1'000'000'000, utf8));
    EXPECT_EQ(getModificationTime(Transcode(folder.file("a/b.txt")).c_str()), 1'000'000'000);
    EXPECT_TRUE(recursiveMkDir((folder.file() + "\\a\\c").c_str()));
    EXPECT_TRUE(fs::is_directory(folder.path() / "a" / "c"));
}

TEST(FileSystem, TellsWhatTheModeGrants)
{
    const TemporaryFolder folder;
    const std::string file = folder.write("file", "");
    EXPECT_TRUE(fileOrFolderIsReadable(file, utf8) && fileOrFolderIsReadable(Transcode(file)));
    EXPECT_TRUE(fileOrFolderIsWritable(file, utf8) && fileOrFolderIsWritable(Transcode(file)));
    EXPECT_FALSE(fileOrFolderIsExecutable(file, utf8) || fileOrFolderIsExecutable(Transcode(file)));
    EXPECT_TRUE(fileOrFolderIsExecutable(folder.file(), utf8));
    fs::permissions(fs::u8path(file), fs::perms::owner_read);
    EXPECT_TRUE(fileOrFolderIsReadable(file, utf8));
    EXPECT_FALSE(fileOrFolderIsWritable(file, utf8));
    const std::string missing = folder.file("missing");
    EXPECT_FALSE(fileOrFolderIsReadable(missing, utf8) || fileOrFolderIsWritable(missing, utf8) || fileOrFolderIsExecutable(missing, utf8));
}

TEST(FileSystem, GivesSizes)
{
    const TemporaryFolder folder;
    const std::string file = folder.write("file", "12345");
    EXPECT_EQ(fileSize(file.c_str(), utf8), 5U);
    EXPECT_EQ(fileSize(Transcode(file).c_str()), 5U);
    fs::resize_file(fs::u8path(file), 5'000'000'000); // takes no place on the disk
    EXPECT_EQ(fileSize(file.c_str(), utf8), 5'000'000'000U);
    EXPECT_EQ(fileSize(folder.file("missing").c_str(), utf8), 0U);
    EXPECT_EQ(fileSize("", utf8) + fileSize(nullptr, utf8) + fileSize(nullptr), 0U);
}

TEST(FileSystem, GivesBackTheTimesThatWereSet)
{
    const TemporaryFolder folder;
    const std::string file = folder.write(u8"é", "12345");
    // Winter and summer, the hours in which clocks are changed in Europe, the ends of the calendar.
    for (const std::int64_t time : { 1'705'320'000, 1'721'044'800, 1'711'847'000, 1'729'990'000, 1'729'993'600 }) {
        EXPECT_TRUE(setModificationTime(file.c_str(), time, utf8));
        EXPECT_EQ(getModificationTime(file.c_str(), utf8), time);
    }
    for (const std::int64_t time : { std::int64_t { 86'400 }, std::int64_t { 5'000'000'000 } }) {
        EXPECT_TRUE(setModificationTime(Transcode(file).c_str(), time));
        EXPECT_EQ(getModificationTime(Transcode(file).c_str()), time);
    }
    EXPECT_FALSE(setModificationTime(file.c_str(), -1, utf8));
    EXPECT_FALSE(setModificationTime(file.c_str(), 32'535'216'000, utf8));
    EXPECT_EQ(getModificationTime(file.c_str(), utf8), 5'000'000'000);
    EXPECT_EQ(folder.read(u8"é"), "12345");

    EXPECT_NE(getModificationTime(folder.file().c_str(), utf8), 0);
    EXPECT_FALSE(setModificationTime(folder.file().c_str(), 1, utf8)) << "a folder";
    EXPECT_FALSE(setModificationTime(folder.file("missing").c_str(), 1, utf8));
    EXPECT_FALSE(setModificationTime(nullptr, 1, utf8) || setModificationTime(nullptr, 1));
    EXPECT_EQ(getModificationTime(folder.file("missing").c_str(), utf8), 0);
    EXPECT_EQ(getModificationTime(nullptr, utf8) + getModificationTime(nullptr), 0);
}

TEST(FileSystem, MakesFoldersAndTheirParents)
{
    const TemporaryFolder folder;
    EXPECT_TRUE(recursiveMkDir((folder.file("a/b/c") + "//\\").c_str()));
    EXPECT_TRUE(fs::is_directory(folder.path() / "a" / "b" / "c"));
    EXPECT_TRUE(recursiveMkDir(folder.file("a/b/c").c_str()));
    EXPECT_TRUE(recursiveMkDir(Transcode(folder.file(u8"a/é\u4E00/x")).c_str()));
    EXPECT_TRUE(fs::is_directory(fs::u8path(folder.file(u8"a/é\u4E00/x"))));
    EXPECT_TRUE(recursiveMkDir("/"));

    folder.write("file", "");
    EXPECT_FALSE(recursiveMkDir(folder.file("file").c_str()));
    EXPECT_FALSE(recursiveMkDir(folder.file("file/x").c_str()));
    EXPECT_FALSE(recursiveMkDir("") || recursiveMkDir(static_cast<const char*>(nullptr)) || recursiveMkDir(static_cast<const wchar_t*>(nullptr)));

    const fs::path before = fs::current_path();
    fs::current_path(folder.path());
    EXPECT_TRUE(recursiveMkDir("x/y/z")) << "short relative names";
    EXPECT_TRUE(folderExist("x/y/z", utf8));
    fs::current_path(before);
}

TEST(FileSystem, RefusesPathsThatAreTooLong)
{
    const TemporaryFolder folder;
    folder.write("file", "");
    std::string path = folder.file();
    while (path.size() + 12 < os::longestPath()) {
        path += "/.";
    }
    EXPECT_TRUE(folderExist(path.c_str(), utf8));
    while (path.size() <= os::longestPath()) {
        path += "/.";
    }
    EXPECT_FALSE(folderExist(path.c_str(), utf8));
    EXPECT_FALSE(recursiveMkDir(path.c_str()));
    EXPECT_FALSE(recursiveMkDir((path + "/new").c_str()));
    EXPECT_EQ(recursiveDelete(path, ""), 0U);
    EXPECT_EQ(folder.read("file"), "");
}

TEST(FileSystem, DeletesFilesBySuffixInAllFolders)
{
    const TemporaryFolder folder;
    for (const char* name : { "a.tmp", "b.txt", "sub/a.tmp", "sub/inner/c.tmp", "sub/inner/tmp", u8"sub/inner/\u4E00.tmp" }) {
        folder.write(name, "");
    }
    fs::create_directory(folder.path() / "empty.tmp");
    fs::permissions(folder.path() / "sub" / "a.tmp", fs::perms::owner_read);
    EXPECT_EQ(recursiveDelete(folder.file("missing"), ""), 0U);
    EXPECT_EQ(recursiveDelete(folder.file(), "sub/a.tmp"), 0U);
    EXPECT_EQ(recursiveDelete(folder.file(), "sub\\a.tmp"), 1U) << "the suffix may reach into the folders";
    EXPECT_EQ(recursiveDelete(folder.file(), ".tmp"), 3U);
    EXPECT_TRUE(fs::exists(folder.path() / "b.txt") && fs::exists(folder.path() / "empty.tmp"));
    EXPECT_EQ(recursiveDelete(folder.file(), ""), 2U);
    EXPECT_TRUE(fs::exists(folder.path() / "sub" / "inner") && fs::is_empty(folder.path() / "sub" / "inner"));
}

TEST(FileSystem, KnowsTheTemporaryFolder)
{
    const std::string path = getTempPath();
    EXPECT_TRUE(path.back() == '/' || path.back() == '\\') << path;
    const TemporaryFolder folder;
    const brvTesting::EnvironmentGuard linux("TMPDIR", folder.file());
    const brvTesting::EnvironmentGuard windows("TMP", folder.file());
    folder.write("marker", "");
    EXPECT_TRUE(fileExist(getTempPath() + "marker", Utilities::Encoding::Mode::Local8Bit));
}

TEST(FileSystem, LeavesNamesAndLocalPathsAsTheyAre)
{
    EXPECT_EQ(which("no such program"), "no such program");
    for (const char* path : { "", "C:\\Studio\\data", "Q:/x", "/usr/share", "relative\\x" }) {
        EXPECT_EQ(checkForLocalPath(path), path);
    }
}

} // namespace
} // namespace brvUtils
