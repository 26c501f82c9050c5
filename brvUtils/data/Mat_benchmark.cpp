// Beside matio, which reads the same variables one after the other and keeps them, as the table does.

#include "brvUtils/data/Data_benchmark.h"
#include "brvUtils/data/MatDataFile.h"
#include "brvUtils/data/MatFile_test.h"
#include "testing/Interleaved.h"

#include <filesystem>
#include <fstream>
#include <random>
#include <stdexcept>

namespace dataBenchmark {

namespace {

using brvTesting::nanosecondsOf;

constexpr int variables = 50;

/// A signal with some noise, of which compression takes about a third.
std::vector<double> samples(std::size_t rows, std::minstd_rand& random)
{
    std::vector<double> values(rows);
    double value = 0.0;
    for (double& sample : values) {
        value += static_cast<double>(random() % 2001) - 1000.0;
        sample = value / 1024.0;
    }
    return values;
}

void write(const std::string& path, std::size_t rows, matio_compression compression)
{
    std::minstd_rand random(1);
    matTests::MatFile file(path, MAT_FT_MAT5, compression);
    for (int i = 0; i < variables; ++i) {
        file.add(("v" + std::to_string(i)).c_str(), samples(rows, random));
    }
}

double ours(const std::string& path, std::size_t rows)
{
    return nanosecondsOf([&] {
        MatDataFile matrix;
        if (!matrix.load(path, {}) || matrix.getColmnCount() != variables || matrix[variables - 1]->size() != rows) {
            throw std::runtime_error("not all of " + path + " was loaded");
        }
    });
}

double bareMatio(const std::string& path)
{
    return nanosecondsOf([&] {
        std::vector<matvar_t*> all;
        mat_t* const file = Mat_Open(path.c_str(), MAT_ACC_RDONLY);
        while (matvar_t* const variable = Mat_VarReadNext(file)) {
            all.push_back(variable);
        }
        Mat_Close(file);
        for (matvar_t* const variable : all) {
            Mat_VarFree(variable);
        }
    });
}

double bareBytes(const std::string& path)
{
    return nanosecondsOf([&] {
        std::ifstream file(path, std::ios::binary);
        std::vector<char> block(1 << 20);
        while (file.read(block.data(), static_cast<std::streamsize>(block.size()))) {
        }
    });
}

void addRow(brvTesting::BenchmarkTable& table, const Settings& settings, const std::string& name, matio_compression compression)
{
    const std::string path = settings.folder + "/bench.mat";
    write(path, settings.rows, compression);
    const std::vector<double> times = brvTesting::medianPerIteration({
        {"ours", [&](std::uint64_t count) { double time = 0; while (count-- > 0) { time += ours(path, settings.rows); } return time; }},
        {"matio", [&](std::uint64_t count) { double time = 0; while (count-- > 0) { time += bareMatio(path); } return time; }},
        {"bytes", [&](std::uint64_t count) { double time = 0; while (count-- > 0) { time += bareBytes(path); } return time; }},
    }, {compression == MAT_COMPRESSION_NONE ? 9 : 3, std::chrono::milliseconds(1)});
    std::filesystem::remove(std::filesystem::u8path(path));
    const double milli = 1e-6;
    table.add({"MAT, " + std::to_string(variables) + " x " + std::to_string(settings.rows) + " doubles, " + name, "ms",
        times[0] * milli, {{"matio", times[1] * milli}}, times[2] * milli});
}

} // namespace

void addMatRows(brvTesting::BenchmarkTable& table, const Settings& settings)
{
    addRow(table, settings, "plain", MAT_COMPRESSION_NONE);
    addRow(table, settings, "compressed", MAT_COMPRESSION_ZLIB);
}

} // namespace dataBenchmark
