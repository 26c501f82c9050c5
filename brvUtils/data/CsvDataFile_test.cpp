#include "brvUtils/data/CsvDataFile_test.h"

#include <clocale>
#include <filesystem>
#include <limits>
#include <stdexcept>

namespace csvTest {
namespace {

TEST(CsvDataFile, GivesColumnsTheTypeOfTheirFirstValue)
{
    const std::string content = "t;v\n0;1\n0.5;2.5\n";
    EXPECT_EQ(load(content), "t:i0i0 v:i1i2");
    EXPECT_EQ(load(content, {';', CsvDataFile::FORCE_NONE}), "t:i0i0 v:i1i2");
    EXPECT_EQ(load(content, {';', CsvDataFile::FORCE_DOUBLE}), "t:d0d0.5 v:d1d2.5");
    EXPECT_EQ(load(content, {';', CsvDataFile::FORCE_STRING}), "t:|0||0.5| v:|1||2.5|");
    EXPECT_EQ(load(content, {';', 17}), "t:|0||0.5| v:|1||2.5|");
    EXPECT_EQ(load("a;b\nx;1\n2;y\n z;3\n", {';', CsvDataFile::FORCE_DOUBLE}), "a:|x|| z| b:d1d3") << "refused and lost";
    EXPECT_EQ(load("a;b\nx;1\n2;y\n.5;3\n"), "a:|x||.5| b:i1i3") << "an integer does not begin with a point";
}

TEST(CsvDataFile, TakesWantedColumnsOnly)
{
    const std::string content = "t;v;t;w\n1;2;3;4\n5;6;7\n8\n";
    EXPECT_EQ(load(content, {';', 0, {"v"}}), "v:i2i6");
    EXPECT_EQ(load(content, {';', 0, {"w", "t", "T", "t"}}), "t:i1i5i8 t:i3i7 w:i4");
    EXPECT_EQ(load(content, {';', 0, {"missing"}}), "");

    const TemporaryFolder folder;
    CsvDataFile file(';', CsvDataFile::FORCE_INT);
    EXPECT_TRUE(file.load(folder.write("table.csv", content), {}));
    EXPECT_EQ(file["t"], file[2]) << "the last of that name";
    EXPECT_EQ(file.getColmnCount(), 4u);
}

TEST(CsvDataFile, MakesRowsOfLines)
{
    EXPECT_EQ(load(""), "");
    EXPECT_EQ(load("a;b"), "");
    EXPECT_EQ(load("a;b\n"), "");
    EXPECT_EQ(load("\n1;2\n"), "") << "no names";
    EXPECT_EQ(load("a;b\n1;2"), "a:i1 b:i2");
    EXPECT_EQ(load("a;b\n\n1;2\n\r\n\n3;4\n\n"), "a:i1i3 b:i2i4") << "empty lines";
    EXPECT_EQ(load("a;b\r\nx;y\r\nz;\r\n"), "a:|x||z| b:|y|||");
    EXPECT_EQ(load("a;b;c\n;;\nx;;z;w\n"), "a:|||x| b:|||| c:|||z|") << "empty fields, and one without a name";
    EXPECT_EQ(load("a;b\n1\n2;3\n;5\n"), "a:i1i2 b:i3i5");
    EXPECT_EQ(load("\xEF\xBB\xBF" "a\n1\n"), "a:i1");
    EXPECT_EQ(load("a\nx\ry\n\r\nz\r\r\nw\r"), "a:|x\ry||z\r||w\r|") << "lone carriage returns";
    EXPECT_EQ(load("a\n\r"), "a:|\r|");
    const std::string nul("a;b\n1\0002;x\0y\n", 12);
    EXPECT_EQ(load(nul), std::string("a:i1 b:|x\0y|", 12));
}

TEST(CsvDataFile, SaysWhenAFileCannotBeOpened)
{
    const TemporaryFolder folder;
    CsvDataFile file(';', CsvDataFile::FORCE_INT);
    EXPECT_TRUE(file.load(folder.write("table.csv", "a\n1\n"), {}));
    for (const std::string& path : {folder.file("missing.csv"), folder.file()}) {
        EXPECT_FALSE(file.load(path, {})) << path;
        EXPECT_EQ(file.getFileName(), path);
        EXPECT_EQ(shown(file), "a:i1") << "nothing else changes";
    }
}

TEST(CsvDataFile, HoldsNothingOfAnEarlierLoad)
{
    const TemporaryFolder folder;
    CsvDataFile file(';', CsvDataFile::FORCE_INT);
    EXPECT_TRUE(file.load(folder.write("one.csv", "a;b\n1;2\n"), {}));
    EXPECT_TRUE(file.load(folder.write("two.csv", "b\n3\n"), {}));
    EXPECT_EQ(shown(file), "b:i3");
    EXPECT_EQ(file["b"], file[0]);
    EXPECT_FALSE(file.exists("a"));
}

TEST(CsvDataFile, HeedsNoLocale)
{
    const std::string before = std::setlocale(LC_ALL, nullptr);
    const bool comma = std::setlocale(LC_ALL, "de_DE.UTF-8") != nullptr || std::setlocale(LC_ALL, "German_Germany.1252") != nullptr;
    const std::string found = comma && *std::localeconv()->decimal_point == ',' ? load("a\n1.5\n2,5\n0x1.8\n", {';', 1}) : "";
    std::setlocale(LC_ALL, before.c_str());
    if (found.empty()) {
        GTEST_SKIP() << "this system has no locale with a decimal comma";
    }
    EXPECT_EQ(found, "a:d1.5d2d1.5");
}

/// Rows "n;-n".
std::string rows(int count)
{
    std::string content = "a;b\n";
    for (int row = 0; row < count; ++row) {
        content += std::to_string(row) + ";-" + std::to_string(row) + '\n';
    }
    return content;
}

TEST(CsvDataFile, ReportsProgressAndStops)
{
    const TemporaryFolder folder;
    const std::string path = folder.write("table.csv", rows(1'500'000));
    const std::uint64_t size = std::filesystem::file_size(std::filesystem::u8path(path));
    for (const unsigned threads : {1u, 3u}) {
        const Tuned tuned(threads, 0);
        CsvDataFile file(';', CsvDataFile::FORCE_INT);
        std::vector<std::uint64_t> places;
        std::uint64_t stopAt = std::numeric_limits<std::uint64_t>::max();
        file.setProgress([&](std::uint64_t done, std::uint64_t total) {
            EXPECT_EQ(total, size);
            places.push_back(done);
            return done < stopAt;
        });
        EXPECT_TRUE(file.load(path, {}));
        EXPECT_EQ(file.getRowsCount(), 1'500'000u);
        EXPECT_TRUE(std::is_sorted(places.begin(), places.end()));
        EXPECT_GE(places.size(), 4u);
        EXPECT_EQ(places.back(), size);

        stopAt = 6'000'000;
        EXPECT_FALSE(file.load(path, {}));
        EXPECT_LT(places.back(), 12'000'000u);
        EXPECT_GT(file.getRowsCount(), 100'000u);
        EXPECT_EQ(file[0]->size(), file[1]->size());
        EXPECT_EQ(file[1]->getIntData()[file.getRowsCount() - 1], -static_cast<int>(file.getRowsCount()) + 1);

        file.setProgress([](std::uint64_t, std::uint64_t) -> bool { throw std::runtime_error("enough"); });
        EXPECT_THROW(file.load(path, {}), std::runtime_error);
        file.setProgress(nullptr);
        EXPECT_TRUE(file.load(path, {}));
    }
}

/// A file that is cut off again and again by the one who writes it.
TEST(CsvDataFile, EndsEarlierWhenTheFileShrinks)
{
    const TemporaryFolder folder;
    const std::string path = folder.write("table.csv", rows(1'000'000));
    for (const unsigned threads : {1u, 3u}) {
        folder.write("table.csv", rows(1'000'000));
        const Tuned tuned(threads, 64 * 1024);
        CsvDataFile file(';', CsvDataFile::FORCE_INT);
        file.setProgress([&](std::uint64_t done, std::uint64_t) {
            if (done < 9'000'000) {
                std::filesystem::resize_file(std::filesystem::u8path(path), 7'000'000);
            }
            return true;
        });
        EXPECT_TRUE(file.load(path, {}));
        EXPECT_GT(file.getRowsCount(), 300'000u);
        EXPECT_LT(file.getRowsCount(), 700'000u);
    }
}

TEST(CsvDataFile, ReadsLongLinesAndManyColumns)
{
    const TemporaryFolder folder;
    {
        const std::size_t length = 100'000'000;
        const std::string path = folder.write("long.csv", "a;b\n1;2\n3;" + std::string(length, ' ') + "4\n5;6\n");
        for (const unsigned threads : {1u, 3u}) {
            const Tuned tuned(threads, 0);
            CsvDataFile file(';', CsvDataFile::FORCE_INT);
            EXPECT_TRUE(file.load(path, {}));
            EXPECT_EQ(shown(file), "a:i1i3i5 b:i2i4i6");
        }
    }
    std::string content;
    const std::size_t columns = 1'000'000;
    for (const char* field : {"n", "1", "2", "3"}) {
        for (std::size_t i = 0; i < columns; ++i) {
            content += field;
            content += i + 1 < columns ? ';' : '\n';
        }
    }
    const std::string path = folder.write("wide.csv", content);
    for (const unsigned threads : {1u, 3u}) {
        const Tuned tuned(threads, threads == 1 ? 0 : 3'000'000);
        CsvDataFile file(';', CsvDataFile::FORCE_DOUBLE);
        EXPECT_TRUE(file.load(path, {}));
        ASSERT_EQ(file.getColmnCount(), columns);
        EXPECT_EQ(file[columns - 1]->size(), 3u);
        EXPECT_EQ(file["n"], file[columns - 1]);
    }
}

} // namespace
} // namespace csvTest
