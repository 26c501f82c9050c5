// What a module pays for the library before it can exchange its first part: whole processes, from their start to their end,
// beside an empty program that loads the library of C++, as all of them do, and one that parses its command line by CLI11.
// scripts/bench gives it a folder in shared memory.

#include "brvUtils/os/ChildProcess.h"
#include "brvUtils/os/linux/BareSpawn.h"
#include "testing/BenchmarkTable.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

namespace {

using namespace brvTesting;
using brvUtils::os::BareRun;

const std::string folder = STARTUP_PROGRAMS "/";
const std::string module = folder + "StartupModule_probe";

void check(bool fine, const std::string& what)
{
    if (!fine) {
        std::fprintf(stderr, "bench_startup: %s\n", what.c_str());
        std::exit(1);
    }
}

/// Added to the environment of a module.
std::vector<std::pair<std::string, std::string>> variablesOf(const std::string& nameSpace)
{
    return {{"STUDIO_PATH", STARTUP_CONFIGURATIONS}, {"STUDIO_IPC_NAMESPACE", std::getenv("STUDIO_IPC_NAMESPACE") + ("/" + nameSpace)}};
}

std::vector<std::string> moduleArguments(int steps)
{
    return {std::to_string(steps), "-fast", "-frames", "20", "-road", "circle"};
}

/// One way to start, with what its runs took.
struct Program
{
    std::string name;
    std::vector<std::string> arguments; ///< The first is its path.
    std::vector<std::string> environment = {};
    std::vector<double> elapsed = {}; ///< Milliseconds, as all below.
    std::vector<double> processor = {};

    void run()
    {
        const BareRun run = brvUtils::os::bareRun(arguments, environment);
        check(run.succeeded, arguments.front() + " fails");
        elapsed.push_back(run.elapsed / 1e6);
        processor.push_back(run.processor / 1e6);
    }
};

Program moduleProgram(const std::string& name, int steps, const std::string& nameSpace)
{
    Program program{name, moduleArguments(steps), brvUtils::os::bareEnvironment()};
    program.arguments.insert(program.arguments.begin(), module);
    // The first of two entries of a name counts.
    for (const auto& [variable, value] : variablesOf(nameSpace)) {
        program.environment.insert(program.environment.begin(), variable + "=" + value);
    }
    return program;
}

/// The value that this part of the values does not exceed.
double quantile(std::vector<double> values, double part)
{
    const auto place = values.begin() + static_cast<std::ptrdiff_t>(static_cast<double>(values.size() - 1) * part);
    std::nth_element(values.begin(), place, values.end());
    return *place;
}

enum Place { empty, commandLine, bare, linked, parsed, selected, opened };

void addRows(BenchmarkTable& table, const std::vector<Program>& programs, const std::string& kind, double part, std::vector<double> Program::*values)
{
    std::vector<double> times;
    for (const Program& program : programs) {
        times.push_back(quantile(program.*values, part));
    }
    for (std::size_t i = bare; i < programs.size(); ++i) {
        table.add({programs[i].name + kind, "ms", times[i], {{"CLI11", times[commandLine]}}, times[empty]});
    }
    table.add({"above the empty program" + kind, "ms", times[opened] - times[empty], {{"CLI11", times[commandLine] - times[empty]}}, {}});
}

} // namespace

int main(int argc, char** argv)
{
    double runs = 400;
    BenchmarkTable table(argc, argv, {{"--runs", &runs}});
    check(std::getenv("STUDIO_IPC_NAMESPACE") != nullptr, "STUDIO_IPC_NAMESPACE has to name an empty folder in /dev/shm, as scripts/bench has it");

    brvUtils::os::ChildProcess holder;
    brvUtils::os::ChildCommand command{module, moduleArguments(4), variablesOf("held"), true, true, false};
    check(holder.start(command) == brvUtils::os::error::none, "cannot start " + module);
    for (std::optional<std::string> line; line != "ready";) {
        line = holder.readLine(30000);
        check(line.has_value(), "the module that holds the segment does not get ready");
    }

    const std::vector<std::string> environment = brvUtils::os::bareEnvironment();
    std::vector<Program> programs{
        {"empty", {folder + "StartupEmpty_probe"}, environment},
        {"CLI11", {folder + "StartupCommandLine_probe", "--fast", "--frames", "20", "--road", "circle"}, environment},
        {"empty, without the library of C++", {folder + "StartupBare_probe"}, environment},
        moduleProgram("only linked", 0, "first"),
        moduleProgram("+ command line", 1, "first"),
        moduleProgram("+ configuration", 2, "first"),
        moduleProgram("+ segment that another process holds", 3, "held"),
        moduleProgram("the same as the first process", 3, "first"),
    };
    for (double run = 0; run < runs; ++run) {
        for (Program& program : programs) {
            program.run();
        }
    }
    addRows(table, programs, ", median", 0.5, &Program::elapsed);
    addRows(table, programs, ", 95 %", 0.95, &Program::elapsed);
    addRows(table, programs, ", processor time", 0.5, &Program::processor);
    return table.finish();
}
