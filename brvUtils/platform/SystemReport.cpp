#include "brvUtils/platform/SystemReport.h"

#include "brvUtils/os/CrashReport.h"
#include "brvUtils/os/Environment.h"
#include "brvUtils/os/SystemCheck.h"

#include <filesystem>
#include <fstream>
#include <random>

namespace brvUtils {

namespace {

namespace fs = std::filesystem;

fs::path dumpFolder()
{
    if (const auto folder = os::environmentVariable("STUDIO_DUMP_DIR")) {
        return fs::u8path(*folder);
    }
    for (const char* const* variable = os::crashTemporaryVariables; *variable != nullptr; ++variable) {
        if (const auto folder = os::environmentVariable(*variable)) {
            return fs::u8path(*folder) / "STUDIO_Dumps";
        }
    }
    return fs::u8path(os::crashTemporaryFolder) / "STUDIO_Dumps";
}

bool isWritable(const fs::path& folder)
{
    const fs::path file = folder / ("brv-" + std::to_string(std::random_device()()));
    const bool made = std::ofstream(file).is_open();
    std::error_code ignored;
    fs::remove(file, ignored);
    return made;
}

SystemFinding dumps()
{
    if (os::environmentVariable("STUDIO_DISABLE_DUMP")) {
        return {SystemFinding::State::warning, "crash dumps", "STUDIO_DISABLE_DUMP is defined: a crash leaves no dump", "remove the variable STUDIO_DISABLE_DUMP"};
    }
    if (os::environmentVariable("STUDIO_PROCESS_DUMP_LEVEL") == "NONE") {
        return {SystemFinding::State::warning, "crash dumps", "STUDIO_PROCESS_DUMP_LEVEL is NONE: a crash leaves no dump", "remove the variable STUDIO_PROCESS_DUMP_LEVEL"};
    }
    const fs::path folder = dumpFolder();
    fs::path there = folder;
    std::error_code ignored;
    while (!fs::exists(there, ignored) && there.has_relative_path()) {
        there = there.parent_path();
    }
    const std::string name = folder.u8string();
    return isWritable(there.empty() ? fs::path(".") : there)
        ? SystemFinding{SystemFinding::State::good, "crash dumps", "dumps go to " + name, ""}
        : SystemFinding{SystemFinding::State::warning, "crash dumps", name + " cannot be written: a crash leaves no dump", "let STUDIO_DUMP_DIR name a folder that can be written"};
}

} // namespace

std::vector<SystemFinding> systemReport()
{
    std::vector<SystemFinding> report;
    for (os::SystemFact& each : os::systemFacts()) {
        report.push_back({static_cast<SystemFinding::State>(each.state), std::move(each.subject), std::move(each.text), std::move(each.remedy)});
    }
    report.push_back(dumps());
    return report;
}

} // namespace brvUtils
