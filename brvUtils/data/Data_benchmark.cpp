// How long files of recorded data take to load, beside others that read the same files and beside the bare work. The files,
// some hundred megabytes each, are made in the folder for temporary files and removed at the end.
//
//     bench_data --rows 10000      small files, for a quick look

#include "brvUtils/data/Data_benchmark.h"

#include "testing/TemporaryFolder.h"

#include <exception>
#include <iostream>

int main(int argc, char** argv)
{
    double rows = 1'000'000;
    brvTesting::BenchmarkTable table(argc, argv, {{"--rows", &rows}});
    const brvTesting::TemporaryFolder folder("brv-bench");
    const dataBenchmark::Settings settings{folder.file(), static_cast<std::size_t>(rows)};
    try {
        dataBenchmark::addCsvRows(table, settings);
        dataBenchmark::addIdcRows(table, settings);
        dataBenchmark::addMatRows(table, settings);
    } catch (const std::exception& error) {
        std::cerr << "bench_data: " << error.what() << '\n';
        return 1;
    }
    return table.finish();
}
