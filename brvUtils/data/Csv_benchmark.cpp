// Tables of text, beside the reader that data analysts use, beside a plain loop over the numbers, and beside a bare search for
// the ends of the lines.

#include "brvUtils/data/Data_benchmark.h"

#include "brvUtils/data/CsvDataFile.h"
#include "brvUtils/data/internal/CsvTuning.h"
#include "testing/Interleaved.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fast_float/fast_float.h>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iostream>
#include <iterator>
#include <limits>
#include <map>
#include <random>
#include <sstream>

namespace dataBenchmark {
namespace {

using brvTesting::BenchmarkTable;

constexpr int rounds = 7; ///< Of which the best counts: what else the computer does only ever takes time.

struct Table
{
    std::string name;
    CsvDataFile::TypeForced force;
    std::function<void(std::ostream&, std::size_t row, std::mt19937&)> writeRow;
};

void writeDoubles(std::ostream& to, std::size_t count, std::mt19937& random)
{
    char text[32];
    for (std::size_t i = 0; i < count; ++i) {
        std::snprintf(text, sizeof text, ";%.6f", random() / 4294967296.0 * 200.0 - 100.0);
        to << text;
    }
}

void writeIntegers(std::ostream& to, std::size_t count, int limit, std::mt19937& random)
{
    for (std::size_t i = 0; i < count; ++i) {
        to << ';' << static_cast<int>(random() % static_cast<unsigned>(2 * limit)) - limit;
    }
}

void writeTexts(std::ostream& to, std::size_t count, std::mt19937& random)
{
    static const char* const words[] = {"straight", "left", "right", "roundabout", "motorway exit 12", "village", "unknown"};
    for (std::size_t i = 0; i < count; ++i) {
        to << ';' << words[random() % std::size(words)];
    }
}

std::vector<Table> tables()
{
    return {
        {"doubles", CsvDataFile::FORCE_DOUBLE, [](std::ostream& to, std::size_t row, std::mt19937& random) {
             to << static_cast<double>(row) * 0.02;
             writeDoubles(to, 11, random);
         }},
        {"integers", CsvDataFile::FORCE_INT, [](std::ostream& to, std::size_t row, std::mt19937& random) {
             to << row;
             writeIntegers(to, 11, 100'000, random);
         }},
        {"mixed with text", CsvDataFile::FORCE_DOUBLE, [](std::ostream& to, std::size_t row, std::mt19937& random) {
             to << static_cast<double>(row) * 0.02;
             writeDoubles(to, 5, random);
             writeIntegers(to, 3, 1000, random);
             writeTexts(to, 3, random);
         }},
    };
}

void write(const Table& table, const std::string& path, std::size_t rows)
{
    std::ofstream to(std::filesystem::u8path(path), std::ios::binary);
    to.precision(10);
    std::mt19937 random(1);
    to << "c0;c1;c2;c3;c4;c5;c6;c7;c8;c9;c10;c11\n";
    for (std::size_t row = 0; row < rows; ++row) {
        table.writeRow(to, row, random);
        to << '\n';
    }
}

double best(const std::function<void()>& work)
{
    double shortest = brvTesting::nanosecondsOf(work);
    for (int round = 1; round < rounds; ++round) {
        shortest = std::min(shortest, brvTesting::nanosecondsOf(work));
    }
    return shortest;
}

/// Seconds that fread takes with one thread and with two, or nothing where R or its package are not installed.
std::map<int, double> timesOfFread(const std::string& folder, const std::string& path)
{
    const std::string script = folder + "/fread.R";
    const std::string result = folder + "/fread.txt";
    std::ofstream(std::filesystem::u8path(script)) << "suppressMessages(library(data.table)); arguments <- commandArgs(TRUE)\n"
        "for (threads in 1:2) {\n"
        "    setDTthreads(threads); shortest <- Inf\n"
        "    for (i in 1:" << rounds << ") shortest <- min(shortest, system.time(fread(arguments[1], sep = ';', nThread = threads, showProgress = FALSE))[3])\n"
        "    cat(threads, shortest, '\\n')\n"
        "}\n";
    std::map<int, double> times;
    if (std::system(("Rscript '" + script + "' '" + path + "' >'" + result + "' 2>/dev/null").c_str()) == 0) {
        std::ifstream from {std::filesystem::u8path(result)};
        int threads = 0;
        double seconds = 0.0;
        while (from >> threads >> seconds) {
            times[threads] = seconds;
        }
    }
    return times;
}

/// Bytes, of a line such as "VmHWM:     1234 kB" of this process's state.
double memory(const std::string& label)
{
    std::ifstream state("/proc/self/status");
    for (std::string line; std::getline(state, line);) {
        if (line.compare(0, label.size(), label) == 0) {
            return std::atof(line.c_str() + label.size() + 1) * 1024.0;
        }
    }
    return 0.0;
}

double bytesOf(const DataMatrix& matrix)
{
    double bytes = 0.0;
    for (std::size_t i = 0; i < matrix.getColmnCount(); ++i) {
        const std::size_t size = matrix[i]->size();
        bytes += static_cast<double>(size * (matrix[i]->getIntData() ? sizeof(int) : matrix[i]->getDoubleData() ? sizeof(double) : sizeof(std::string)));
        const std::string* texts = matrix[i]->getStringData();
        for (std::size_t row = 0; texts != nullptr && row < size; ++row) {
            bytes += texts[row].capacity() > 15 ? static_cast<double>(texts[row].capacity() + 1) : 0.0;
        }
    }
    return bytes;
}

double load(const Table& table, const std::string& path, unsigned threads)
{
    brvUtils::csv::tuning().threads = threads;
    double shortest = std::numeric_limits<double>::max();
    for (int round = 0; round < rounds; ++round) {
        CsvDataFile file(';', table.force); // whose end is not part of the time, as with fread
        shortest = std::min(shortest, brvTesting::nanosecondsOf([&] { file.load(path, {}); }));
    }
    return shortest;
}

/// The most memory that a load takes, over that of the columns it fills.
double peakOverColumns(const Table& table, const std::string& path, unsigned threads)
{
    brvUtils::csv::tuning().threads = threads;
    CsvDataFile file(';', table.force);
    std::ofstream("/proc/self/clear_refs") << 5; // the peak begins here
    const double before = memory("VmRSS");
    file.load(path, {});
    return (memory("VmHWM") - before) / bytesOf(file);
}

double numbersAlone(const std::string& content)
{
    std::vector<double> numbers(static_cast<std::size_t>(std::count_if(content.begin(), content.end(), [](char c) { return c == ';' || c == '\n'; })));
    return best([&] {
        double* to = numbers.data();
        const char* const end = content.data() + content.size();
        for (const char* p = std::strchr(content.data(), '\n') + 1; p < end;) {
            p = fast_float::from_chars(p, end, *to++).ptr + 1;
        }
    });
}

double lineEndsAlone(const std::string& content)
{
    volatile std::size_t lines = 0; // else nobody would have to look
    return best([&] {
        const char* const end = content.data() + content.size();
        for (const char* p = content.data(); (p = static_cast<const char*>(std::memchr(p, '\n', static_cast<std::size_t>(end - p)))) != nullptr; ++p) {
            lines = lines + 1;
        }
    });
}

/// How the cost grows with the file, with as many threads as the reader takes by itself.
void addGrowth(BenchmarkTable& results, const Settings& settings)
{
    constexpr std::size_t bytesPerRow = 130;
    const Table table = tables().front();
    const std::string path = settings.folder + "/table.csv";
    for (const std::size_t megabytes : {1, 10, 100, 1000}) {
        write(table, path, megabytes * settings.rows / bytesPerRow);
        const auto size = static_cast<double>(std::filesystem::file_size(std::filesystem::u8path(path)));
        results.add({"CSV, " + std::to_string(megabytes) + " MB", "s/GB", load(table, path, 0) / size, {}, {}});
    }
    std::filesystem::remove(std::filesystem::u8path(path));
}

} // namespace

void addCsvRows(BenchmarkTable& results, const Settings& settings)
{
    for (const Table& table : tables()) {
        const std::string path = settings.folder + "/table.csv";
        write(table, path, settings.rows);
        std::ostringstream content;
        content << std::ifstream(std::filesystem::u8path(path), std::ios::binary).rdbuf();
        const auto size = static_cast<double>(content.str().size());
        const double limit = lineEndsAlone(content.str()) / size;
        const double plain = table.name == "doubles" ? numbersAlone(content.str()) / size : 0.0;
        content.str("");

        const std::map<int, double> fread = timesOfFread(settings.folder, path);
        if (fread.empty()) {
            std::cerr << "Rscript with data.table is not installed: fread is left out\n";
        }
        for (const unsigned threads : {1u, 2u}) {
            const std::string name = "CSV, " + table.name + ", " + std::to_string(threads) + (threads == 1 ? " thread" : " threads");
            brvTesting::BenchmarkRow row {name, "s/GB", load(table, path, threads) / size, {}, limit};
            if (const auto found = fread.find(static_cast<int>(threads)); found != fread.end()) {
                row.peers.emplace_back("fread", found->second * 1e9 / size);
            }
            if (threads == 1 && plain > 0.0) {
                row.peers.emplace_back("fast_float loop", plain);
            }
            results.add(row);
            results.add({name + ": memory", "x columns", peakOverColumns(table, path, threads), {}, 1.0});
        }
        brvUtils::csv::tuning() = {};
        std::filesystem::remove(std::filesystem::u8path(path));
    }
    addGrowth(results, settings);
}

} // namespace dataBenchmark
