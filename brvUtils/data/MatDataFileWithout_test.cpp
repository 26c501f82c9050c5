#include "brvUtils/data/MatDataFile.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace {

TEST(MatDataFile, OfABuildWithoutMatioSaysSo)
{
    MatDataFile file;
    try {
        file.load("there/is/none.mat", {});
        FAIL() << "loaded";
    } catch (const std::out_of_range& error) {
        EXPECT_STREQ(error.what(), "Error opening : there/is/none.mat (this library was built without support of MAT files)");
    }
    EXPECT_EQ(file.getFileName(), "there/is/none.mat");
    EXPECT_EQ(file.getColmnCount(), 0U);
}

TEST(MatDataFile, LoadsVariables)
{
    GTEST_SKIP() << "this build has no matio, which reads MAT files";
}

} // namespace
