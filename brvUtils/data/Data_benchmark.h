#pragma once

#include "testing/BenchmarkTable.h"

#include <cstddef>
#include <string>

namespace dataBenchmark {

/// Where a reader's rows keep their files, and how large they are.
struct Settings
{
    std::string folder; ///< UTF-8, removed at the end with all it holds.
    std::size_t rows = 1'000'000; ///< Of tables; recordings are a tenth of that.
};

// Each makes the files it needs, measures, and removes them.

void addCsvRows(brvTesting::BenchmarkTable& table, const Settings& settings);
void addIdcRows(brvTesting::BenchmarkTable& table, const Settings& settings);
void addMatRows(brvTesting::BenchmarkTable& table, const Settings& settings);

} // namespace dataBenchmark
