#include "brv/Unit.h"

#include <gtest/gtest.h>

namespace brv {
namespace {

TEST(Unit, HasTheNumberOfTheSuiteAndAName)
{
    EXPECT_EQ(toText(static_cast<t_unit>(44)), "second");
    EXPECT_EQ(toText(static_cast<t_unit>(45)), "millisecond");
    EXPECT_EQ(toText(static_cast<t_unit>(46)), "microsecond");
    EXPECT_EQ(toText(static_cast<t_unit>(47)), "unit 47");
    EXPECT_EQ(toText(static_cast<t_unit>(-1)), "unit -1");
}

} // namespace
} // namespace brv
