#include "brvUtils/data/MatDataFile.h"

#include "brvUtils/data/MatFile_test.h"
#include "brvUtils/startup/ModulePaths.h"
#include "testing/Child.h"
#include "testing/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <limits>
#include <stdexcept>

namespace {

using namespace matTests;
using testing::ElementsAre;

using Texts = std::vector<std::string>;

template <typename Value>
std::vector<Value> valuesOf(const DataMatrix& matrix, const std::string& name)
{
    const auto* const column = dynamic_cast<const DataMatrix::TypedDataCol<Value>*>(matrix[name]);
    EXPECT_NE(column, nullptr) << name;
    return column == nullptr ? std::vector<Value>() : column->values;
}

Texts namesOf(const DataMatrix& matrix)
{
    Texts names;
    for (std::size_t i = 0; i < matrix.getColmnCount(); ++i) {
        names.push_back(matrix.getDataName(i));
        EXPECT_EQ(matrix[names.back()], matrix[i]);
    }
    return names;
}

std::string failureOf(DataMatrix& matrix, const std::string& path)
{
    try {
        matrix.load(path, {});
        return "none";
    } catch (const std::out_of_range& error) {
        return error.what();
    }
}

BRV_CHILD(failsTwice)
{
    for (int round = 0; round < 2; ++round) {
        MatDataFile matrix;
        brvTesting::childSay(failureOf(matrix, "a.mat"));
    }
    return 0;
}

class MatDataFileTest : public testing::Test
{
protected:
    const brvTesting::TemporaryFolder folder;
    const std::string path = folder.file("data.mat");
    MatDataFile matrix;
};

/// What each version of the format, plain or compressed, has in common.
struct Format
{
    const char* name;
    mat_ft version;
    matio_compression compression;
};

class MatFormatTest : public MatDataFileTest, public testing::WithParamInterface<Format>
{
protected:
    MatFile& file() { return *file_; }
    bool load(const Texts& wanted = {})
    {
        file_.reset();
        return matrix.load(path, wanted);
    }

private:
    std::unique_ptr<MatFile> file_ = std::make_unique<MatFile>(path, GetParam().version, GetParam().compression);
};

/// MAT 4 files know neither classes of numbers nor more than two dimensions.
class MatClassesTest : public MatFormatTest
{
};

const Format mat4{"Mat4", MAT_FT_MAT4, MAT_COMPRESSION_NONE};
const auto withClasses = testing::Values(Format{"Mat5", MAT_FT_MAT5, MAT_COMPRESSION_NONE},
    Format{"Mat5Compressed", MAT_FT_MAT5, MAT_COMPRESSION_ZLIB}, Format{"Mat73", MAT_FT_MAT73, MAT_COMPRESSION_NONE},
    Format{"Mat73Compressed", MAT_FT_MAT73, MAT_COMPRESSION_ZLIB});
const auto nameOf = [](const auto& format) { return std::string(format.param.name); };

INSTANTIATE_TEST_SUITE_P(Oldest, MatFormatTest, testing::Values(mat4), nameOf);
INSTANTIATE_TEST_SUITE_P(Formats, MatFormatTest, withClasses, nameOf);
INSTANTIATE_TEST_SUITE_P(Formats, MatClassesTest, withClasses, nameOf);

TEST_P(MatFormatTest, VectorsMatricesAndTextsBecomeColumns)
{
    std::vector<double> speed(100);
    for (std::size_t i = 0; i < speed.size(); ++i) {
        speed[i] = 0.1 * static_cast<double>(i);
    }
    const double matrix34[] = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12};
    file().add("a_speed", speed);
    file().add("b_matrix", MAT_C_DOUBLE, MAT_T_DOUBLE, {3, 4}, matrix34);
    file().add("c_row", MAT_C_DOUBLE, MAT_T_DOUBLE, {1, 4}, matrix34);
    file().add("d_text", "abc");
    file().add("e_texts", MAT_C_CHAR, MAT_T_UINT8, {2, 3}, "adbecf");
    file().add("f_none", MAT_C_DOUBLE, MAT_T_DOUBLE, {0, 0}, nullptr);
    file().add("g_end", std::vector<double>{-1.5, std::numeric_limits<double>::infinity()});
    ASSERT_TRUE(load());

    EXPECT_EQ(matrix.getFileName(), path);
    EXPECT_THAT(namesOf(matrix), ElementsAre("a_speed", "b_matrix", "c_row", "d_text", "e_texts", "f_none", "g_end"));
    EXPECT_EQ(valuesOf<double>(matrix, "a_speed"), speed);
    EXPECT_THAT(valuesOf<double>(matrix, "b_matrix"), ElementsAre(1, 2, 3));
    EXPECT_THAT(valuesOf<double>(matrix, "c_row"), ElementsAre(1));
    EXPECT_THAT(valuesOf<std::string>(matrix, "d_text"), ElementsAre("a", "b", "c"));
    EXPECT_THAT(valuesOf<std::string>(matrix, "e_texts"), ElementsAre("a", "d"));
    EXPECT_EQ(matrix["f_none"]->size(), 0U);
    EXPECT_THAT(valuesOf<double>(matrix, "g_end"), ElementsAre(-1.5, std::numeric_limits<double>::infinity()));
}

TEST_P(MatFormatTest, OfComplexNumbersTheRealPartIsTaken)
{
    const double real[] = {1, 2, 3};
    const double imaginary[] = {4, 5, 6};
    const mat_complex_split_t both{const_cast<double*>(real), const_cast<double*>(imaginary)};
    file().add("c", MAT_C_DOUBLE, MAT_T_DOUBLE, {3, 1}, &both, MAT_F_COMPLEX);
    file().add("d", std::vector<double>{7});
    ASSERT_TRUE(load());
    EXPECT_THAT(valuesOf<double>(matrix, "c"), ElementsAre(1, 2, 3));
    EXPECT_THAT(valuesOf<double>(matrix, "d"), ElementsAre(7));
}

TEST_P(MatFormatTest, OnlyWantedVariablesAreLookedAt)
{
    const float single = 1.0F;
    for (const char* name : {"a", "b"}) {
        file().add(name, std::vector<double>{1, 2});
    }
    if (GetParam().version != MAT_FT_MAT4) { // which knows no classes
        file().add("c", MAT_C_SINGLE, MAT_T_SINGLE, {1, 1}, &single);
    }
    file().add("d", std::vector<double>{3});
    ASSERT_TRUE(load({"d", "b", "B", "x"}));
    EXPECT_THAT(namesOf(matrix), ElementsAre("b", "d"));
}

TEST_P(MatClassesTest, Integers)
{
    const std::int64_t wide[] = {7, -1, (INT64_C(1) << 33) + 5, INT64_C(0x80000000), std::numeric_limits<std::int64_t>::min()};
    file().add("gear", std::vector<std::int32_t>{4});
    file().add("wide", MAT_C_INT64, MAT_T_INT64, {5, 1}, wide);
    ASSERT_TRUE(load());
    EXPECT_THAT(valuesOf<int>(matrix, "gear"), ElementsAre(4));
    EXPECT_THAT(valuesOf<int>(matrix, "wide"), ElementsAre(7, -1, 5, std::numeric_limits<int>::min(), 0));
}

TEST_P(MatClassesTest, VariablesOfOtherShapesAreLeftOutBeforeTheirClassCounts)
{
    const double values[24] = {1, 2, 3};
    const float singles[8] = {};
    file().add("a", MAT_C_DOUBLE, MAT_T_DOUBLE, {2, 3, 4}, values);
    file().add("b", MAT_C_DOUBLE, MAT_T_DOUBLE, {2, 1, 4}, values);
    file().add("c", MAT_C_SINGLE, MAT_T_SINGLE, {2, 2, 2}, singles);
    file().add("d", std::vector<double>{9});
    ASSERT_TRUE(load());
    EXPECT_THAT(namesOf(matrix), ElementsAre("b", "d"));
    EXPECT_THAT(valuesOf<double>(matrix, "b"), ElementsAre(1, 2));
    EXPECT_THAT(valuesOf<double>(matrix, "d"), ElementsAre(9));
}

TEST_P(MatClassesTest, AnotherClassEndsTheLoad)
{
    file().add("a", std::vector<double>{9});
    const float single = 1.0F;
    file().add("mass", MAT_C_SINGLE, MAT_T_SINGLE, {1, 1}, &single);
    EXPECT_THROW(load(), std::out_of_range);
    MatDataFile again;
    EXPECT_EQ(failureOf(again, path), "failed to find mass class type. The Type is :7\n");
    EXPECT_THAT(namesOf(again), ElementsAre("a"));
}

TEST_P(MatFormatTest, ProgressGoesUpToTheSizeOfTheFileAndMayStopTheLoad)
{
    for (const char* name : {"a", "b", "c"}) {
        file().add(name, std::vector<double>(1000, 1.5));
    }
    std::vector<std::uint64_t> steps;
    matrix.setProgress([&](std::uint64_t done, std::uint64_t total) {
        EXPECT_LE(steps.empty() ? 0 : steps.back(), done);
        EXPECT_LE(done, total);
        steps.push_back(done);
        return true;
    });
    ASSERT_TRUE(load());
    EXPECT_EQ(steps.size(), 4U);
    EXPECT_EQ(steps.back(), std::filesystem::file_size(folder.path() / "data.mat"));

    MatDataFile stopped;
    stopped.setProgress([](std::uint64_t, std::uint64_t) { return false; });
    EXPECT_FALSE(stopped.load(path, {}));
    EXPECT_THAT(namesOf(stopped), ElementsAre("a"));

    MatDataFile thrown;
    thrown.setProgress([&](std::uint64_t, std::uint64_t) -> bool {
        MatDataFile within;
        EXPECT_TRUE(within.load(path, {"c"}));
        throw std::runtime_error("enough");
    });
    EXPECT_THROW(thrown.load(path, {}), std::runtime_error);
    EXPECT_TRUE(MatDataFile().load(path, {})); // it waits for nobody
}

TEST_F(MatDataFileTest, NothingIsLeftOfAnEarlierLoad)
{
    MatFile(path).add("a", std::vector<double>{1});
    ASSERT_TRUE(matrix.load(path, {}));
    EXPECT_THROW(matrix.load(folder.file("none.mat"), {}), std::out_of_range);
    EXPECT_THAT(namesOf(matrix), ElementsAre("a"));
    MatFile(path).add("b", std::vector<double>{2});
    ASSERT_TRUE(matrix.load(path, {}));
    EXPECT_THAT(namesOf(matrix), ElementsAre("b"));
    EXPECT_FALSE(matrix.exists("a"));
}

TEST_F(MatDataFileTest, CharactersOf16BitsBecomeUtf8)
{
    const std::uint16_t text[] = {'a', 0xE4, 0x20AC, 0xD83D, 0xDE00};
    {
        MatFile file(path);
        file.add("units", MAT_C_CHAR, MAT_T_UINT16, {1, 5}, text);
        file.add("utf16", MAT_C_CHAR, MAT_T_UTF16, {1, 5}, text);
        file.add("column", MAT_C_CHAR, MAT_T_UINT16, {3, 1}, text);
        file.add("none", MAT_C_CHAR, MAT_T_UINT16, {1, 0}, text);
    }
    ASSERT_TRUE(matrix.load(path, {}));
    EXPECT_THAT(valuesOf<std::string>(matrix, "units"), ElementsAre("a", "ä", "€", "😀"));
    EXPECT_THAT(valuesOf<std::string>(matrix, "utf16"), ElementsAre("a", "ä", "€", "😀"));
    EXPECT_THAT(valuesOf<std::string>(matrix, "column"), ElementsAre("a", "ä", "€"));
    EXPECT_EQ(matrix["none"]->size(), 0U);
}

TEST_F(MatDataFileTest, TextInUtf8HasFewerCharactersThanBytes)
{
    folder.write("data.mat", mat5(variable("t", MAT_C_CHAR, {1, 3}, element(MAT_T_UTF8, "aä€"))));
    ASSERT_TRUE(matrix.load(path, {}));
    EXPECT_THAT(valuesOf<std::string>(matrix, "t"), ElementsAre("a", "ä", "€"));
}

TEST_F(MatDataFileTest, NumbersMayBeStoredInLessThanTheirClassTakes)
{
    folder.write("data.mat",
        mat5(variable("bytes", MAT_C_DOUBLE, {3, 1}, element(MAT_T_UINT8, bytesOf<std::uint8_t>({1, 2, 255})))
            + variable("shorts", MAT_C_DOUBLE, {2, 2}, element(MAT_T_INT16, bytesOf<std::int16_t>({-1, 2, 3, 4})))
            + variable("gear", MAT_C_INT32, {2, 1}, element(MAT_T_INT8, bytesOf<std::int8_t>({-1, 2})))
            + variable("count", MAT_C_INT64, {2, 1}, element(MAT_T_UINT8, bytesOf<std::uint8_t>({3, 4})))));
    ASSERT_TRUE(matrix.load(path, {}));
    EXPECT_THAT(valuesOf<double>(matrix, "bytes"), ElementsAre(1, 2, 255));
    EXPECT_THAT(valuesOf<double>(matrix, "shorts"), ElementsAre(-1, 2));
    EXPECT_THAT(valuesOf<int>(matrix, "gear"), ElementsAre(-1, 2));
    EXPECT_THAT(valuesOf<int>(matrix, "count"), ElementsAre(3, 4));
}

TEST_F(MatDataFileTest, WhatIsNoMatFileCannotBeOpened)
{
    EXPECT_EQ(failureOf(matrix, path), "Error opening : " + path);
    EXPECT_EQ(matrix.getFileName(), path);
    EXPECT_EQ(failureOf(matrix, folder.file()), "Error opening : " + folder.file());
    for (const std::string& content : {std::string(), std::string("a;b\n1;2\n"), std::string(200, 'x')}) {
        folder.write("data.mat", content);
        MatDataFile other;
        other.setProgress([](std::uint64_t, std::uint64_t) { return true; });
        failureOf(other, path); // some texts look like the oldest format
        EXPECT_EQ(other.getColmnCount(), 0U);
    }
}

TEST_F(MatDataFileTest, WithoutWhatReadsThemEachFileSaysSo)
{
    namespace fs = std::filesystem;
    const fs::path library = fs::u8path(brvUtils::getBrvUtilsPath());
    if (library.extension() == ".dll") {
        GTEST_SKIP() << "the folder of the program comes first";
    }
    fs::copy_file(library, folder.path() / "libbrvUtils.so.1");
    brvTesting::Child child("failsTwice", {}, {{"LD_LIBRARY_PATH", folder.file() + ":" + library.parent_path().u8string()}});
    const std::string text = child.readLine();
    EXPECT_THAT(text, testing::StartsWith("Error opening : a.mat (what reads MAT files cannot be loaded: " + folder.file("libbrvUtilsMat")));
    EXPECT_EQ(child.readLine(), text);
    child.expectExit(0);
}

TEST_F(MatDataFileTest, NamesAreUtf8AndTakeBothSeparators)
{
    folder.write("Fahrt/größe.mat", mat5(variable("v", MAT_C_DOUBLE, {1, 1}, element(MAT_T_DOUBLE, bytesOf<double>({1})))));
    EXPECT_TRUE(matrix.load(folder.file("Fahrt/größe.mat"), {}));
    MatDataFile other;
    EXPECT_TRUE(other.load(folder.file() + "\\Fahrt\\größe.mat", {}));
    EXPECT_EQ(other.getFileName(), folder.file() + "\\Fahrt\\größe.mat");
    EXPECT_THAT(namesOf(other), ElementsAre("v"));
}

} // namespace
