#include "brvUtils/core/FileNames.h"

#include "testing/CapturedOutput.h"

#include <gmock/gmock.h>

#include <cstring>

namespace brvUtils {
namespace {

struct Parts {
    const char* path;
    const char* folder;
    const char* name;
    const char* withoutExtension;
    const char* extension;
};

const Parts examples[] = {
    { "a/b.c.d", "a", "b.c.d", "a/b.c", ".d" },
    { "dir.v2/file", "dir.v2", "file", "dir.v2/file", ".v2/file" },
    { "dir.v2\\file", "dir.v2", "file", "dir.v2\\file", ".v2\\file" },
    { ".profile", "", ".profile", "", ".profile" },
    { "C:\\data\\x.csv", "C:\\data", "x.csv", "C:\\data\\x", ".csv" },
    { "a/b\\c", "a/b", "c", "a/b\\c", "" },
    { "folder/", "folder", "", "folder/", "" },
    { "name", "", "name", "name", "" },
    { "", "", "", "", "" },
};

TEST(FileNames, TakesPathsApart)
{
    for (const Parts& parts : examples) {
        SCOPED_TRACE(parts.path);
        EXPECT_EQ(getPath(parts.path), parts.folder);
        EXPECT_EQ(fileName(parts.path), parts.name);
        std::string text = parts.path;
        removePath(text);
        EXPECT_EQ(text, parts.name);
        text = parts.path;
        removeExtension(text);
        EXPECT_EQ(text, parts.withoutExtension);
        getExtension(parts.path, text);
        EXPECT_EQ(text, parts.extension);
        std::wstring wide;
        getExtension(std::wstring(parts.path, parts.path + std::string(parts.path).size()), wide);
        EXPECT_EQ(std::string(wide.begin(), wide.end()), parts.extension);
    }
}

TEST(FileNames, DoesTheSameInBuffers)
{
    for (const Parts& parts : examples) {
        SCOPED_TRACE(parts.path);
        // Buffers just large enough for the input, so that the sanitizer sees a longer result.
        const std::vector<char> path(parts.path, parts.path + std::strlen(parts.path) + 1);
        std::vector<char> buffer = path;
        removePath(buffer.data());
        EXPECT_STREQ(buffer.data(), parts.name);
        buffer = path;
        removeExtension(buffer.data());
        EXPECT_STREQ(buffer.data(), parts.withoutExtension);
        getExtension(path.data(), buffer.data());
        EXPECT_STREQ(buffer.data(), parts.extension);
    }
}

TEST(FileNames, ConvertsSeparators)
{
    EXPECT_EQ(brvUtils::basename("C:\\data\\x.csv"), "C:/data/x.csv");
    EXPECT_EQ(brvUtils::basename("a/b\\c"), "b\\c");
    EXPECT_EQ(windowsStylePath("a/b\\c"), "a\\b\\c");
    char out[32];
    buildFileName("file", "C:", "\\data", ".csv", out);
    EXPECT_STREQ(out, "C:\\data\\file.csv");
}

TEST(FileNames, DatesRecordings)
{
    EXPECT_EQ(buildRecordBaseName("run/1", 1457161689), "run_1-05_03_2016-07h08m09s");
    EXPECT_EQ(buildRecordBaseName("a\\b", 0), "a_b-01_01_1970-00h00m00s");
    EXPECT_EQ(buildRecordBaseName("x", 32503679999), "x-31_12_2999-23h59m59s");
}

TEST(FileNames, ReportsATimeOutsideTheCalendar)
{
    for (const std::int64_t time : { std::int64_t { -1 }, std::int64_t { 32535215999 } + 1 }) {
        brvTesting::CapturedOutput captured;
        EXPECT_THAT(buildRecordBaseName("x", time), testing::StartsWith("x-"));
        EXPECT_THAT(captured.err(), testing::StartsWith("buildRecordBaseName: "));
    }
}

} // namespace
} // namespace brvUtils
