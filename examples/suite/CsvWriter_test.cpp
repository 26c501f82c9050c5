#include "CsvWriter.h"

#include "testing/TemporaryFolder.h"

#include <brvUtils/core/Errors.h>

#include <gmock/gmock.h>

using namespace suite;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

const std::vector<std::string> names = {"row", "speed m/s"};
const std::string header = "row,speed m/s\n";
constexpr std::chrono::milliseconds always{0};
constexpr std::chrono::hours never{1000};

class CsvWriting : public testing::Test
{
protected:
    std::filesystem::path path() const { return std::filesystem::u8path(folder_.file("täst.csv")); }
    std::string content() const { return folder_.read("täst.csv"); }
    void put(const std::string& text) const { folder_.write("täst.csv", text); }

    brvTesting::TemporaryFolder folder_;
};

} // namespace

TEST_F(CsvWriting, rowsAreWrittenTogetherWhenItIsTimeAndAtTheEnd)
{
    {
        CsvWriter writer(path(), names, never);
        writer.add({0, 0.1 + 0.2});
        writer.add({1, -1.25e-7});
        EXPECT_EQ(content(), header);
        EXPECT_EQ(writer.waiting(), 2u);
        EXPECT_TRUE(writer.write());
        EXPECT_EQ(writer.waiting(), 0u);
        EXPECT_EQ(content(), header + "0,0.3\n1,-1.25e-07\n");
        writer.add({2, 123456789.125});
    }
    EXPECT_EQ(content(), header + "0,0.3\n1,-1.25e-07\n2,123456789.125\n");

    CsvWriter writer(path(), names, always);
    writer.add({3, 0});
    EXPECT_THAT(content(), testing::EndsWith("\n3,0\n"));
    EXPECT_THAT(writer.fault(), IsEmpty());
}

// What a power failure may leave.
TEST_F(CsvWriting, aTableThatWasCutAnywhereIsGoneOnWithBehindItsLastWholeRow)
{
    const std::string rows[] = {"0,1.5\n", "1,22.25\n"};
    const std::string whole = header + rows[0] + rows[1];
    for (std::size_t size = 0; size <= whole.size(); ++size) {
        put(whole.substr(0, size));
        const std::size_t rowsLeft = size < header.size() + rows[0].size() ? 0u : size < whole.size() ? 1u : 2u;
        std::string left = size < header.size() ? "" : header;
        for (std::size_t row = 0; row < rowsLeft; ++row) {
            left += rows[row];
        }
        {
            CsvWriter writer(path(), names, never);
            EXPECT_EQ(writer.removed(), size - left.size()) << size;
            if (rowsLeft == 0) {
                EXPECT_THAT(writer.lastRow(), IsEmpty()) << size;
            } else {
                EXPECT_THAT(writer.lastRow(), rowsLeft == 1 ? ElementsAre(0, 1.5) : ElementsAre(1, 22.25)) << size;
            }
            writer.add({7, 0.5});
        }
        EXPECT_EQ(content(), (left.empty() ? header : left) + "7,0.5\n") << size;
    }
}

TEST_F(CsvWriting, theLastRowIsFoundHoweverLongTheTableAndWhatWasCut)
{
    std::string table = header;
    for (int row = 0; row < 20'000; ++row) {
        table += std::to_string(row) + ",13.9\n";
    }
    put(table + std::string(100'000, '\0'));
    CsvWriter writer(path(), names, never);
    EXPECT_THAT(writer.lastRow(), ElementsAre(19'999, 13.9));
    EXPECT_EQ(writer.removed(), 100'000u);
    EXPECT_EQ(content(), table);
}

TEST_F(CsvWriting, otherFilesStayAsTheyAre)
{
    for (const std::string text : {"row,speed km/h\n", "a letter", "row,speed m/s,gear\n1,2,3\n", "row,speed m/s\n1\n", "row,speed m/s\n1,fast\n",
             "row,speed m/s\n\n", "row,speed m/s\n1,2,3\n"}) {
        put(text);
        EXPECT_THROW(CsvWriter(path(), names, never), brvUtils::FileError) << text;
        EXPECT_EQ(content(), text);
    }
    EXPECT_THROW(CsvWriter(folder_.path(), names, never), brvUtils::FileError);
    EXPECT_THROW(CsvWriter(folder_.path() / "none" / "x.csv", names, never), brvUtils::FileError);
}
