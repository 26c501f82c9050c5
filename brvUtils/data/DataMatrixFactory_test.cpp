#include "brvUtils/data/DataMatrixFactory.h"

#include "brvUtils/data/IdcDataFile.h"
#include "brvUtils/data/MatDataFile.h"
#include "testing/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <memory>

namespace {

std::unique_ptr<DataMatrix> create(const std::string& fileName)
{
    return std::unique_ptr<DataMatrix>(DataMatrixFactory::create(fileName, ';', CsvDataFile::FORCE_DOUBLE));
}

template <typename Reader>
bool isA(const std::string& fileName)
{
    return dynamic_cast<Reader*>(create(fileName).get()) != nullptr;
}

TEST(DataMatrixFactory, ChoosesByTheLastExtensionInSmallLetters)
{
    EXPECT_TRUE(isA<CsvDataFile>("run.csv"));
    EXPECT_TRUE(isA<MatDataFile>("run.csv.mat"));
    EXPECT_TRUE(isA<IdcDataFile>("a.b\\run.idc"));
    for (const char* name : {"run.CSV", "run.csv ", "run", "", ".", "csv", "run.csv/run"}) {
        EXPECT_EQ(create(name), nullptr) << name;
    }
}

TEST(DataMatrixFactory, HandsOnHowTablesAreRead)
{
    const brvTesting::TemporaryFolder folder;
    const std::string file = folder.write("t.csv", "t;v\n0;1\n0.5;2.5\n");
    const auto table = create(file);
    ASSERT_TRUE(table->load(file, {}));
    double value = 0.0;
    EXPECT_TRUE(table->getData(1, 1, value));
    EXPECT_EQ(value, 2.5);
}

} // namespace
