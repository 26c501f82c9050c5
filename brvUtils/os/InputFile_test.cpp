#include "brvUtils/os/InputFile.h"

#include "testing/TemporaryFolder.h"

#include <filesystem>
#include <gtest/gtest.h>

namespace brvUtils::os {
namespace {

struct InputFileTest : testing::Test
{
    std::string read(const InputFile& file, std::uint64_t offset, std::size_t count)
    {
        std::string text(count, '?');
        std::size_t got = 0;
        EXPECT_EQ(file.read(offset, text.data(), count, got), error::none);
        return text.substr(0, got);
    }

    const brvTesting::TemporaryFolder folder{"input \xC3\xA9"};
};

TEST_F(InputFileTest, IsReadAnywhereAndEndsWhereItEndsNow)
{
    InputFile file;
    ASSERT_EQ(file.open(folder.write("f", "0123456789")), error::none);
    EXPECT_EQ(file.size(), 10u);
    EXPECT_EQ(read(file, 3, 4), "3456");
    EXPECT_EQ(read(file, 8, 4), "89");
    EXPECT_EQ(read(file, 10, 1), "");
    EXPECT_EQ(read(file, std::uint64_t{1} << 40, 1), "");
    std::filesystem::resize_file(folder.path() / "f", 4);
    EXPECT_EQ(read(file, 3, 4), "3") << "somebody has cut it";
    EXPECT_EQ(file.size(), 10u);
}

TEST_F(InputFileTest, IsNoFolderAndNothingThatIsNotThere)
{
    EXPECT_NE(InputFile().open(folder.file()), error::none);
    EXPECT_EQ(InputFile().open(folder.file("none")), error::fileNotFound);
}

} // namespace
} // namespace brvUtils::os
