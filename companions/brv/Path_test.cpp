#include "brv/Path.h"

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
