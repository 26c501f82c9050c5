#include <rapidxml/rapidxml.hpp>

#include "brvUtils/core/XmlValues.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <limits>
#include <locale>

namespace brvUtils {
namespace {

using Document = rapidxml::xml_document<char>;

/// What an element of that text reads as.
template <typename T>
T read(const char* text)
{
    Document document;
    addValue(&document, &document, "setting", text);
    T value;
    loadValue(value, document.first_node());
    return value;
}

template <typename T>
std::string written(T value)
{
    Document document;
    addValue(&document, &document, "setting", value);
    return document.first_node()->value();
}

TEST(XmlValues, IntegersAreWhatTheTextBeginsWith)
{
    EXPECT_EQ(read<int>("12abc"), 12);
    EXPECT_EQ(read<int>(" \t\n-7.9"), -7);
    EXPECT_EQ(read<int>("+3"), 3);
    for (const char* none : {"", "abc", "- 1", "+-1", ".5"}) {
        EXPECT_EQ(read<int>(none), 0) << none;
    }
    EXPECT_EQ(read<int>("2147483648"), INT_MAX);
    EXPECT_EQ(read<int>("-99999999999999999999999"), INT_MIN);
}

TEST(XmlValues, DoublesAreWhatTheTextBeginsWith)
{
    EXPECT_EQ(read<double>("12abc"), 12.0);
    EXPECT_EQ(read<double>("\r\n -1.5e2em"), -150.0);
    EXPECT_EQ(read<double>("12em"), 12.0) << "no exponent";
    EXPECT_EQ(read<double>("+.25"), 0.25);
    EXPECT_EQ(read<double>("0x1Ap1"), 52.0);
    EXPECT_EQ(read<double>("-1e999"), -std::numeric_limits<double>::infinity());
    EXPECT_EQ(read<double>("1e-999"), 0.0);
    EXPECT_EQ(read<double>("-Infinity"), -std::numeric_limits<double>::infinity());
    EXPECT_TRUE(std::isnan(read<double>("nan")));
    for (const char* none : {"", "abc", "--1", "+-1", "0x", "0x-5", "0xinf", "-", ",5"}) {
        EXPECT_EQ(read<double>(none), 0.0) << none;
    }
}

TEST(XmlValues, TruthIsAnIntegerOtherThanZeroAndAVectorThreeNumbers)
{
    for (const char* yes : {"1", "2", "-1", "5x"}) {
        EXPECT_TRUE(read<bool>(yes)) << yes;
    }
    for (const char* no : {"0", "true", "yes", "", "0.5"}) {
        EXPECT_FALSE(read<bool>(no)) << no;
    }
    EXPECT_EQ(read<brv::Vector3>(" 1\n-2.5  3e2"), brv::Vector3(1.0, -2.5, 300.0));
    for (const char* none : {"", "1 2", "1, 2, 3"}) {
        EXPECT_EQ(read<brv::Vector3>(none), brv::Vector3()) << none;
    }
}

TEST(XmlValues, WritesSixDigits)
{
    EXPECT_EQ(written(0.1), "0.1");
    EXPECT_EQ(written(1234567.0), "1.23457e+06");
    EXPECT_EQ(written(true), "1");
    EXPECT_EQ(written(false), "0");
    EXPECT_EQ(read<int>(written(true).c_str()), 1);
}

TEST(XmlValues, StaysBehindTheOthersAndNeedsNoTextOfTheCaller)
{
    Document document;
    rapidxml::xml_node<char>* const parent = document.allocate_node(rapidxml::node_element, "settings");
    {
        std::string name = "first";
        std::string value = "some text";
        addValue(&document, parent, name.c_str(), value.c_str());
        name = value = "*********";
    }
    addValue(&document, parent, "second", true);
    std::string value;
    loadValue(value, parent->first_node());
    EXPECT_EQ(value, "some text");
    EXPECT_STREQ(parent->first_node()->name(), "first");
    EXPECT_STREQ(parent->last_node()->name(), "second");
    EXPECT_EQ(parent->first_node()->next_sibling(), parent->last_node());
}

TEST(XmlValues, ReadsDocumentsThatNothingTerminates)
{
    char text[] = "<a><n>12</n><s>x y</s><e/></a>";
    Document document;
    document.parse<rapidxml::parse_non_destructive>(text);
    int number = 0;
    loadValue(number, document.first_node()->first_node("n"));
    EXPECT_EQ(number, 12);
    std::string value;
    loadValue(value, document.first_node()->first_node("s"));
    EXPECT_EQ(value, "x y");
    loadValue(value, document.first_node()->first_node("e"));
    EXPECT_EQ(value, "");
}

/// Numbers as in "1.234,5".
struct Commas : std::numpunct<char>
{
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
};

TEST(XmlValues, LooksAtNoLocale)
{
    const std::locale before = std::locale::global(std::locale(std::locale::classic(), new Commas));
    EXPECT_EQ(written(123456.0), "123456");
    EXPECT_EQ(written(0.5), "0.5");
    EXPECT_EQ(read<double>("0.5"), 0.5);
    EXPECT_EQ(read<brv::Vector3>("0.5 1234 1"), brv::Vector3(0.5, 1234.0, 1.0));
    std::locale::global(before);
}

} // namespace
} // namespace brvUtils
