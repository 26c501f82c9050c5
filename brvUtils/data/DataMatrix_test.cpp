#include "brvUtils/data/DataMatrix.h"

#include <gtest/gtest.h>

#include <limits>
#include <stdexcept>

namespace {

/// A table that is filled by hand.
struct Table : DataMatrix
{
    bool load(std::string const& path, std::vector<std::string> const&) override
    {
        fileName = path;
        return report(1, 2);
    }

    using DataMatrix::append;
};

TEST(DataMatrix, ConvertsDoublesToIntegersAndNothingElse)
{
    Table table;
    auto& doubles = table.append<double>("d");
    for (const double value : {2.9, -2.9, 1e300, -1e300, std::numeric_limits<double>::quiet_NaN(), 2147483647.5}) {
        EXPECT_TRUE(doubles.add(value));
    }
    EXPECT_TRUE(table.append<int>("i").add(5));
    EXPECT_TRUE(table.append<std::string>("s").add(std::string("text")));

    const int expected[] = {2, -2, 2147483647, -2147483647 - 1, 0, 2147483647};
    for (size_t row = 0; row < 6; ++row) {
        int value = 99;
        EXPECT_TRUE(table.getData(0, row, value));
        EXPECT_EQ(value, expected[row]) << row;
    }
    double number = 7.0;
    int integer = 7;
    std::string text = "before";
    EXPECT_FALSE(table.getData(1, 0, number));
    EXPECT_FALSE(table.getData(1, 0, text));
    EXPECT_FALSE(table.getData(2, 0, number));
    EXPECT_FALSE(table.getData(2, 0, integer));
    EXPECT_FALSE(table.getData(0, 0, text));
    EXPECT_EQ(number, 7.0);
    EXPECT_EQ(integer, 7);
    EXPECT_EQ(text, "before");
    EXPECT_TRUE(table.getData(2, 0, text));
    EXPECT_EQ(text, "text");
}

TEST(DataMatrix, RefusesValuesOfAnotherType)
{
    Table table;
    auto& integers = table.append<int>("i");
    EXPECT_FALSE(integers.add(1.0));
    EXPECT_FALSE(integers.add(std::string("1")));
    EXPECT_EQ(integers.size(), 0u);
    EXPECT_EQ(integers.getIntData(), nullptr);
    EXPECT_TRUE(integers.add(1));
    EXPECT_EQ(integers.getIntData(), integers.values.data());
    EXPECT_EQ(integers.getDoubleData(), nullptr);
    EXPECT_EQ(integers.getStringData(), nullptr);
}

TEST(DataMatrix, FindsColumnsByNameAndPlace)
{
    Table table;
    EXPECT_EQ(table.getRowsCount(), 0u);
    int value = 0;
    EXPECT_FALSE(table.getData(0, 0, value));
    table.append<int>("a").add(1);
    table.append<int>("twice");
    table.append<int>("twice").add(3);
    EXPECT_EQ(table.getColmnCount(), 3u);
    EXPECT_EQ(table.getRowsCount(), 1u);
    EXPECT_EQ(table.getDataName(1), "twice");
    EXPECT_EQ(table["twice"], table[2]) << "the last one of that name";
    EXPECT_FALSE(table.getData(1, 0, value)) << "it is shorter";
    EXPECT_FALSE(table.getData(3, 0, value));
    EXPECT_TRUE(table.exists("a"));
    EXPECT_FALSE(table.exists("A"));
    try {
        table["missing"];
        FAIL() << "nothing thrown";
    } catch (const std::out_of_range& error) {
        EXPECT_STREQ(error.what(), "Can't find missing");
    }
}

TEST(DataMatrix, AsksWhetherToGoOn)
{
    Table table;
    EXPECT_TRUE(table.load("f", {})) << "nobody is asked";
    uint64_t total = 0;
    table.setProgress([&](uint64_t, uint64_t all) {
        total = all;
        return false;
    });
    EXPECT_FALSE(table.load("g", {}));
    EXPECT_EQ(total, 2u);
    EXPECT_EQ(table.getFileName(), "g");
}

} // namespace
