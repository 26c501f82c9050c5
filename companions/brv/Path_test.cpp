#include "brv/Path.h"

#include "testing/TemporaryFolder.h"

#include <gtest/gtest.h>

TEST(NormalizePath, MakesSeparatorsUniformAndDropsRedundantParts)
{
    const std::pair<const char*, const char*> examples[] = {
        { "", "" },
        { "C:\\S\\bin\\x64\\", "C:/S/bin/x64" },
        { "a//b/./c/", "a/b/c" },
        { "a/b/../c", "a/c" },
        { "a/..", "." },
        { "./", "." },
        { "../a/../../b", "../../b" },
        { "/", "/" },
        { "/../a", "/a" },
        { "C:\\..\\a", "C:/a" },
        { "C:\\", "C:/" },
        { "C:..\\a", "C:../a" },
        { "\\\\server\\share\\..\\a", "//server/share/a" },
        { "\\\\server\\share\\a\\..\\..", "//server/share" },
        { "///a", "/a" },
    };
    for (const auto& [path, expected] : examples) {
        EXPECT_EQ(brv::NormalizePath(path), expected) << path;
    }
}

TEST(FixPathSeparators, KeepsEveryCharacterInItsPlace)
{
    EXPECT_EQ(brv::FixPathSeparators("C:\\a/\\.\\b\\"), "C:/a//./b/");
}

TEST(RelativeFilename, LeadsFromAFolderToAFile)
{
    const struct
    {
        const char* folder;
        const char* file;
        const char* expected;
    } examples[] = {
        { "C:/S/data", "C:\\S\\data\\cars\\a.xml", "cars/a.xml" },
        { "C:/S/data/", "c:/S/./x/../file", "../file" },
        { "/a/b/c", "/a/d", "../../d" },
        { "/a/bc", "/a/b", "../b" },
        { "/a", "/a", "." },
        { "/", "/a", "a" },
        { "a/b", "a/c", "../c" },
        { ".", "a/b", "a/b" },
        { "../a", "../b", "../b" },
        { "C:/a", "D:/a/b", "D:/a/b" },
        { "/a", "a/b", "a/b" },
        { "a", "/a//b", "/a/b" },
        { "../../a", "../b", "../b" },
        { "//pc/share/a", "\\\\pc\\share\\b", "../b" },
        { "//pc/share/a", "//pc/other/a", "//pc/other/a" },
        { "", "a", "a" },
    };
    for (const auto& [folder, file, expected] : examples) {
        EXPECT_EQ(brv::RelativeFilename(folder, file), expected) << folder << " to " << file;
    }
}

TEST(RestoreCase, SpellsEachPartAsTheDiskDoes)
{
    const brvTesting::TemporaryFolder folder;
    folder.write(u8"Sub Folder/Été.TXT", "");
    const std::string root = brv::FixPathSeparators(folder.file());
    EXPECT_EQ(brv::RestoreCase(root + u8"\\sub FOLDER\\éTÉ.txt"), root + u8"/Sub Folder/Été.TXT");
    EXPECT_EQ(brv::RestoreCase(root + "//sub folder/../SUB FOLDER/./"), root + "//Sub Folder/../Sub Folder/./");
    EXPECT_EQ(brv::RestoreCase(root + "/SUB FOLDER/Missing/Été.txt"), root + "/Sub Folder/Missing/Été.txt");
    EXPECT_EQ(brv::RestoreCase(root + "/S?b Folder/*"), root + "/S?b Folder/*");
    EXPECT_EQ(brv::RestoreCase(""), "");
    EXPECT_EQ(brv::RestoreCase("\\"), "/");
    EXPECT_EQ(brv::RestoreCase("\\\\No Server\\share"), "//No Server/share");
}
