#include "brvUtils/platform/VeloraType.h"

#include "brvUtils/platform/internal/ModuleTypes.h"

#include <gtest/gtest.h>

#include <set>
#include <stdexcept>

namespace brvUtils {
namespace {

TEST(VeloraType, KnowsTwentyTwoCodes)
{
    EXPECT_EQ(VeloraType::getNbType(), 22);
    EXPECT_EQ(VeloraType(22), 0);
    EXPECT_EQ(VeloraType(-1), 0);
    EXPECT_FALSE(static_cast<bool>(VeloraType(0)));
    std::set<std::string> names;
    for (int code = 0; code < 22; ++code) {
        EXPECT_EQ(VeloraType(code), code);
        EXPECT_EQ(static_cast<bool>(VeloraType(code)), code != 0);
        names.insert(VeloraType(code).toString());
    }
    EXPECT_EQ(names.size(), 22u) << "no two have the same name";
}

TEST(VeloraType, TakesAnyCodeThatIsAssigned)
{
    VeloraType type;
    type = 22;
    EXPECT_EQ(type, 22);
    EXPECT_FALSE(static_cast<bool>(type));
    EXPECT_THROW(type.toString(), std::out_of_range);
}

TEST(VeloraType, IsFoundInTexts)
{
    EXPECT_EQ(VeloraType("Radar SENSOR no. 3"), VeloraType(5));
    EXPECT_EQ(VeloraType("sensor of the traffic"), VeloraType(4)) << "the lower code wins";
    EXPECT_EQ(VeloraType("Weather station").toString(), "Weather");
    EXPECT_EQ(VeloraType("description of the pedestrians").toString(), "Pedestrians");
    EXPECT_EQ(VeloraType("nothing of the kind"), 0);
    VeloraType type(7);
    type = std::string("nothing of the kind");
    EXPECT_EQ(type, 7) << "stays what it was";
}

TEST(VeloraType, IsFoundByItsOwnNameAndEachOfItsAliases)
{
    for (int code = 1; code < VeloraType::getNbType(); ++code) {
        EXPECT_EQ(VeloraType(VeloraType(code).toString()), code) << VeloraType(code).toString();
        for (const char* alias : moduleTypes[code].aliases) {
            EXPECT_EQ(VeloraType(std::string(alias)), code) << alias;
        }
    }
}

} // namespace
} // namespace brvUtils
