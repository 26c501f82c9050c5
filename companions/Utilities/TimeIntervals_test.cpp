#include "Utilities/TimeIntervals.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <locale>
#include <numeric>
#include <sstream>

namespace Utilities {
namespace {

constexpr double ns = 1e-9;

std::string csv(const TimeIntervals& intervals, std::ostringstream stream = std::ostringstream())
{
    intervals.writeCsv(stream);
    return stream.str();
}

TEST(TimeIntervals, WithoutAnyIsAllZero)
{
    const TimeIntervals none({});
    EXPECT_EQ(none.count(), 0u);
    EXPECT_EQ(none.minimum() + none.mean() + none.maximum() + none.percentile(50) + none.jitter(99), 0.0);
    EXPECT_TRUE(none.histogram().empty());
    EXPECT_EQ(none.toText(), "intervals                0\n");
    EXPECT_NE(csv(none).find("\nmaximum_ns,,0\n"), std::string::npos);
    EXPECT_EQ(csv(none).find("histogram"), std::string::npos);
}

TEST(TimeIntervals, PercentilesAreTheNearestRank)
{
    std::vector<std::int64_t> lengths(1000);
    std::iota(lengths.rbegin(), lengths.rend(), 1); // 1000 to 1
    const TimeIntervals intervals(lengths);
    const struct
    {
        double percent;
        double expected;
    } cases[] = {{-1, 1}, {0, 1}, {std::nan(""), 1}, {0.01, 1}, {0.1, 1}, {0.11, 2}, {50, 500}, {50.01, 501}, {90, 900},
        {99, 990}, {99.9, 999}, {99.91, 1000}, {100, 1000}, {101, 1000}, {std::numeric_limits<double>::infinity(), 1000}};
    for (const auto& each : cases) {
        EXPECT_DOUBLE_EQ(intervals.percentile(each.percent), each.expected * ns) << each.percent;
    }
    EXPECT_DOUBLE_EQ(intervals.mean(), 500.5 * ns);
    EXPECT_DOUBLE_EQ(intervals.jitter(0), 0.0);
    EXPECT_DOUBLE_EQ(intervals.jitter(50), 250 * ns);
    EXPECT_DOUBLE_EQ(intervals.jitter(100), 500 * ns); // 1000, not 1
    EXPECT_DOUBLE_EQ(TimeIntervals({7}).percentile(99.9), 7 * ns);
}

TEST(TimeIntervals, HistogramIsFineAroundTheMedianAndLeavesNothingOut)
{
    const std::int64_t median = 1'000'000;
    const std::vector<std::int64_t> distances = {-30'000, -1'001, -1'000, 0, 0, 0, 999, 1'000, 4'999'999};
    std::vector<std::int64_t> lengths;
    for (const std::int64_t distance : distances) {
        lengths.push_back(median + distance);
    }
    const std::vector<TimeIntervals::Bin> bins = TimeIntervals(lengths).histogram();
    ASSERT_FALSE(bins.empty());
    EXPECT_DOUBLE_EQ(bins.front().from, (median - 50'000) * ns);
    EXPECT_DOUBLE_EQ(bins.back().to, (median + 5'000'000) * ns);
    EXPECT_EQ(bins.front().count, 1u);
    EXPECT_EQ(bins.back().count, 1u);
    std::size_t count = 0;
    for (std::size_t i = 0; i < bins.size(); ++i) {
        count += bins[i].count;
        EXPECT_TRUE(i == 0 || bins[i].from == bins[i - 1].to) << i;
        if (bins[i].from < median * ns && median * ns < bins[i].to) {
            EXPECT_EQ(bins[i].count, 5u); // -1000 is in, 1000 is not
            EXPECT_NEAR(bins[i].to - bins[i].from, 2000 * ns, 0.1 * ns);
        }
    }
    EXPECT_EQ(count, lengths.size());

    const std::vector<TimeIntervals::Bin> extremes = TimeIntervals({0, 0, 3'000'000'000'000'000'000}).histogram();
    ASSERT_FALSE(extremes.empty());
    EXPECT_EQ(extremes.back().count, 1u);
    EXPECT_EQ(extremes.front().from, 0.0);
}

TEST(TimeIntervals, TextAndCsvTellTheSameUnderAnyLocale)
{
    struct Comma : std::numpunct<char>
    {
        char do_decimal_point() const override { return ','; }
        char do_thousands_sep() const override { return '.'; }
        std::string do_grouping() const override { return "\3"; }
    };
    std::ostringstream stream;
    stream.imbue(std::locale(std::locale::classic(), new Comma));
    const TimeIntervals intervals({1'000'000, 1'000'049, 990'050, 1'002'500}, 12345);
    EXPECT_EQ(csv(intervals, std::move(stream)),
        "quantity,parameter,value\nintervals,,4\nstamps_replaced,,12345\nminimum_ns,,990050\nmean_ns,,998150\n"
        "maximum_ns,,1002500\npercentile_ns,50,1000000\npercentile_ns,90,1002500\npercentile_ns,99,1002500\n"
        "percentile_ns,99.9,1002500\njitter_ns,50,49\njitter_ns,90,9950\njitter_ns,99,9950\njitter_ns,99.9,9950\n"
        "jitter_ns,100,9950\nhistogram_ns,990000,1\nhistogram_ns,995000,0\nhistogram_ns,998000,0\n"
        "histogram_ns,999000,2\nhistogram_ns,1001000,0\nhistogram_ns,1002000,1\n");
    EXPECT_EQ(intervals.toText(),
        "intervals                4\n"
        "not kept             12345\n"
        "                length, us    jitter, us\n"
        "minimum              990.1\n"
        "mean                 998.2\n"
        "p50                 1000.0           0.0\n"
        "p90                 1002.5          10.0\n"
        "p99                 1002.5          10.0\n"
        "p99.9               1002.5          10.0\n"
        "maximum             1002.5          10.0\n"
        "from, us            to, us     intervals\n"
        "       990.0         995.0             1\n"
        "       995.0         998.0             0\n"
        "       998.0         999.0             0\n"
        "       999.0        1001.0             2\n"
        "      1001.0        1002.0             0\n"
        "      1002.0        1005.0             1\n");
}

} // namespace
} // namespace Utilities
