#include "brvUtils/os/windows/Shares.h"

#include <gtest/gtest.h>

namespace brvUtils::os {
namespace {

TEST(Shares, TurnAConnectionIntoALocalPath)
{
    const std::vector<Share> shares = { { "other", "E:\\" }, { "Data", "D:\\suite\\data" }, { "Root", "C:\\" } };
    const auto path = [&](const std::string& connection, const std::string& rest) { return pathInShare(connection, "PC1", shares, rest); };
    EXPECT_EQ(path("\\\\pc1\\data", "\\cars\\a.xml"), "D:\\suite\\data\\cars\\a.xml");
    EXPECT_EQ(path("\\\\pc1\\data\\cars", "/a.xml"), "D:\\suite\\data\\cars\\a.xml");
    EXPECT_EQ(path("\\\\PC1\\root", "a.xml"), "C:\\a.xml");
    EXPECT_EQ(path("\\\\pc1\\root", ""), "C:\\");
    EXPECT_EQ(path("\\\\pc2\\data", "\\a"), "") << "another computer";
    EXPECT_EQ(path("\\\\pc1\\dat", "\\a"), "");
    EXPECT_EQ(path("\\\\pc1", "\\a"), "");
    EXPECT_EQ(path("pc1\\data", "\\a"), "");
}

} // namespace
} // namespace brvUtils::os
