#pragma once

#include "brvUtils/data/CsvDataFile.h"

#include "brvUtils/data/internal/CsvTuning.h"
#include "testing/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

namespace csvTest {

using brvTesting::TemporaryFolder;
using Names = std::vector<std::string>;

/// Decides for a while how files are cut and shared out.
class Tuned
{
public:
    explicit Tuned(unsigned threads, std::size_t blockSize) { brvUtils::csv::tuning() = {threads, blockSize}; }
    ~Tuned() { brvUtils::csv::tuning() = {}; }
    Tuned(const Tuned&) = delete;
    Tuned& operator=(const Tuned&) = delete;
};

/// The columns as text: "name:i1i2 other:d0.5 third:|a||b|".
inline std::string shown(const DataMatrix& table)
{
    std::ostringstream text;
    text.precision(17);
    for (std::size_t column = 0; column < table.getColmnCount(); ++column) {
        text << (column > 0 ? " " : "") << table.getDataName(column) << ':';
        for (std::size_t row = 0; row < table[column]->size(); ++row) {
            if (const int* integers = table[column]->getIntData()) {
                text << 'i' << integers[row];
            } else if (const double* doubles = table[column]->getDoubleData()) {
                text << 'd' << doubles[row];
            } else {
                text << '|' << table[column]->getStringData()[row] << '|';
            }
        }
    }
    return text.str();
}

struct Loading
{
    char separator = ';';
    int force = CsvDataFile::FORCE_INT;
    Names wanted = {};
};

inline std::string load(const std::string& content, const Loading& how = {})
{
    const TemporaryFolder folder;
    CsvDataFile file(how.separator, static_cast<CsvDataFile::TypeForced>(how.force));
    EXPECT_TRUE(file.load(folder.write("table.csv", content), how.wanted));
    return shown(file);
}

} // namespace csvTest
