#pragma once

#include <fstream>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace brvTesting {

/// One thing that was measured. Smaller is better, so rates go in inverted.
struct BenchmarkRow
{
    std::string row; ///< What was done.
    std::string unit; ///< Of all numbers, such as "ns".
    double ours = 0;
    std::vector<std::pair<std::string, double>> peers = {}; ///< Who else did the same, by name.
    std::optional<double> limit = {}; ///< What the bare work costs.

    /// The best of the peers.
    std::optional<double> peer() const;
};

/// A further option of a benchmark program: `--seconds 5`.
struct BenchmarkNumber
{
    std::string option; ///< "--seconds"
    double* value; ///< Changed when the option is given, to a finite number above 0. Not owned.
};

/// Collects what a benchmark program measured, prints it and, with `--json FILE` on the command line, writes it to a file
/// for other programs.
///
///     int main(int argc, char** argv)
///     {
///         BenchmarkTable table(argc, argv);
///         table.add({"put and get, 64 B", "ns", ours, {{"Boost.Interprocess", theirs}}, bare});
///         return table.finish();
///     }
class BenchmarkTable
{
public:
    /// Knows `--json FILE` and those numbers. Ends the process with code 2, and a line on the error stream, when the
    /// arguments are anything else or the file cannot be written: before there is a measurement to lose.
    BenchmarkTable(int argc, char** argv, const std::vector<BenchmarkNumber>& numbers = {});

    /// Adds a row below those before.
    void add(BenchmarkRow row) { rows_.push_back(std::move(row)); }

    /// One line per row: row, unit, ours, each peer, limit, ours/peer (the best one), ours/limit; "-" for what there is not.
    void print(std::ostream& stream) const;
    /// `[{"row": "...", "unit": "ns", "ours": 1.5, "peer": 2, "limit": null}]`
    void writeJson(std::ostream& stream) const;

    /// Prints to the standard output and writes the file. Gives the exit code for `main`: 1 when that was not possible.
    int finish();

private:
    void open(const std::string& file);

    std::vector<BenchmarkRow> rows_;
    std::ofstream json_; ///< Closed when none was asked for.
};

} // namespace brvTesting
