#include "brvUtils/data/MatDataFile.h"

#include "brvUtils/data/MatFile_test.h"
#include "testing/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <random>
#include <stdexcept>

/// What matio itself does not free after it met damage. Asked for by the address sanitizer.
extern "C" const char* __lsan_default_suppressions();
extern "C" const char* __lsan_default_suppressions()
{
    return "leak:libmatio";
}

namespace {

using namespace matTests;

/// Loads bytes as a file and gives the values of all columns; failures to open it and classes that are not read end the load.
std::size_t valuesIn(const brvTesting::TemporaryFolder& folder, const std::string& bytes, std::size_t* columns = nullptr)
{
    std::filesystem::remove(folder.path() / "damaged.mat"); // some file systems write a file to the disk that is cut and filled
    MatDataFile matrix;
    try {
        EXPECT_TRUE(matrix.load(folder.write("damaged.mat", bytes), {}));
    } catch (const std::out_of_range&) {
    }
    std::size_t values = 0;
    for (std::size_t i = 0; i < matrix.getColmnCount(); ++i) {
        values += matrix[i]->size();
    }
    if (columns != nullptr) {
        *columns = matrix.getColmnCount();
    }
    return values;
}

std::string sample(const brvTesting::TemporaryFolder& folder, mat_ft version, matio_compression compression)
{
    const double numbers[] = {1, 2, 3, 4, 5, 6};
    const mat_complex_split_t complex{const_cast<double*>(numbers), const_cast<double*>(numbers + 3)};
    {
        MatFile file(folder.file("sample.mat"), version, compression);
        file.add("speed", std::vector<double>{1.5, 2.5, 3.5});
        file.add("matrix", MAT_C_DOUBLE, MAT_T_DOUBLE, {2, 3}, numbers);
        file.add("complex", MAT_C_DOUBLE, MAT_T_DOUBLE, {3, 1}, &complex, MAT_F_COMPLEX);
        file.add("text", "abc");
        file.add("last", std::vector<double>{9});
    }
    const std::string bytes = folder.read("sample.mat");
    std::filesystem::remove(folder.path() / "sample.mat");
    return bytes;
}

struct Format
{
    mat_ft version;
    matio_compression compression;
    std::size_t lastValue; ///< Bytes at the end without which it is still there: padding and a checksum.
};

class MatDamageTest : public testing::TestWithParam<Format>
{
protected:
    const brvTesting::TemporaryFolder folder;
    const std::string bytes = sample(folder, GetParam().version, GetParam().compression);
    static constexpr std::size_t allValues = 3 + 2 + 3 + 3 + 1;
};

// Of version 7.3 only cut files are looked at: what reads them for matio has faults of its own that nothing here can prevent.
INSTANTIATE_TEST_SUITE_P(Formats, MatDamageTest,
    testing::Values(Format{MAT_FT_MAT4, MAT_COMPRESSION_NONE, 0}, Format{MAT_FT_MAT5, MAT_COMPRESSION_NONE, 0},
        Format{MAT_FT_MAT5, MAT_COMPRESSION_ZLIB, 0}));

TEST_P(MatDamageTest, ACutFileGivesWhatIsBeforeTheCut)
{
    ASSERT_EQ(valuesIn(folder, bytes), allValues);
    std::size_t before = 0;
    for (std::size_t end = 0; end < bytes.size(); ++end) {
        const std::size_t values = valuesIn(folder, bytes.substr(0, end));
        EXPECT_GE(values, before) << end;
        EXPECT_LT(values, allValues) << end;
        before = values;
    }
    EXPECT_EQ(before, allValues - 1);
}

TEST_P(MatDamageTest, ChangedBytesNeverGiveMoreThanTheFileHasRoomFor)
{
    std::minstd_rand random(1);
    for (int i = 0; i < 2000; ++i) {
        std::string damaged = bytes;
        for (auto count = 1 + random() % 3; count > 0; --count) {
            damaged[random() % damaged.size()] = static_cast<char>(random() >> 8 & 0xFF);
        }
        EXPECT_LE(valuesIn(folder, damaged), bytes.size() * (GetParam().compression == MAT_COMPRESSION_NONE ? 1 : 1100)) << i;
    }
}

TEST(MatDamage, ACutFileOfVersion73GivesNothing)
{
    const brvTesting::TemporaryFolder folder;
    const std::string bytes = sample(folder, MAT_FT_MAT73, MAT_COMPRESSION_NONE);
    ASSERT_GT(valuesIn(folder, bytes), 0U);
    for (std::size_t end = 0; end < bytes.size(); end += 97) {
        EXPECT_EQ(valuesIn(folder, bytes.substr(0, end)), 0U) << end;
    }
}

TEST(MatDamage, AVariableThatClaimsTooMuchEndsTheFile)
{
    const brvTesting::TemporaryFolder folder;
    const std::string values = element(MAT_T_DOUBLE, bytesOf<double>({1, 2, 3}));
    const std::string good = variable("a", MAT_C_DOUBLE, {3, 1}, values);
    ASSERT_EQ(valuesIn(folder, mat5(good + good)), 6U);

    const std::vector<std::int32_t> highRank(33, 1);
    const std::string tooMuch[] = {
        variable("b", MAT_C_DOUBLE, {4, 1}, values),
        variable("b", MAT_C_DOUBLE, {1 << 30, 1 << 30}, values),
        variable("b", MAT_C_DOUBLE, {-1, 1}, values),
        variable("b", MAT_C_DOUBLE, {65536, 65536, 65536, 65536, 3}, values), // a product of 0 in 64 bits
        variable("b", MAT_C_DOUBLE, highRank, values),
        variable("b", MAT_C_DOUBLE, {3}, values),
        variable("b", MAT_C_CELL, {1 << 30, 1}, values),
        variable("b", MAT_C_DOUBLE | MAT_F_COMPLEX, {3, 1}, values), // without an imaginary part
        variable("b", MAT_C_DOUBLE, {3, 1}, bytesOf<std::uint32_t>({MAT_T_DOUBLE, 0x7FFFFFFF})),
        variable(std::string(100, 'b'), MAT_C_DOUBLE, {3, 1}, "").replace(44, 4, "\xFF\xFF\xFF\x7F"), // its name
        element(MAT_T_MATRIX, element(MAT_T_UINT32, bytesOf<std::uint32_t>({MAT_C_OPAQUE, 0})) + element(MAT_T_INT8, "")
                + bytesOf<std::uint32_t>({MAT_T_INT8, 200'000'000})),
        element(MAT_T_MATRIX, ""),
        element(MAT_T_COMPRESSED, "no deflated data"),
        bytesOf<std::uint32_t>({MAT_T_MATRIX, 0xFFFFFFFF}),
    };
    for (const std::string& bad : tooMuch) {
        EXPECT_EQ(valuesIn(folder, mat5(good + bad + good)), 3U) << "case " << &bad - tooMuch;
    }
}

TEST(MatDamage, OldestFilesMayBeOfAnyByteOrderButNotOfTwo)
{
    const brvTesting::TemporaryFolder folder;
    const auto file = [](std::uint32_t type, const std::string& values) {
        std::string words;
        for (const std::uint32_t word : {type, 1U, 1U, 0U, 2U}) { // whose high bytes come first
            words += {static_cast<char>(word >> 24), static_cast<char>(word >> 16), static_cast<char>(word >> 8), static_cast<char>(word)};
        }
        return words + std::string("a\0", 2) + values;
    };
    const std::string one("\x3F\xF0\0\0\0\0\0\0", 8);
    MatDataFile matrix;
    ASSERT_TRUE(matrix.load(folder.write("big.mat", file(1000, one)), {}));
    EXPECT_EQ(matrix["a"]->getDoubleData()[0], 1.0);
    EXPECT_THROW(matrix.load(folder.write("both.mat", file(2, one)), {}), std::out_of_range);
}

TEST(MatDamage, ColumnsOfNoElementsAreEmpty)
{
    const brvTesting::TemporaryFolder folder;
    std::size_t columns = 0;
    const std::string nothing = element(MAT_T_DOUBLE, "");
    EXPECT_EQ(valuesIn(folder, mat5(variable("a", MAT_C_DOUBLE, {0x7FFFFFFF, 0}, nothing) + variable("b", MAT_C_DOUBLE, {0, 5}, nothing)),
                  &columns), 0U);
    EXPECT_EQ(columns, 2U);
}

TEST(MatDamage, FunctionsAndObjectsDoNotHideWhatComesBehind)
{
    const std::string good = variable("a", MAT_C_DOUBLE, {1, 1}, element(MAT_T_DOUBLE, bytesOf<double>({1})));
    const std::string text = variable("", MAT_C_CHAR, {1, 3}, element(MAT_T_UTF8, "sin"));
    const std::string fields = bytesOf<std::uint16_t>({MAT_T_INT32, 4}) + bytesOf<std::int32_t>({8}) + element(MAT_T_INT8, std::string("handle\0\0", 8));
    const std::string function = variable("", MAT_C_FUNCTION, {1, 1}, variable("", MAT_C_STRUCT, {1, 1}, fields + text));
    const std::string object = variable("", MAT_C_OBJECT, {1, 1}, element(MAT_T_INT8, "class") + fields + text);
    const std::string opaque = element(MAT_T_MATRIX, element(MAT_T_UINT32, bytesOf<std::uint32_t>({MAT_C_OPAQUE, 0}))
            + element(MAT_T_INT8, "name") + element(MAT_T_INT8, "MCOS") + element(MAT_T_INT8, "string"));
    const brvTesting::TemporaryFolder folder;
    for (const std::string& kind : {function, object, opaque}) {
        for (const std::string& before : {kind, variable("c", MAT_C_CELL, {2, 1}, kind + text)}) {
            MatDataFile matrix;
            ASSERT_TRUE(matrix.load(folder.write("kinds.mat", mat5(before + good)), {"a"}));
            EXPECT_TRUE(matrix.exists("a")) << before;
        }
    }
}

TEST(MatDamage, CellsAndStructuresAreNoColumnsAndHarmNothing)
{
    const brvTesting::TemporaryFolder folder;
    const std::string inner = variable("", MAT_C_DOUBLE, {1, 1}, element(MAT_T_DOUBLE, bytesOf<double>({1})));
    std::string nested = inner;
    for (int i = 0; i < 1000; ++i) { // deeper than anybody's stack should go
        nested = variable("", MAT_C_CELL, {1, 1}, nested);
    }
    const std::string good = variable("a", MAT_C_DOUBLE, {1, 1}, element(MAT_T_DOUBLE, bytesOf<double>({1})));
    const std::string cell = variable("c", MAT_C_CELL, {2, 1, 1}, inner + inner);
    const std::string deep = variable("d", MAT_C_CELL, {1, 1, 1}, nested);
    MatDataFile matrix;
    ASSERT_TRUE(matrix.load(folder.write("cell.mat", mat5(cell + good)), {"a"}));
    EXPECT_TRUE(matrix.exists("a"));
    EXPECT_EQ(valuesIn(folder, mat5(good + deep + good)), 1U);
    EXPECT_EQ(valuesIn(folder, mat5(good + variable("f", MAT_C_FUNCTION, {1, 1}, nested) + good)), 1U);
    const std::string large = variable("", MAT_C_CELL, {30'000'000, 1}, inner);
    EXPECT_EQ(valuesIn(folder, mat5(good + variable("f", MAT_C_FUNCTION, {1, 1}, large) + good)), 1U);
    MatDataFile other;
    EXPECT_THROW(other.load(folder.write("cell.mat", mat5(variable("c", MAT_C_CELL, {1, 1}, inner))), {}), std::out_of_range);
}

} // namespace
